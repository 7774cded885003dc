#include "diag/format_msg.h"

#include <gtest/gtest.h>

#include <string>

namespace qxterm::format_msg_test {
namespace {

TEST(FormatMsg, PutsArgumentsInPlaceOfTheirNumbers) {
    EXPECT_EQ(formatMsg("Save changes to profile: %1?", "sales"), "Save changes to profile: sales?");
    EXPECT_EQ(formatMsg("%4-%3-%2-%1", "a", "b", "c", "d"), "d-c-b-a");
    EXPECT_EQ(formatMsg("%1%1", "ab"), "abab");
}

TEST(FormatMsg, LeavesTextWithoutPlaceholdersAsItIs) {
    EXPECT_EQ(formatMsg(""), "");
    EXPECT_EQ(formatMsg("nothing here", "a"), "nothing here");
}

TEST(FormatMsg, UnusedArgumentsAreEmpty) { EXPECT_EQ(formatMsg("[%1][%2][%3][%4]"), "[][][][]"); }

TEST(FormatMsg, DoubledPercentIsOnePercent) {
    EXPECT_EQ(formatMsg("100%%"), "100%");
    EXPECT_EQ(formatMsg("%%1", "a"), "%1");
    EXPECT_EQ(formatMsg("%%%1", "a"), "%a");
}

TEST(FormatMsg, UnknownPlaceholdersVanishWithTheirCharacter) {
    EXPECT_EQ(formatMsg("a%5b"), "ab");
    EXPECT_EQ(formatMsg("a%0b"), "ab");
    EXPECT_EQ(formatMsg("a%Nb"), "ab");
    EXPECT_EQ(formatMsg("a% b"), "ab");
}

TEST(FormatMsg, PercentAtTheEndVanishes) {
    EXPECT_EQ(formatMsg("end%"), "end");
    EXPECT_EQ(formatMsg("%"), "");
    EXPECT_EQ(formatMsg("%1%", "x"), "x");
}

TEST(FormatMsg, LetterNGivesTheDigitsOneAndThree) { EXPECT_EQ(formatMsg("a%nb"), "a13b"); }

TEST(FormatMsg, SubstitutedTextIsNotSearchedAgain) {
    EXPECT_EQ(formatMsg("<%1|%2>", "%2%%", "%1"), "<%2%%|%1>");
}

TEST(FormatMsg, ZeroBytesAreOrdinaryCharacters) {
    using namespace std::string_literals;
    EXPECT_EQ(formatMsg("a\0%1"s, "b\0c"s), "a\0b\0c"s);
}

// Behind a placeholder at most 9999 characters of the template are looked at; before the first one there is
// no limit.
TEST(FormatMsg, KeepsAtMost9999CharactersBehindAPlaceholder) {
    const std::string front(12000, 'f');
    EXPECT_EQ(formatMsg(front), front);
    EXPECT_EQ(formatMsg(front + "%1", "x"), front + "x");
    EXPECT_EQ(formatMsg("%1" + std::string(9999, 'b'), "x"), "x" + std::string(9999, 'b'));
    EXPECT_EQ(formatMsg("%1" + std::string(9999, 'b') + "c", "x"), "x" + std::string(9999, 'b'));
    // the second placeholder begins on the 9999th character, so only its "%" is left and vanishes
    EXPECT_EQ(formatMsg("%1" + std::string(9998, 'b') + "%2", "x", "y"), "x" + std::string(9998, 'b'));
}

}  // namespace
}  // namespace qxterm::format_msg_test
