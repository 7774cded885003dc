#include "app/dialogs/profile_dialog.h"

#include <array>

#include "app/menus.h"
#include "app/program_fixture.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/session.h"
#include "platform/main_form.h"

namespace qxterm::test::profile_dialog_test {
namespace {

using Lines = std::vector<std::string>;

class ProfileDialog : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        putSettings({{"Profiles", "alpha beta "}, {"Order", "alpha "}});
        putProfile("beta", {{"connect", "loop"}, {"phone", "42"}});
        start();
        records.clear();
    }
    using Place = std::array<std::int32_t, 4>;  ///< left, top, width, height
    template <class Thing>
    static Place placeOf(const Thing& thing) {
        const TwipsRect place = thing.place();
        return {place.left, place.top, place.width, place.height};
    }
    static Control& control(const char* name) { return find<Control>(frmprof, name); }
    static void press(const char* name, std::int16_t code) {
        ASSERT_TRUE(headless::press(control(name), code)) << name;
    }
    static void choose(int entry, bool twice = false) {
        ASSERT_TRUE(headless::choose(find<ListBox>(frmprof, "lstprof"), entry, twice));
    }
};

TEST_F(ProfileDialog, OpenModeShowsTheListAlone) {
    frmprof.load();
    frmprof.move({150, 300, 4050, 5010});
    control("lblname").move({15, 30, 600, 240});
    control("txtprof").move({15, 300, 2010, 330});
    control("lstprof").move({15, 705, 2010, 1500});
    control("cmd3Dconn").move({2500, 300, 900, 360});
    then([] {
        EXPECT_EQ(frmprof.caption(), "Open Profile");
        EXPECT_FALSE(control("txtprof").visible());
        EXPECT_FALSE(control("txtprof").enabled());
        EXPECT_EQ(control("cmd3Dconn").caption(), "Connect");
        EXPECT_FALSE(control("cmd3Dconn").enabled());
        EXPECT_FALSE(control("cmd3Dopen").enabled());
        EXPECT_EQ(find<ListBox>(frmprof, "lstprof").items(), (Lines{"alpha", "beta"}));
        EXPECT_EQ(placeOf(control("lstprof")), (Place{15, 300, 2010, 1740}));
        EXPECT_EQ(placeOf(frmprof), (Place{150, 300, 4050, 4830}));
    });
    then([] { click(frmprof, "cmd3Dcancel"); });
    showOpenProfile();
    EXPECT_TRUE(g_bDialogCancelled);
    EXPECT_EQ(CurrentProfile.name, "(untitled)");
}

TEST_F(ProfileDialog, OpenReadsTheProfileWithoutConnecting) {
    then([] { choose(1); });
    then([] { click(frmprof, "cmd3Dopen"); });
    showOpenProfile();
    EXPECT_EQ(CurrentProfile.name, "beta");
    EXPECT_EQ(CurrentProfile.phone, "42");
    EXPECT_EQ(mruNames[0], "beta");
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_FALSE(frmprof.loaded());
}

TEST_F(ProfileDialog, ConnectClosesTheDialogAndConnects) {
    then([] { choose(1); });
    then([] { click(frmprof, "cmd3Dconn"); });
    thenWait(350);
    showOpenProfile();
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_EQ(recorded("window", "name"), (Lines{"frmprof", "frmprof", "frmConn", "frmConn"}));
    EXPECT_EQ(recorded("window", "op"), (Lines{"modal", "unload", "modal", "unload"}));
}

TEST_F(ProfileDialog, ADoubleClickConnects) {
    then([] { choose(1, true); });
    thenWait(350);
    showOpenProfile();
    EXPECT_TRUE(g_bConnectActive);
    EXPECT_EQ(CurrentProfile.name, "beta");
}

TEST_F(ProfileDialog, SaveUnderANewNameWritesItAndMovesItToTheTop) {
    g_bProfileNew = true;
    then([] {
        EXPECT_EQ(frmprof.caption(), "Save Profile As");
        EXPECT_EQ(control("cmd3Dconn").caption(), "OK");
        EXPECT_FALSE(control("cmd3Dopen").visible());
        EXPECT_FALSE(control("cmd3Dconn").enabled());
    });
    then([] { enter(frmprof, "txtprof", "gamma"); });
    then([] { click(frmprof, "cmd3Dconn"); });
    showSaveProfileAs();
    EXPECT_EQ(frmterm.caption(), "Zentora Terminal Emulator - gamma");
    EXPECT_EQ(iniValue("gamma", "connect"), "ssh");
    EXPECT_EQ(iniValue("Settings", "Profiles"), "alpha beta gamma ");
    EXPECT_EQ(mruNames[0], "gamma");
    EXPECT_FALSE(g_bProfileNew);
}

TEST_F(ProfileDialog, SaveModeClosesTheGapThatOpenLeaves) {
    frmprof.load();
    control("cmd3Dopen").move({15, 30, 45, 60});
    control("cmd3Dcancel").move({75, 90, 105, 120});
    control("cmd3Dhelp").move({135, 150, 165, 180});
    then([] {
        EXPECT_EQ(placeOf(control("cmd3Dcancel")), (Place{15, 30, 45, 60}));
        EXPECT_EQ(placeOf(control("cmd3Dhelp")), (Place{75, 90, 105, 120}));
        click(frmprof, "cmd3Dcancel");
    });
    showSaveProfileAs();
}

TEST_F(ProfileDialog, AnExistingNameIsReplacedOnlyWhenTheUserAgrees) {
    then([] { enter(frmprof, "txtprof", "alpha"); });
    then([] { click(frmprof, "cmd3Dconn"); });
    then([] {
        EXPECT_EQ(boxes(), (Lines{"The profile alpha exists, do you want to replace it?"}));
        EXPECT_EQ(recorded("box", "buttons"), (Lines{"YesNo"}));
        EXPECT_EQ(countOf("ini"), 0U);
        EXPECT_EQ(textOf(frmprof, "txtprof"), "alpha");
        headless::queueAnswer(Answer::yes);
    });
    then([] { click(frmprof, "cmd3Dconn"); });
    showSaveProfileAs();
    EXPECT_EQ(iniValue("alpha", "connect"), "ssh");
    EXPECT_EQ(iniValue("Settings", "Profiles"), "alpha beta ");
}

TEST_F(ProfileDialog, NamesAreTypedFromLettersAndDigits) {
    then([] {
        for (const char key : std::string{"a -_.Z9~\xE4"}) press("txtprof", static_cast<unsigned char>(key));
        EXPECT_EQ(textOf(frmprof, "txtprof"), "aZ9");
        press("txtprof", 8);
        EXPECT_EQ(textOf(frmprof, "txtprof"), "aZ");
    });
    then([] { press("txtprof", 13); });
    showSaveProfileAs();
    EXPECT_EQ(CurrentProfile.name, "aZ");
}

TEST_F(ProfileDialog, EnterNeedsAnEnabledButtonAndEscapeCancels) {
    then([] { press("lstprof", 13); });
    then([] { EXPECT_TRUE(frmprof.loaded()); });
    then([] { press("lstprof", 27); });
    showOpenProfile();
    EXPECT_TRUE(g_bDialogCancelled);
}

TEST_F(ProfileDialog, AnEmptiedNameLeavesTheButtonsEnabledButDoesNothing) {
    then([] { enter(frmprof, "txtprof", "x"); });
    then([] { enter(frmprof, "txtprof", ""); });
    then([] { click(frmprof, "cmd3Dconn"); });
    then([] {
        EXPECT_TRUE(frmprof.loaded());
        EXPECT_TRUE(control("cmd3Dconn").enabled());
        EXPECT_EQ(countOf("ini"), 0U);
    });
    then([] { click(frmprof, "cmd3Dcancel"); });
    showSaveProfileAs();
}

TEST_F(ProfileDialog, TheCloseBoxCountsAsCancel) {
    then([] { frmprof.unload(UnloadReason::formControlMenu); });
    showSaveProfileAs();
    EXPECT_TRUE(g_bDialogCancelled);
}

TEST_F(ProfileDialog, NamesAreLettersAndDigits) {
    then([] {
        std::string typed;
        for (std::int16_t key = ' '; key <= 255; ++key) press("txtprof", key);
        EXPECT_EQ(textOf(frmprof, "txtprof"),
                  "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
        press("txtprof", 8);
        EXPECT_EQ(textOf(frmprof, "txtprof").back(), 'y');
        click(frmprof, "cmd3Dcancel");
    });
    showSaveProfileAs();
}

TEST_F(ProfileDialog, TheCloseBoxIsCancel) {
    then([] { EXPECT_TRUE(frmprof.unload(UnloadReason::formControlMenu)); });
    showOpenProfile();
    EXPECT_TRUE(g_bDialogCancelled);
}

TEST_F(ProfileDialog, AKeyThatIsNoLetterIsTakenAway) {
    frmprof.load();
    for (const std::int16_t pressed :
         {std::int16_t{'!'}, std::int16_t{' '}, std::int16_t{1}, std::int16_t{233}}) {
        std::int16_t key = pressed;
        find<TextBox>(frmprof, "txtprof").onKeyPress.raise(key);
        EXPECT_EQ(key, 0) << pressed;
    }
    std::int16_t letter = 'z';
    find<TextBox>(frmprof, "txtprof").onKeyPress.raise(letter);
    EXPECT_EQ(letter, 'z');
    frmprof.unload();
}

}  // namespace
}  // namespace qxterm::test::profile_dialog_test
