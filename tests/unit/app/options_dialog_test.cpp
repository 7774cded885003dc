#include "app/dialogs/options_dialog.h"

#include "app/program_fixture.h"
#include "config/ini_file.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/session.h"
#include "terminal/drawing/cell_size.h"

namespace qxterm::test::options_dialog_test {
namespace {

using Lines = std::vector<std::string>;

class OptionsDialog : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        start();
        ProfileRecord profile = DefaultProfile;
        profile.name = "office";
        profile.connectType = connectType::net;
        profile.host = "krv";
        profile.port = 2023;
        setCurrentProfile(profile);
        before = profile;
        records.clear();
    }
    static void show() { frmOptions.showModal(); }
    static Control& control(const char* name) { return find<Control>(frmOptions, name); }
    static ComboBox& combo(const char* name) { return find<ComboBox>(frmOptions, name); }
    static bool chosen(const char* name) { return find<OptionButton>(frmOptions, name).value(); }
    static std::string text(const char* name) { return textOf(frmOptions, name); }
    static void set(const char* name, std::string_view value) { enter(frmOptions, name, value); }
    static void choose(const char* name, int entry) {
        ASSERT_TRUE(headless::choose(combo(name), entry, false));
    }
    static void press(const char* name) { click(frmOptions, name); }
    static inline ProfileRecord before;
};

TEST_F(OptionsDialog, TheProfileIsShown) {
    then([] {
        EXPECT_EQ(frmOptions.caption(), "Options for profile: office");
        EXPECT_TRUE(chosen("optNetwork"));
        EXPECT_FALSE(chosen("optSSH"));
        EXPECT_EQ(text("txtNetAddress"), "krv");
        EXPECT_EQ(text("txtNetPort"), "2023");
        EXPECT_EQ(text("txtConnectTimeout"), "45");
        EXPECT_EQ(text("txtDialPrefix"), "ATDT");
        EXPECT_EQ(text("txtHangup"), "ATH");
        EXPECT_EQ(text("txtReset"), "ATZ");
        EXPECT_EQ(combo("cmbPort").items(), (Lines{"COM1", "COM2", "COM3", "COM4"}));
        EXPECT_EQ(combo("cmbBaudRate").chosenText(), "9600");
        EXPECT_EQ(combo("cmbBaudRate").items().back(), "19.2K");
        EXPECT_EQ(combo("cmbParity").items(), (Lines{"None", "Odd", "Even", "Mark", "Space"}));
        EXPECT_EQ(combo("cmbParity").chosenText(), "None");
        EXPECT_EQ(combo("cmbData").chosenText(), "8");
        EXPECT_EQ(combo("cmbStop").items(), (Lines{"1", "1.5", "2"}));
        EXPECT_EQ(combo("cmbFlow").chosenText(), "Xon/Xoff");
        EXPECT_TRUE(chosen("option3DLarge"));  // 768 lines
        EXPECT_TRUE(control("frameNet").visible());
        EXPECT_FALSE(control("frameSettings").visible());
    });
    then([] { press("cmdOK"); });
    show();
    EXPECT_EQ(CurrentProfile, before);
    EXPECT_FALSE(g_bProfileChanged);
}

TEST_F(OptionsDialog, OkStoresWhatChanged) {
    then([] {
        set("txtNetAddress", "new");
        set("txtNetPort", "65535");
        set("txtConnectTimeout", " 60 seconds");
        set("txtPhoneNumber", "5550100");
        choose("cmbPort", 3);
        choose("cmbBaudRate", 7);
        choose("cmbParity", 4);
        choose("cmbData", 0);
        choose("cmbStop", 1);
        choose("cmbFlow", 3);
        press("chkAuto");
    });
    then([] { press("cmdOK"); });
    show();
    ProfileRecord expected = before;
    expected.host = "new";
    expected.port = 65535;
    expected.timeout = 60;
    expected.phone = "5550100";
    expected.commport = 4;
    expected.baud = 19200;
    expected.parity = "s";
    expected.databits = 5;
    expected.stopBits = "1.5";
    expected.flowControl = 3;
    expected.auto_retry = true;
    EXPECT_EQ(CurrentProfile, expected);
    EXPECT_TRUE(g_bProfileChanged);
    EXPECT_FALSE(g_bDialogCancelled);
    EXPECT_EQ(g_iConnectTimeout, 60);
    EXPECT_EQ(iniValue("Settings", "timeout"), "60");
}

TEST_F(OptionsDialog, CancelLeavesEverything) {
    then([] { set("txtNetAddress", "new"); });
    then([] { press("cmdCancel"); });
    show();
    EXPECT_EQ(CurrentProfile, before);
    EXPECT_FALSE(g_bProfileChanged);
    EXPECT_TRUE(g_bDialogCancelled);
}

TEST_F(OptionsDialog, ATimeoutMustBeAboveZero) {
    for (const char* value : {"0", "", "-5", "none"}) {
        then([value] {
            set("txtConnectTimeout", value);
            press("cmdOK");
            EXPECT_EQ(boxes(), (Lines{"Connection timeout must be betweeen 1-999"}));
            EXPECT_EQ(recorded("box", "title"), (Lines{"Zentora Terminal Emulator"}));
            records.clear();
        });
    }
    then([] {
        set("txtConnectTimeout", "1000");
        press("cmdOK");
    });
    show();
    EXPECT_EQ(CurrentProfile.timeout, 1000);
}

TEST_F(OptionsDialog, ATimeoutBeyond16BitsIsReported) {
    then([] { set("txtConnectTimeout", "32768"); });
    then([] { press("cmdOK"); });
    then([] {
        EXPECT_EQ(
            boxes(),
            (Lines{"An unexpected error 6 has occurred\r\nroutine: recordChanges\r\nmessage: Overflow"}));
    });
    then([] { press("cmdCancel"); });
    show();
    EXPECT_EQ(CurrentProfile, before);
}

TEST_F(OptionsDialog, APortMustFit16BitsUnsigned) {
    for (const char* value : {"65536", "-1", "99999999999999999999"}) {
        then([value] {
            set("txtNetPort", value);
            press("cmdOK");
            EXPECT_EQ(boxes(), (Lines{"Invalid network port number"})) << value;
            EXPECT_EQ(recorded("box", "title"), (Lines{"Bad Network Port"}));
            records.clear();
        });
    }
    then([] { press("cmdCancel"); });
    show();
    EXPECT_EQ(CurrentProfile, before);
}

TEST_F(OptionsDialog, TheTypesFillThePortAndShowTheirFrame) {
    headless::putIni("office", "netport", "4023");
    then([] {
        records.clear();
        press("optSSH");
        EXPECT_EQ(text("txtNetPort"), "22");
        EXPECT_EQ(happened(), (Lines{"ini Settings PortForwardRangeStart 3000"}));
        press("optNetwork");
        EXPECT_EQ(text("txtNetPort"), "4023");
        EXPECT_EQ(happened(), (Lines{"ini Settings PortForwardRangeStart 3000"}));
        EXPECT_FALSE(chosen("optSSH"));
        press("optModem");
        EXPECT_EQ(text("txtNetPort"), "4023");
        EXPECT_TRUE(control("frameSettings").visible());
        EXPECT_FALSE(control("frameNet").visible());
        press("optSerial");
        EXPECT_EQ(text("txtNetPort"), "23");
        EXPECT_TRUE(happened().empty());
    });
    then([] { press("cmdOK"); });
    show();
    EXPECT_EQ(CurrentProfile.connectType, connectType::serial);
    EXPECT_EQ(g_iConnectType(), connectType::serial);
    EXPECT_EQ(CurrentProfile.port, 23);
    EXPECT_EQ(iniValue("Settings", "timeout"),
              "(none)");  // the time-out of all connections is that of net and ssh
}

TEST_F(OptionsDialog, NetworkWithoutAPortInTheFileShows23AndSshAnEmptyOneShows22) {
    headless::putIni("office", "SSHnetport", "");
    then([] {
        press("optNetwork");
        EXPECT_EQ(text("txtNetPort"), "23");
        press("optSSH");
        EXPECT_EQ(text("txtNetPort"), "22");
    });
    then([] { press("cmdCancel"); });
    show();
}

TEST_F(OptionsDialog, AFontSizeIsAppliedToTheWindow) {
    EXPECT_EQ(charWidth, 9);
    then([] { press("option3DSmall"); });
    then([] { press("cmdOK"); });
    show();
    EXPECT_EQ(CurrentProfile.fontSize, 9);
    EXPECT_TRUE(g_bProfileChanged);
    EXPECT_EQ(charWidth, 7);
    EXPECT_EQ(lineHeight, 15);
}

TEST_F(OptionsDialog, WhatIsInNoListIsKept) {
    CurrentProfile.commport = 9;
    CurrentProfile.baud = 57600;
    CurrentProfile.parity = "N";
    CurrentProfile.databits = 9;
    CurrentProfile.stopBits = "3";
    CurrentProfile.flowControl = 7;
    before = CurrentProfile;
    then([] {
        for (const char* name : {"cmbPort", "cmbBaudRate", "cmbParity", "cmbData", "cmbStop", "cmbFlow"}) {
            EXPECT_EQ(combo(name).listIndex(), -1) << name;
        }
    });
    then([] { press("cmdOK"); });
    show();
    EXPECT_EQ(CurrentProfile, before);
    EXPECT_FALSE(g_bProfileChanged);
}

TEST_F(OptionsDialog, ATypeWithoutAButtonIsKept) {
    CurrentProfile.connectType = connectType::loop;
    then([] {
        for (const char* name : {"optNetwork", "optSerial", "optModem", "optSSH"}) EXPECT_FALSE(chosen(name));
    });
    then([] { press("cmdOK"); });
    show();
    EXPECT_EQ(CurrentProfile.connectType, connectType::loop);
}

TEST_F(OptionsDialog, OneTabIsSeenAtATime) {
    then([] {
        auto& tabs = find<TabStrip>(frmOptions, "fptOptions");
        EXPECT_EQ(tabs.tabs(), (Lines{"Connection", "Modem", "Time-out", "Font Sizes"}));
        EXPECT_TRUE(control("txtNetPort").seen());
        EXPECT_FALSE(control("cmbPort").seen());
        EXPECT_FALSE(control("txtReset").seen());
        press("optSerial");
        EXPECT_FALSE(control("txtNetPort").seen());
        EXPECT_TRUE(control("cmbPort").seen());
        tabs.setTab(1);
        EXPECT_FALSE(control("optSerial").seen());
        EXPECT_FALSE(control("cmbPort").seen());
        EXPECT_TRUE(control("txtReset").seen());
        EXPECT_FALSE(control("txtConnectTimeout").seen());
        tabs.setTab(2);
        EXPECT_FALSE(control("txtReset").seen());
        EXPECT_TRUE(control("txtConnectTimeout").seen());
        EXPECT_TRUE(control("chkAuto").seen());
        tabs.setTab(3);
        EXPECT_FALSE(control("chkAuto").seen());
        EXPECT_TRUE(control("txtSampleText").seen());
        EXPECT_TRUE(control("cmdOK").seen());
    });
    then([] { press("cmdCancel"); });
    show();
}

TEST_F(OptionsDialog, HelpIsCalledWithItsTopic) {
    then([] { press("cmdHelp"); });
    then([] { press("cmdCancel"); });
    show();
    EXPECT_EQ(recorded("help", "context"), (Lines{"4020"}));
}

TEST_F(OptionsDialog, EachSizeOfTextIsShownAndTaken) {
    struct Size {
        const char* button;
        float points;
    };
    for (const Size& size :
         {Size{"option3DSmall", 9}, Size{"option3DMedium", 10}, Size{"option3DLarge", 11}}) {
        // 11 is the size at first: each choice is a change.
        setFontSize(size.points == 11 ? 10.0F : 11.0F);
        then([size] { press(size.button); });
        then([] { press("cmdOK"); });
        show();
        EXPECT_EQ(CurrentProfile.fontSize, size.points) << size.button;
        then([size] {
            for (const char* name : {"option3DSmall", "option3DMedium", "option3DLarge"}) {
                EXPECT_EQ(chosen(name), std::string_view{name} == size.button) << name;
            }
            press("cmdCancel");
        });
        show();
    }
}

TEST_F(OptionsDialog, TheCloseBoxIsCancel) {
    then([] {
        set("txtNetAddress", "new");
        EXPECT_TRUE(frmOptions.unload(UnloadReason::formControlMenu));
    });
    show();
    EXPECT_TRUE(g_bDialogCancelled);
    EXPECT_EQ(CurrentProfile, before);
}

TEST_F(OptionsDialog, TheNetworkFrameComesBackWithItsTypes) {
    then([] {
        for (const char* type : {"optSSH", "optNetwork"}) {
            press("optSerial");
            EXPECT_TRUE(control("frameSettings").visible());
            press(type);
            EXPECT_TRUE(control("frameNet").visible()) << type;
            EXPECT_FALSE(control("frameSettings").visible()) << type;
        }
        press("cmdCancel");
    });
    show();
}

TEST_F(OptionsDialog, EachTypeShowsItsButton) {
    struct Type {
        std::int16_t type;
        const char* button;
    };
    for (const Type& shown : {Type{connectType::net, "optNetwork"}, Type{connectType::serial, "optSerial"},
                              Type{connectType::modem, "optModem"}, Type{connectType::ssh, "optSSH"}}) {
        CurrentProfile.connectType = shown.type;
        then([shown] {
            for (const char* name : {"optNetwork", "optSerial", "optModem", "optSSH"}) {
                EXPECT_EQ(chosen(name), std::string_view{name} == shown.button) << name;
            }
            press("cmdCancel");
        });
        show();
    }
}

}  // namespace
}  // namespace qxterm::test::options_dialog_test
