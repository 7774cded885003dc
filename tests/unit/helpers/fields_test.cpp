#include "common/fields.h"

#include <gtest/gtest.h>

#include <string>

namespace zpt::fields_test {
namespace {

TEST(HelperFields, PortsAreNumbersFrom1To65535) {
    EXPECT_EQ(parsePort("1"), 1);
    EXPECT_EQ(parsePort("22"), 22);
    EXPECT_EQ(parsePort("65535"), 65535);
    for (const char* text : {"", "0", "65536", "-1", "+22", " 22", "22 ", "22x", "0x16", "99999999999"}) {
        EXPECT_FALSE(parsePort(text)) << text;
    }
}

TEST(HelperFields, HostsAreNamesAndAddresses) {
    for (const char* text : {"h", "host-1.example.com", "192.0.2.7", "2001:db8::1", "[::1]", "fe80::1%4",
                             "my_host", "h\xF6st"}) {
        EXPECT_TRUE(isHost(text)) << text;
    }
    EXPECT_TRUE(isHost(std::string(255, 'h')));
}

TEST(HelperFields, WhatCouldBeMoreThanAHostIsNone) {
    for (const char* text : {"", "-h", "-oProxyCommand=x", "a b", "a\tb", "a\"b", "a'b", "user@host",
                             "ssh://h", "a\\b", "a&b", "a|b", "a;b", "$a", "a\nb", "a\x7F"}) {
        EXPECT_FALSE(isHost(text)) << text;
    }
    EXPECT_FALSE(isHost(std::string(256, 'h')));
    EXPECT_FALSE(isHost(std::string("a\0b", 3)));
}

TEST(HelperFields, LoginNamesHoldNoBlanksQuotesOrControlCharacters) {
    for (const char* text : {"", "bob", "DOMAIN\\bob", "bob@realm", "b-b", "$bob",
                             "b\xF6"
                             "b"}) {
        EXPECT_TRUE(isLogin(text)) << text;
    }
    for (const char* text : {"-bob", "bob x", "b\"b", "b'b", "b`b", "b\tb", "b\x1B", "b\x7F"}) {
        EXPECT_FALSE(isLogin(text)) << text;
    }
    EXPECT_TRUE(isLogin(std::string(255, 'b')));
    EXPECT_FALSE(isLogin(std::string(256, 'b')));
}

}  // namespace
}  // namespace zpt::fields_test
