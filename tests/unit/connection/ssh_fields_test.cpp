#include "connection/ssh_fields.h"

#include <gtest/gtest.h>

namespace qxterm::test::ssh_fields_test {
namespace {

TEST(SshFields, OrdinaryOnesAreFine) {
    EXPECT_EQ(sshFieldComplaint("host1", "bob", "22"), "");
    EXPECT_EQ(sshFieldComplaint("host-1.example.com", "", "65535"), "");
    EXPECT_EQ(sshFieldComplaint("2001:db8::1", "DOMAIN\\bob", "1"), "");
}

TEST(SshFields, HostsThatCouldBeMoreThanAHost) {
    for (const char* host :
         {"", "-h", "a b", "a\"b", "a'b", "a\tb", "a\x01", "u@h", "ssh://h", "a&b", "a\\b"}) {
        EXPECT_NE(sshFieldComplaint(host, "bob", "22"), "") << host;
    }
    EXPECT_EQ(sshFieldComplaint("a b", "bob", "22"),
              "The hostname \"a b\" cannot be used for an SSH connection.  It must be a name or an address, "
              "without blanks and quotation marks.");
}

TEST(SshFields, LoginNamesThatCouldBeMoreThanAName) {
    for (const char* login : {"-l", "a b", "a\"b", "a'b", "a\x1B[A", "a\x7F"}) {
        EXPECT_NE(sshFieldComplaint("host1", login, "22"), "") << login;
    }
    EXPECT_EQ(
        sshFieldComplaint("host1", "a\x1B[A", "22"),
        "The login name \"a?[A\" cannot be used for an SSH connection.  It must not begin with a hyphen or "
        "hold blanks, quotation marks or control characters.");
}

TEST(SshFields, TooLongOnesAreNotCut) {
    EXPECT_EQ(sshFieldComplaint(std::string(255, 'h'), std::string(255, 'b'), "22"), "");
    EXPECT_EQ(sshFieldComplaint(std::string(65536, 'h'), "bob", "22"),
              "The hostname is too long.  It may have up to 255 characters.");
    EXPECT_EQ(sshFieldComplaint("host1", std::string(256, 'b'), "22"),
              "The login name is too long.  It may have up to 255 characters.");
}

TEST(SshFields, PortsAreNumbers) {
    for (const char* port : {"", "0", "65536", "-22", "22 -x", "ssh"}) {
        EXPECT_NE(sshFieldComplaint("host1", "bob", port), "") << port;
    }
    EXPECT_EQ(sshFieldComplaint("host1", "bob", "22 -x"),
              "The SSH port \"22 -x\" is not a port number.  It must be a number from 1 to 65535.");
}

TEST(SshFields, APercentSignInATextIsNoPlaceholder) {
    EXPECT_EQ(
        sshFieldComplaint("%1 %2", "bob", "22"),
        "The hostname \"%1 %2\" cannot be used for an SSH connection.  It must be a name or an address, "
        "without blanks and quotation marks.");
}

// A message shows 60 characters: of 60 all, of 61 the first 60 and three dots. Blanks and bytes above 127
// stay as they are.
TEST(SshFields, AMessageShowsTheBeginning) {
    const auto shownHost = [](const std::string& host) {
        const std::string complaint = sshFieldComplaint(host, "bob", "22");
        const std::size_t start = complaint.find('"') + 1;
        return complaint.substr(start, complaint.find("\" cannot") - start);
    };
    EXPECT_EQ(shownHost("a b" + std::string(57, 'h')), "a b" + std::string(57, 'h'));
    EXPECT_EQ(shownHost("a b" + std::string(58, 'h')), "a b" + std::string(57, 'h') + "...");
    EXPECT_EQ(shownHost("\x1f \xe9\x80\x0d"), "? \xe9\x80?");
}

}  // namespace
}  // namespace qxterm::test::ssh_fields_test
