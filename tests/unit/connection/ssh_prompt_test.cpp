#include "connection/ssh_prompt.h"

#include <algorithm>

#include "app/program_fixture.h"
#include "platform/headless/picture_box.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/cursor.h"
#include "terminal/drawing/paint.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/screen_store.h"

namespace qxterm::test::ssh_prompt_test {
namespace {

using Lines = std::vector<std::string>;

/// A program without a session, with text on the page and on the status row, and the cursor at (4, 24).
class SshPrompt : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        start();
        processInput("\x1b[1;1Hon the first row\x1b[20;1Hon row 19\x1b[1;1xclock");
        records.clear();
    }
    static std::string shown(int row) {
        std::string text;
        for (int column = 0; column < screenColumns; ++column)
            text += picterm.picture().at(column, row).text();
        return text.erase(text.find_last_not_of(' ') + 1);
    }
    /// Draws a word in that cell, past all that the program knows.
    static void scribble(int row) { picterm.drawText(row, 0, "scribble", {}); }
    static std::int64_t number(const headless::Record& record, std::string_view name) {
        return std::stoll(fieldOf(record, name));
    }
};

TEST_F(SshPrompt, TheBannerStandsOnAClearedPicture) {
    ASSERT_EQ(shown(19), "on row 19");
    ASSERT_TRUE(picterm.picture().cursor().has_value());
    DisplayBanner();
    EXPECT_EQ(shown(0), "WARNING:");
    EXPECT_EQ(shown(4), "consenting to this monitoring.");
    EXPECT_EQ(shown(5), "ssh login:");
    for (int row = 6; row < screenRows; ++row) EXPECT_EQ(shown(row), "") << row;
    // The cursor went with the rest.
    EXPECT_FALSE(picterm.picture().cursor().has_value());
    toggleCursor(hideCursor);
    EXPECT_FALSE(picterm.picture().cursor().has_value());
}

TEST_F(SshPrompt, ARepaintIsThePromptAlone) {
    DisplayBanner();
    for (int row = 4; row < screenRows; ++row) scribble(row);
    picterm_Paint();
    EXPECT_EQ(shown(4), "consenting to this monitoring.");
    EXPECT_EQ(shown(5), "ssh login:");
    for (int row = 6; row < screenRows; ++row) EXPECT_EQ(shown(row), "") << row;
}

TEST_F(SshPrompt, NothingIsDrawnBehindTheTextOrTheLines) {
    headless::setRecording("draw", true);
    DisplayBanner();
    picterm_Paint();
    headless::setRecording("draw", false);
    const Lines texts = recorded("draw", "text");
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "ssh login: "), 2);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "WARNING:"), 2);
    for (const headless::Record& call : records) {
        if (call.kind != "draw") continue;
        EXPECT_LE(number(call, "x") + number(call, "w"), screenColumns * charWidth);
        EXPECT_LE(number(call, "y") + number(call, "h"), screenRows * lineHeight);
    }
}

TEST_F(SshPrompt, StaysWhereTheUserScrolls) {
    processInput("\x1b[24;1H1\r\n2\r\n3\r\n4");
    ASSERT_EQ(vscterm.minimum(), liveView - 3);
    DisplayBanner();
    for (const std::int16_t line : {std::int16_t{liveView - 1}, std::int16_t{liveView - 3}, liveView}) {
        vscterm.userMoved(line, false);
        headless::deliverPaints();
        EXPECT_EQ(shown(0), "WARNING:") << line;
        EXPECT_EQ(shown(5), "ssh login:") << line;
        for (int row = 6; row < screenRows; ++row) EXPECT_EQ(shown(row), "") << line << ", " << row;
        EXPECT_FALSE(picterm.picture().cursor().has_value()) << line;
    }
    // What comes behind it is the view that the user has chosen.
    vscterm.userMoved(liveView - 3, false);
    endLocalPrompt();
    headless::deliverPaints();
    EXPECT_EQ(shown(0), "on the first row");
    EXPECT_FALSE(picterm.picture().cursor().has_value());
    vscterm.userMoved(liveView, false);
    EXPECT_EQ(shown(23), "4");
    EXPECT_TRUE(picterm.picture().cursor().has_value());
}

// The line feed lets a paint in, and what stands behind it is drawn after that.
TEST_F(SshPrompt, WhatTheHostSendsBeforeItsFirstWordIsPaintedOver) {
    processInput("\x1b[7;1H");
    DisplayBanner();
    for (const char* text : {"...", "\r\n...", "\r\n---\r\n..."}) {
        picterm.refresh();
        giveWayToHost(text);
        processInput(text);
        headless::deliverPaints();
        EXPECT_EQ(shown(0), "WARNING:") << text;
        EXPECT_EQ(shown(5), "ssh login:") << text;
        for (int row = 6; row < screenRows; ++row) EXPECT_EQ(shown(row), "") << text << ", " << row;
        EXPECT_FALSE(picterm.picture().cursor().has_value()) << text;
    }
}

TEST_F(SshPrompt, APromptThatIsEndedTakesNoCharacters) {
    doFakeLogin();
    EXPECT_TRUE(localPromptActive());
    endLocalPrompt();
    EXPECT_FALSE(localPromptActive());
    EXPECT_FALSE(localTextUp());
}

}  // namespace
}  // namespace qxterm::test::ssh_prompt_test
