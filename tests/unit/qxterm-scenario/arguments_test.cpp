#include "arguments.h"

#include <gtest/gtest.h>

#include "script.h"

namespace qxterm::test::arguments_test {
namespace {

using scenario::Arguments;
using scenario::ScriptFault;

TEST(Arguments, TakesWordsFromLeftToRight) {
    Arguments arguments{"  mouse \t down 3 -4 "};
    EXPECT_EQ(arguments.line(), "mouse \t down 3 -4");
    EXPECT_EQ(arguments.word("a word"), "mouse");
    EXPECT_EQ(arguments.peek(), "down");
    EXPECT_EQ(arguments.word("a word"), "down");
    EXPECT_EQ(arguments.number("X", -9, 9), 3);
    EXPECT_EQ(arguments.number("Y", -9, 9), -4);
    EXPECT_FALSE(arguments.more());
    arguments.end();
    EXPECT_THROW(arguments.word("a word"), ScriptFault);
}

TEST(Arguments, TextIsTheRestAsItStandsBehindOneBlank) {
    Arguments arguments{"ini S K  two  words "};
    arguments.word("a");
    arguments.word("b");
    arguments.word("c");
    EXPECT_EQ(arguments.text(), " two  words ");
    arguments.end();
    Arguments nothing{"start"};
    nothing.word("a");
    EXPECT_EQ(nothing.text(), "");
}

TEST(Arguments, RefusesWhatIsNoNumberInItsRange) {
    for (const char* text : {"x", "1x", "", "10", "-1", "99999999999", "+1", "1.5"}) {
        Arguments arguments{text};
        EXPECT_THROW(arguments.number("N", 0, 9), ScriptFault) << text;
    }
}

TEST(Arguments, OnAndOffAreTheOnlySwitches) {
    Arguments arguments{"on off maybe"};
    EXPECT_TRUE(arguments.onOff());
    EXPECT_FALSE(arguments.onOff());
    EXPECT_THROW(arguments.onOff(), ScriptFault);
}

TEST(Arguments, RefusesWhatIsTooMuch) {
    Arguments arguments{"paint now"};
    arguments.word("a");
    EXPECT_THROW(arguments.end(), ScriptFault);
}

}  // namespace
}  // namespace qxterm::test::arguments_test
