#include "bytes.h"

#include <gtest/gtest.h>

#include "script.h"

namespace qxterm::test::bytes_test {
namespace {

using scenario::parseBytes;
using scenario::ScriptFault;

TEST(Bytes, ReadsHexadecimalPairs) {
    EXPECT_EQ(parseBytes("1b5B48"), "\x1b[H");
    EXPECT_EQ(parseBytes("41 42  4343"), "ABCC");
    EXPECT_EQ(parseBytes("00ff"), (std::string{"\0\xff", 2}));
}

TEST(Bytes, ReadsStringsWithEscapes) {
    EXPECT_EQ(parseBytes(R"("a b")"), "a b");
    EXPECT_EQ(parseBytes(R"("\e\r\n\t\b\\\"")"), "\x1b\r\n\t\b\\\"");
    EXPECT_EQ(parseBytes(R"("\0\x41\xfF")"), (std::string{"\0A\xff", 3}));
    EXPECT_EQ(parseBytes(R"("")"), "");
}

TEST(Bytes, JoinsTokens) { EXPECT_EQ(parseBytes("\"ab\" 0d0a\t\"c\""), "ab\r\nc"); }

TEST(Bytes, KeepsBytesAbove127OfTheFile) { EXPECT_EQ(parseBytes("\"\xc3\xa9\""), "\xc3\xa9"); }

class MalformedBytes : public testing::TestWithParam<const char*> {};

TEST_P(MalformedBytes, AreRefused) { EXPECT_THROW((void)parseBytes(GetParam()), ScriptFault); }

INSTANTIATE_TEST_SUITE_P(Bytes, MalformedBytes,
                         testing::Values("", "  ", "1", "123", "4g", "abc 41", "\"open", "\"open\\",
                                         "\"\\q\"", "\"\\x4\"", "\"\\x4", "\"a\"41", "41\"a\"", "41 x"));

}  // namespace
}  // namespace qxterm::test::bytes_test
