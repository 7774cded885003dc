#include "app/menus.h"
#include "app/edit_menu.h"

#include "app/program_fixture.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/session.h"
#include "diag/error_trap.h"
#include "platform/clipboard.h"
#include "platform/event_loop.h"
#include "platform/main_form.h"

namespace qxterm::test::menus_test {
namespace {

using Lines = std::vector<std::string>;

class Menus : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        start();
        records.clear();
    }
    static Form& top() { return *visibleForms().back(); }
    static Lines windows() {
        Lines lines;
        for (const headless::Record& record : records) {
            if (record.kind == "window")
                lines.push_back(fieldOf(record, "name") + ' ' + fieldOf(record, "op"));
        }
        return lines;
    }
};

TEST_F(Menus, TheMenuBarIsComplete) {
    Lines bar;
    for (const Menu* menu : Menu::all()) {
        std::string line = menu->caption();
        for (const Menu::Entry& entry : menu->entries())
            line += '|' + std::to_string(entry.index) + entry.caption;
        bar.push_back(line);
    }
    EXPECT_EQ(bar, (Lines{"&Profile|0&New|1&Open...|2&Save|3Save &As...|4-|5|6|7|8|9-|10E&xit",
                          "&Edit|0&Copy|1&Paste|2C&lear",
                          "&Connection|0&Connect|1&Disconnect|2Send &Break|3&Options...",
                          "&Help|0&Contents|1-|2&Technical Support|3&About Terminal Emulator"}));
}

TEST_F(Menus, NewNumbersBehindTheLastSuchNameInListOrder) {
    fillProfileNames("profile3 profile7 other profile2");
    then([] { click(top(), "cmdCancel"); });
    mnuprofItem_Click(0);
    EXPECT_EQ(CurrentProfile.name, "profile3");
    EXPECT_TRUE(g_bProfileNew);
    EXPECT_TRUE(g_bDialogCancelled);
    EXPECT_EQ(windows(), (Lines{"frmOptions modal", "frmOptions unload"}));  // Save As is not reached
}

TEST_F(Menus, TheFirstNewProfileIsNumberOne) {
    CurrentProfile.host = "old";
    then([] { click(top(), "cmdCancel"); });
    mnuprofItem_Click(0);
    EXPECT_EQ(CurrentProfile.name, "profile1");
    EXPECT_EQ(CurrentProfile.host, "");
    EXPECT_EQ(frmterm.caption(), "Zentora Terminal Emulator - profile1");
}

TEST_F(Menus, ANameOfProfileAndLettersMakesNewFail) {
    fillProfileNames("profileX");
    ASSERT_TRUE(headless::chooseMenu(mnuprofitem, 0));
    EXPECT_EQ(
        boxes(),
        (Lines{
            "An unexpected error 13 has occurred\r\nroutine: mnuprofItem_Click\r\nmessage: Type mismatch"}));
    EXPECT_TRUE(windows().empty());
}

TEST_F(Menus, NewIsOptionsThenSaveAsThenConnect) {
    then([] { enter(top(), "txtNetAddress", "krv"); });
    then([] { click(top(), "optSerial"); });
    then([] { click(top(), "cmdOK"); });
    then([] { enter(top(), "txtprof", "line"); });
    then([] { click(top(), "cmd3Dconn"); });
    thenWait(350);
    mnuprofItem_Click(0);
    EXPECT_EQ(windows(), (Lines{"frmOptions modal", "frmOptions unload", "frmprof modal", "frmprof unload",
                                "frmConn modal", "frmConn unload"}));
    EXPECT_EQ(iniValue("line", "connect"), "serial");
    EXPECT_EQ(iniValue("line", "host"), "krv");
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_FALSE(g_bProfileNew);
}

TEST_F(Menus, NewAndOpenAskAboutChangesFirst) {
    for (const std::int16_t entry : {std::int16_t{0}, std::int16_t{1}}) {
        g_bProfileChanged = true;
        records.clear();
        headless::queueAnswer(Answer::no);
        then([entry] { click(top(), entry == 0 ? "cmdCancel" : "cmd3Dcancel"); });
        mnuprofItem_Click(entry);
        EXPECT_EQ(boxes(), (Lines{"Save changes to profile: (untitled)?"})) << entry;
        EXPECT_FALSE(g_bProfileChanged);
        setCurrentProfile(DefaultProfile);
        nameCurrentProfile("(untitled)");
    }
}

// Nobody is there any more for what New would ask next: the name, or the host to connect to.
TEST_F(Menus, NothingIsAskedBehindTheProgramsEnd) {
    then([] { EXPECT_TRUE(frmterm.unload(UnloadReason::windowsEnding)); });
    EXPECT_TRUE(headless::chooseMenu(mnuprofitem, 0));
    EXPECT_TRUE(eventLoop::ending());
    EXPECT_FALSE(frmterm.loaded());
    // Save As, which New goes on with, does not even make its dialog ready.
    EXPECT_EQ(windows(), (Lines{"frmOptions modal", "frmterm unload"}));
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(countOf("socket"), 0U);
}

TEST_F(Menus, SaveWritesANamedProfileAndAsksForAnothersName) {
    CurrentProfile.name = "named";
    mnuprofItem_Click(2);
    EXPECT_EQ(iniValue("named", "connect"), "ssh");
    EXPECT_TRUE(windows().empty());
    then([] { click(top(), "cmd3Dcancel"); });
    g_bProfileNew = true;
    mnuprofItem_Click(2);
    EXPECT_EQ(windows(), (Lines{"frmprof modal", "frmprof unload"}));
}

TEST_F(Menus, TheSavePromptTakesUntitledForAName) {
    g_bProfileChanged = true;
    headless::queueAnswer(Answer::yes);
    promptSaveProfile();
    EXPECT_EQ(iniValue("(untitled)", "connect"), "ssh");
    EXPECT_TRUE(windows().empty());
}

TEST_F(Menus, NoToTheSavePromptForgetsTheChanges) {
    g_bProfileChanged = true;
    g_bProfileNew = true;
    headless::queueAnswer(Answer::no);
    promptSaveProfile();
    EXPECT_EQ(boxes(), (Lines{"Save changes to profile: (untitled)?"}));
    EXPECT_FALSE(g_bProfileChanged);
    EXPECT_FALSE(g_bProfileNew);
    EXPECT_EQ(countOf("ini"), 0U);
}

TEST_F(Menus, ARecentProfileIsReadConnectedAndMovedToTheFront) {
    fillMruNames("a b");
    setFiles();
    putProfile("b", {{"connect", "loop"}});
    thenWait(350);
    ASSERT_TRUE(headless::chooseMenu(mnuprofitem, 6));
    EXPECT_EQ(CurrentProfile.name, "b");
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_EQ(mruNames[0], "b");
    EXPECT_EQ(mnuprofitem.entry(5).caption, "&1 b");
    EXPECT_FALSE(mnuprofitem.entry(5).enabled);
    EXPECT_EQ(happened().back(), "ini Settings order b a   ");
}

TEST_F(Menus, TheCurrentProfileIsNotReadAgainFromTheRecentOnes) {
    CurrentProfile.name = "a";
    CurrentProfile.phone = "edited";
    CurrentProfile.connectType = connectType::loop;
    fillMruNames("a");
    thenWait(350);
    mnuprofItem_Click(5);
    EXPECT_EQ(CurrentProfile.phone, "edited");
    EXPECT_TRUE(g_bConnectActive);
}

TEST_F(Menus, ExitClosesTheMainWindow) {
    mnuprofItem_Click(10);
    EXPECT_FALSE(frmterm.loaded());
    EXPECT_EQ(happened().back(), "exit");
}

TEST_F(Menus, TheEditEntriesAreSetWhenTheMenuOpens) {
    for (const Menu::Entry& entry : mnueditItem.entries()) EXPECT_FALSE(entry.enabled);
    clipboard::setText("text");
    mnuedit_Click();
    EXPECT_FALSE(mnueditItem.entry(0).enabled);
    EXPECT_FALSE(mnueditItem.entry(1).enabled);
    EXPECT_TRUE(mnueditItem.entry(2).enabled);
    g_bConnectActive = true;
    mnuedit_Click();
    EXPECT_TRUE(mnueditItem.entry(1).enabled);
}

TEST_F(Menus, TheHelpEntriesCallHelp) {
    mnuhelpItem_Click(0);
    mnuhelpItem_Click(2);
    EXPECT_EQ(happened(), (Lines{"help 1 0", "help 15 4044"}));
}

TEST_F(Menus, AboutShowsTheSplashFormWithItsButtonEachTimeAnew) {
    Lines first;
    for (int time = 0; time < 2; ++time) {
        then([] { EXPECT_EQ(find<Label>(top(), "lblVersion").caption(), "Version 19.2.NC.06"); });
        then([] {
            const TwipsRect place = find<Label>(top(), "lblVersion").place();
            EXPECT_EQ(place.left, 825);
            EXPECT_EQ(place.top, 4245);
        });
        then([] { click(top(), "cmdOK"); });
        mnuhelpItem_Click(3);
        const Lines lines = happened();
        if (time == 0) first = lines;
        EXPECT_EQ(lines, first);
        EXPECT_EQ(lines.back(), "window frmSplash unload");
    }
}

}  // namespace
}  // namespace qxterm::test::menus_test
