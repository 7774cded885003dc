#include "app/main.h"

#include <tuple>

#include "app/menus.h"
#include "app/program_fixture.h"
#include "config/ini_file.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/network.h"
#include "connection/session.h"
#include "connection/transport_controls.h"
#include "diag/error_trap.h"
#include "platform/event_loop.h"
#include "platform/headless/display.h"
#include "platform/headless/failures.h"
#include "platform/headless/native.h"
#include "platform/headless/picture_box.h"
#include "platform/headless/socket.h"
#include "platform/main_form.h"
#include "terminal/commands/function_keys.h"
#include "terminal/drawing/cell_size.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/drawing/text_look.h"
#include "terminal/interpreter/interpreter.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"
#include "timers/timer_registry.h"

namespace qxterm::test::start_test {
namespace {

using Lines = std::vector<std::string>;

class Start : public ProgramTest {
protected:
    static Lines boxTexts() { return boxes(); }
};

TEST_F(Start, CellsThatCouldNotBeMeasuredCanBeClickedOn) {
    planFault("calcSize", errors::outOfMemory);
    start();
    EXPECT_EQ(boxTexts().size(), 1U);
    EXPECT_FALSE(CScmdfkey[0].visible());  // nobody has laid the bar out, nor placed its buttons
    processInput(std::string(30, '\n'));
    picterm.onMouseDown.raise(1, 0, 300, 300);
    picterm.onMouseMove.raise(1, 0, 600, -15);
    headless::advance(1000);
    picterm.onMouseUp.raise(1, 0, 600, 40000);
    EXPECT_TRUE(frmterm.loaded());
}

TEST_F(Start, WithoutAFileTheProgramComesUpUntitledAndCentred) {
    start();
    EXPECT_EQ(headless::now(), 3000);
    const Lines lines = happened();
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[0], "label lblVersion Version 19.2.NC.06");
    EXPECT_EQ(lines[1].substr(0, 16), "label lblNotice ");
    EXPECT_EQ(lines[2], "window frmSplash show");
    EXPECT_EQ(lines[3], "ini Settings PortForwardRangeStart 3000");
    EXPECT_EQ(lines[4], "caption frmterm Zentora Terminal Emulator - (untitled)");
    EXPECT_EQ(lines[5], "apptitle QXTERM - (untitled)");
    EXPECT_EQ(lines[6], "window frmterm show");
    EXPECT_EQ(lines[7], "window frmSplash unload");
    const TwipsRect place = frmterm.place();
    EXPECT_EQ(place.left, (1024 * 15 - place.width) / 2 / 15 * 15);
    EXPECT_EQ(place.top, (768 * 15 - place.height) / 2 / 15 * 15);
}

TEST_F(Start, TheProgramsValuesAreSet) {
    headless::setLanguage("jpn");
    headless::setDisplay(640, 480, 12);
    start();
    EXPECT_EQ(g_sHelpFile, "C:\\QXTERM\\enu_te.chm");
    EXPECT_EQ(g_sLanguage, "jpn");
    EXPECT_EQ(g_lPortForwardStart, 3000);
    EXPECT_EQ(CurrentProfile.fontSize, 9);
    EXPECT_EQ(CurrentProfile.name, "(untitled)");
    EXPECT_EQ(g_iConnectType(), connectType::ssh);
    EXPECT_EQ(tmrGen.interval(), 250);
    EXPECT_TRUE(tmrGen.enabled());
    EXPECT_EQ(vscterm.minimum(), 501);
    EXPECT_EQ(vscterm.maximum(), 501);
    EXPECT_EQ(vscterm.value(), 501);
    EXPECT_EQ(vscterm.largeChange(), 24);
    EXPECT_EQ(vscterm.tag(), "501");
}

TEST_F(Start, TheEightColoursAreMixedOfThreeBits) {
    colourTable.fill({});
    start();
    const auto colour = [](std::size_t index) {
        const Rgb& rgb = colourTable.at(index);
        return std::tuple{int{rgb.red}, int{rgb.green}, int{rgb.blue}};
    };
    EXPECT_EQ(colour(0), (std::tuple{0, 0, 0}));
    EXPECT_EQ(colour(1), (std::tuple{255, 0, 0}));
    EXPECT_EQ(colour(6), (std::tuple{0, 255, 255}));
    EXPECT_EQ(colour(7), (std::tuple{255, 255, 255}));
}

TEST_F(Start, TheScreensFontIsThatOfTheLanguage) {
    start();
    EXPECT_EQ(picterm.native->face, "Courier New");
    headless::resetAll();
    headless::setLanguage("jpn");
    start();
    EXPECT_EQ(picterm.native->face, "QXTERM");
}

// 11 points: a line of 264 twips are 17.6 pixels, a character of 132 twips 8.8.
TEST_F(Start, ACellThatCouldNotBeMeasuredIsOfTheNearestPixels) {
    headless::planFailure(headless::Point::pictureMeasure, {.times = headless::FailurePlan::always});
    start();
    EXPECT_EQ(CurrentProfile.fontSize, 11);
    EXPECT_EQ(lineHeight, 18);
    EXPECT_EQ(charWidth, 9);
}

TEST_F(Start, TheSavedPlaceIsTakenAlsoAtTheCorner) {
    putSettings({{"Window", "0 0"}});
    start();
    EXPECT_EQ(frmterm.place().left, 0);
    EXPECT_EQ(frmterm.place().top, 0);
}

TEST_F(Start, AProfileOnTheCommandLineIsConnected) {
    putSettings({{"Profiles", "one two "}});
    putProfile("two", {{"connect", "net"}, {"host", "krv"}, {"netport", "23"}});
    then([] { headless::socketConnects(comnet2); });
    thenWait(400);
    start("two");
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_EQ(CurrentProfile.name, "two");
}

TEST_F(Start, AnotherCommandLineIsIgnored) {
    putSettings({{"Profiles", "two "}});
    start("Two");
    EXPECT_EQ(CurrentProfile.name, "(untitled)");
    EXPECT_EQ(countOf("socket"), 0U);
}

TEST_F(Start, AFailureEndsTheProgramAfterItsReport) {
    headless::putIni("Settings", "PortForwardRangeStart", "x");
    start();
    EXPECT_EQ(boxTexts(),
              (Lines{"An unexpected error 13 has occurred\r\nroutine: main\r\nmessage: Type mismatch"}));
    EXPECT_TRUE(eventLoop::ending());
    EXPECT_FALSE(frmterm.loaded());
}

TEST_F(Start, AFailureOfTheMainWindowsLoadIsReportedUnderItsName) {
    planFault("frmterm_Load", 5);
    start();
    EXPECT_EQ(boxTexts(),
              (Lines{"An unexpected error 5 has occurred\r\nroutine: frmterm_Load\r\nmessage: Invalid "
                     "procedure call or argument"}));
    EXPECT_FALSE(eventLoop::ending());
}

TEST_F(Start, TheReceiveStateBeginsWithTheWindow) {
    packetCount = 7;
    firstDataSeen = true;
    start();
    EXPECT_EQ(packetCount, 0);
    EXPECT_FALSE(firstDataSeen);
}

TEST_F(Start, AnActivatedWindowIsPaintedAndListensToItsSocketAnew) {
    start();
    processInput("\x1b[2;3Htext");
    headless::deliverPaints();
    const auto secondRow = [] {
        std::string text;
        for (int column = 0; column < 80; ++column) text += picterm.picture().at(column, 1).text();
        return text;
    };
    const std::string whole = "  text" + std::string(74, ' ');
    ASSERT_EQ(secondRow(), whole);
    headless::deactivate(frmterm);
    const std::uint32_t armed = headless::timesRearmed(comnet2);
    picterm.fill(allCells, Raster::whiteness);  // another window has left its traces
    headless::deliverPaints();
    EXPECT_EQ(secondRow(), std::string(80, ' '));
    headless::activate(frmterm);
    headless::deliverPaints();
    EXPECT_EQ(secondRow(), whole);
    EXPECT_EQ(headless::timesRearmed(comnet2), armed + 1);
}

/// The program is up; its window closes.
class Closing : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        putSettings({{"Window", "1200 900"}});
        start();
        records.clear();
    }
    static bool close() { return frmterm.unload(UnloadReason::formControlMenu); }
};

TEST_F(Closing, ThePlaceIsSaved) {
    EXPECT_TRUE(close());
    EXPECT_EQ(happened(),
              (Lines{"ini Settings Window 1200 900", "help 18 0", "window frmterm unload", "exit"}));
}

/// 2184 pixels of 15 twips are the last that 16 bits hold: 32760, and -32760.
TEST_F(Closing, APlaceFarOutIsSavedAsFarAsItCanBeReadBack) {
    struct Case {
        std::int32_t leftPixels;
        std::int32_t topPixels;
        const char* saved;
    };
    for (const Case& place : {Case{2184, -2184, "32760 -32760"}, Case{2185, -2185, "32767 -32768"},
                              Case{-2185, 2185, "-32768 32767"}, Case{100000, -100000, "32767 -32768"}}) {
        TwipsRect far = frmterm.place();
        far.left = place.leftPixels * 15;
        far.top = place.topPixels * 15;
        frmterm.move(far);
        EXPECT_TRUE(close());
        EXPECT_EQ(iniValue("Settings", "Window"), place.saved);
        headless::killProgram();
        start();
        EXPECT_EQ(std::to_string(g_iWindowLeft) + ' ' + std::to_string(g_iWindowTop), place.saved);
    }
}

TEST_F(Closing, ASessionIsDroppedOnlyWhenTheUserAgrees) {
    g_bConnectActive = true;
    EXPECT_FALSE(close());
    EXPECT_EQ(
        happened(),
        (Lines{"box Zentora Terminal Emulator A connection is active, exit anyway? YesNo question No"}));
    EXPECT_TRUE(tmrGen.enabled());
    headless::queueAnswer(Answer::yes);
    EXPECT_TRUE(close());
    EXPECT_FALSE(g_bConnectActive);
}

TEST_F(Closing, CancelKeepsTheWindowButItsPlaceIsSavedAndItsTimerStopped) {
    g_bProfileChanged = true;
    headless::queueAnswer(Answer::cancel);
    EXPECT_FALSE(close());
    EXPECT_EQ(happened(),
              (Lines{"ini Settings Window 1200 900",
                     "box Zentora Terminal Emulator Save changes to profile: (untitled)? YesNoCancel "
                     "question Cancel",
                     "help 18 0"}));
    EXPECT_FALSE(tmrGen.enabled());
    EXPECT_TRUE(frmterm.loaded());
}

TEST_F(Closing, YesSavesANamedProfile) {
    CurrentProfile.name = "named";
    g_bProfileChanged = true;
    headless::queueAnswer(Answer::yes);
    EXPECT_TRUE(close());
    EXPECT_EQ(iniValue("named", "connect"), "ssh");
}

TEST_F(Closing, YesAsksForANameWhenTheProfileHasNone) {
    g_bProfileChanged = true;
    headless::queueAnswer(Answer::yes);
    then([] { click(*visibleForms().back(), "cmd3Dcancel"); });
    EXPECT_TRUE(close());
    EXPECT_EQ(recorded("window", "name"), (Lines{"frmprof", "frmprof", "frmterm"}));
}

TEST_F(Closing, OpenHelpIsClosed) {
    mnuhelpItem_Click(0);
    EXPECT_TRUE(close());
    EXPECT_EQ(recorded("help", "command"), (Lines{"1", "18"}));
}

TEST_F(Start, BlinkingWaitsForTheInterpreter) {
    start();
    headless::deliverPaints();
    processInput("\x1b[?12h\x1b[5mA");
    inputBusy = -1;
    headless::advance(750);  // odd: three times for the cursor, once for the text
    EXPECT_EQ(picterm.picture().at(0, 0).text(), 'A');
    EXPECT_TRUE(picterm.picture().at(1, 0).cursor());
    inputBusy = 0;
    headless::advance(250);  // once for each
    if (headless::paintsWaiting) headless::deliverPaints();
    EXPECT_EQ(picterm.picture().at(0, 0).text(), ' ');
    EXPECT_FALSE(picterm.picture().at(1, 0).cursor());
    processInput("\x1b[?12l");
}

/// Whatever was left behind: the program begins with the terminal's own state.
TEST_F(Start, TheTerminalBeginsFresh) {
    setCurrentAttr({63, 1, 2});
    carryOver = "\x1b[";
    lastChar = "x";
    scrollback[1].text.fill('x');
    fkeyBank = 1;
    start();
    EXPECT_EQ(curAttr, 0);
    EXPECT_EQ(curFg, 7);
    EXPECT_EQ(curBg, 0);
    EXPECT_EQ(carryOver, "");
    EXPECT_EQ(lastChar, "");
    EXPECT_EQ(scrollback[1].text[0], ' ');
    EXPECT_EQ(fkeyBank, 0);
}

}  // namespace
}  // namespace qxterm::test::start_test
