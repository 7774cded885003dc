#include "common/quoting.h"

#include <gtest/gtest.h>

namespace zpt::quoting_test {
namespace {

TEST(HelperQuoting, PlainTextStaysAsItIs) {
    EXPECT_EQ(quoted("host1"), "host1");
    EXPECT_EQ(quoted("-L"), "-L");
    EXPECT_EQ(quoted("127.0.0.1:3000:localhost:23"), "127.0.0.1:3000:localhost:23");
    EXPECT_EQ(quoted(R"(C:\ssh\plink.exe)"), R"(C:\ssh\plink.exe)");
}

TEST(HelperQuoting, EmptyTextIsAnArgumentToo) { EXPECT_EQ(quoted(""), R"("")"); }

TEST(HelperQuoting, BlanksAreEnclosed) {
    EXPECT_EQ(quoted("two words"), R"("two words")");
    EXPECT_EQ(quoted("a\tb"), "\"a\tb\"");
}

TEST(HelperQuoting, QuotationMarksAreEscaped) { EXPECT_EQ(quoted(R"(say "hi")"), R"("say \"hi\"")"); }

TEST(HelperQuoting, BackslashesCountOnlyInFrontOfAQuotationMark) {
    EXPECT_EQ(quoted(R"(C:\two words\x)"), R"("C:\two words\x")");
    EXPECT_EQ(quoted(R"(C:\two words\)"), R"("C:\two words\\")");
    EXPECT_EQ(quoted(R"(a\"b)"), R"("a\\\"b")");
}

TEST(HelperQuoting, ACommandLineHasSingleBlanks) {
    EXPECT_EQ(commandLine(R"(C:\Program Files\q\plink.exe)", {"-N", "a b", "host1"}),
              R"("C:\Program Files\q\plink.exe" -N "a b" host1)");
    EXPECT_EQ(commandLine("ssh", {}), "ssh");
}

}  // namespace
}  // namespace zpt::quoting_test
