#include "diag/numbers.h"

#include <gtest/gtest.h>

#include <functional>

#include "diag/checked.h"

namespace qxterm::numbers_test {
namespace {

/// Number of the run-time error that an operation raises, 0 for none.
std::int16_t errorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const RunTimeError& error) {
        return error.number;
    }
    return 0;
}

TEST(Checked, SixteenBitsEndInAnOverflow) {
    EXPECT_EQ(toInt16(32767), 32767);
    EXPECT_EQ(toInt16(-32768), -32768);
    EXPECT_EQ(errorOf([] { (void)toInt16(32768); }), 6);
    EXPECT_EQ(errorOf([] { (void)toInt16(-32769); }), 6);
    EXPECT_EQ(errorOf([] { (void)toInt16(INT64_MAX); }), 6);
}

TEST(Checked, ThirtyTwoBitsEndInAnOverflow) {
    EXPECT_EQ(toInt32(2147483647), 2147483647);
    EXPECT_EQ(toInt32(-2147483648LL), INT32_MIN);
    EXPECT_EQ(errorOf([] { (void)toInt32(2147483648LL); }), 6);
    EXPECT_EQ(errorOf([] { (void)toInt32(-2147483649LL); }), 6);
}

TEST(Checked, SubscriptsStayInsideTheirBounds) {
    EXPECT_EQ(subscript(1, 1, 80), 1U);
    EXPECT_EQ(subscript(80, 1, 80), 80U);
    EXPECT_EQ(errorOf([] { (void)subscript(0, 1, 80); }), 9);
    EXPECT_EQ(errorOf([] { (void)subscript(81, 1, 80); }), 9);
    EXPECT_EQ(errorOf([] { (void)subscript(-1, 0, 24); }), 9);
}

TEST(Numbers, TrimmedTakesBlanksOffBothEnds) {
    EXPECT_EQ(trimmed("  1 2  "), "1 2");
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(trimmed("\t1\t"), "\t1\t");
}

TEST(Numbers, ReadsWholeDecimalNumbers) {
    EXPECT_EQ(textToInt16("0"), 0);
    EXPECT_EQ(textToInt16("+23"), 23);
    EXPECT_EQ(textToInt16("-1"), -1);
    EXPECT_EQ(textToInt16(" 007 "), 7);
    EXPECT_EQ(textToInt16("32767"), 32767);
    EXPECT_EQ(textToInt16("-32768"), -32768);
    EXPECT_EQ(textToInt32("2147483647"), 2147483647);
    EXPECT_EQ(textToInt32("-2147483648"), INT32_MIN);
}

TEST(Numbers, AnythingElseIsATypeMismatch) {
    for (const char* text :
         {"", " ", "+", "-", "--1", "+-1", "1-", "1 2", "0x10", "1.5", "&H10", "1e3", "abc", "12abc"}) {
        EXPECT_EQ(errorOf([=] { (void)textToInt16(text); }), 13) << '"' << text << '"';
        EXPECT_EQ(errorOf([=] { (void)textToInt32(text); }), 13) << '"' << text << '"';
    }
}

TEST(Numbers, NumbersOutOfRangeOverflow) {
    EXPECT_EQ(errorOf([] { (void)textToInt16("32768"); }), 6);
    EXPECT_EQ(errorOf([] { (void)textToInt16("-32769"); }), 6);
    EXPECT_EQ(errorOf([] { (void)textToInt32("2147483648"); }), 6);
    EXPECT_EQ(errorOf([] { (void)textToInt32("-2147483649"); }), 6);
    EXPECT_EQ(errorOf([] { (void)textToInt32(std::string(10000, '9')); }), 6);
    EXPECT_EQ(errorOf([] { (void)textToInt16("-" + std::string(10000, '9')); }), 6);
    // 2^64 + 1 must not come back as 1
    EXPECT_EQ(errorOf([] { (void)textToInt32("18446744073709551617"); }), 6);
}

TEST(Numbers, TypedTextIsReadAsFarAsItIsANumber) {
    EXPECT_EQ(leadingNumber("  23abc"), 23);
    EXPECT_EQ(leadingNumber("-4 5"), -4);
    EXPECT_EQ(leadingNumber("+6"), 6);
    EXPECT_EQ(leadingNumber(""), 0);
    EXPECT_EQ(leadingNumber("abc"), 0);
    EXPECT_EQ(leadingNumber("- 4"), 0);
    EXPECT_EQ(leadingNumber("4294967296"), 4294967296LL);
    EXPECT_EQ(leadingNumber("9223372036854775799"), 9223372036854775799LL);
}

TEST(Numbers, TypedNumbersBeyond64BitsStayBeyond32Bits) {
    const std::int64_t large = leadingNumber(std::string(5000, '9'));
    EXPECT_GT(large, std::int64_t{INT32_MAX});
    EXPECT_LT(leadingNumber("-" + std::string(5000, '9')), std::int64_t{INT32_MIN});
}

}  // namespace
}  // namespace qxterm::numbers_test
