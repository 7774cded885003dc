#include "platform/headless_fixture.h"
#include "platform/hex_text.h"

namespace qxterm::test::recorder_test {
namespace {

class RecorderTest : public HeadlessTest {};

TEST_F(RecorderTest, HandsRecordsOnInOrderWithTheirFields) {
    headless::record("one", {{"text", "a b"}, {"flag", true}, {"number", 7}});
    headless::record("two");
    EXPECT_EQ(taken(), (Lines{"one text=a b flag=true number=7", "two"}));
}

TEST_F(RecorderTest, LeavesOutKindsThatAreSwitchedOff) {
    headless::setRecording("one", false);
    headless::record("one");
    headless::record("two");
    headless::setRecording("one", true);
    headless::record("one");
    EXPECT_EQ(taken(), (Lines{"two", "one"}));
}

TEST_F(RecorderTest, DrawingIsOffAtFirst) {
    EXPECT_FALSE(headless::recordsDrawing());
    headless::record("draw");
    headless::setRecording("draw", true);
    EXPECT_TRUE(headless::recordsDrawing());
    headless::record("draw", {{"op", "line"}});
    EXPECT_EQ(taken(), (Lines{"draw op=line"}));
}

TEST_F(RecorderTest, WithoutASinkNothingIsRecorded) {
    headless::setRecording("draw", true);
    headless::setSink(nullptr);
    EXPECT_FALSE(headless::recordsDrawing());
    headless::record("one");
    EXPECT_TRUE(taken().empty());
}

TEST_F(RecorderTest, HexTextIsLowerCaseWithoutBlanks) {
    EXPECT_EQ(hexText(std::string_view{"\x1b[\xff\0A", 5}), "1b5bff0041");
    EXPECT_EQ(hexText({}), "");
}

}  // namespace
}  // namespace qxterm::test::recorder_test
