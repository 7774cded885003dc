#include "zpt_ssh/last_words.h"

#include <gtest/gtest.h>

namespace zpt::last_words_test {
namespace {

TEST(LastWordsTest, TheLastLineThatIsNotBlank) {
    LastWords words;
    EXPECT_EQ(words.line(), "");
    words.feed("first\r\nsecond\r\n\r\n  \r\n");
    EXPECT_EQ(words.line(), "second");
}

TEST(LastWordsTest, AnUnfinishedLineCounts) {
    LastWords words;
    words.feed("first\nPermission den");
    words.feed("ied.");
    EXPECT_EQ(words.line(), "Permission denied.");
}

TEST(LastWordsTest, ControlCharactersAreLeftOut) {
    LastWords words;
    words.feed("a\x1B[1mb\a\n");
    EXPECT_EQ(words.line(), "a[1mb");
}

TEST(LastWordsTest, OfALongLineTheBeginningIsKept) {
    LastWords words;
    words.feed("start");
    for (int n = 0; n < 1000; ++n) words.feed(std::string(1000, 'x'));
    EXPECT_EQ(words.line(), "start" + std::string(295, 'x'));
    words.feed("\nend\n");
    EXPECT_EQ(words.line(), "end");
}

}  // namespace
}  // namespace zpt::last_words_test
