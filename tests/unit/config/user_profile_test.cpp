#include "config/user_profile.h"

#include "app/program_fixture.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "connection/session.h"
#include "platform/headless/display.h"
#include "platform/main_form.h"
#include "terminal/drawing/cell_size.h"

namespace qxterm::test::user_profile_test {
namespace {

using Lines = std::vector<std::string>;

class UserProfile : public ProgramTest {};

TEST_F(UserProfile, TheDefaultFontSizeFollowsFromTheScreensHeight) {
    const std::pair<std::int32_t, float> sizes[] = {{480, 9.0F},  {499, 9.0F},  {500, 10.0F},
                                                    {699, 10.0F}, {700, 11.0F}, {1080, 11.0F}};
    for (const auto& [height, points] : sizes) {
        headless::setDisplay(800, height, 12);
        initDefaults();
        EXPECT_EQ(DefaultProfile.fontSize, points) << height;
    }
}

TEST_F(UserProfile, ASectionWithoutKeysGivesASerialProfileOfDefaults) {
    CurrentProfile.host = "kept";
    CurrentProfile.port = 77;
    readUserProf("plain");
    ProfileRecord expected;
    expected.name = "plain";
    expected.connectType = connectType::serial;
    expected.host = "kept";  // host and port are not read for this type
    expected.port = 77;
    EXPECT_EQ(CurrentProfile, expected);
    EXPECT_EQ(g_iConnectType(), connectType::serial);
    EXPECT_FALSE(g_bSSHMode);
}

TEST_F(UserProfile, EachTypeHasItsWord) {
    const std::pair<const char*, std::int16_t> words[] = {
        {"net", 0}, {"serial", 1}, {"modem", 2}, {"ssh", 3}, {"loop", 5}, {"Net", 4}, {"telnet", 4}};
    for (const auto& [word, type] : words) {
        headless::putIni("p", "connect", word);
        readUserProf("p");
        EXPECT_EQ(g_iConnectType(), type) << word;
        EXPECT_EQ(CurrentProfile.connectType, type) << word;
    }
    EXPECT_TRUE(g_bSSHMode);  // set by "ssh", not cleared by the others
}

TEST_F(UserProfile, TheTypesHaveTheirOwnPorts) {
    putProfile("n", {{"connect", "net"}, {"host", "server"}, {"netport", "2023"}, {"SSHnetport", "2022"}});
    readUserProf("n");
    EXPECT_EQ(CurrentProfile.host, "server");
    EXPECT_EQ(CurrentProfile.port, 2023);
    headless::putIni("n", "connect", "ssh");
    readUserProf("n");
    EXPECT_EQ(CurrentProfile.port, 2022);
}

TEST_F(UserProfile, AMissingPortIsTheDefaultProfilesForBothTypes) {
    putProfile("n", {{"connect", "net"}});
    readUserProf("n");
    EXPECT_EQ(CurrentProfile.port, 22);
    EXPECT_EQ(CurrentProfile.host, "");
}

TEST_F(UserProfile, AllKeysAreReadWhateverTheirCase) {
    putProfile("m", {{"FONT", "large"},
                     {"connect", "modem"},
                     {"commport", "3"},
                     {"baud", "19200"},
                     {"parity", "e"},
                     {"Databits", "7"},
                     {"StopBits", "1.5"},
                     {"FlowControl", "2"},
                     {"phone", "555-0100"},
                     {"prefix", "ATDP"},
                     {"suffix", ","},
                     {"hangup", "+++"},
                     {"reset", "AT&F"},
                     {"timeout", "60"},
                     {"cd_timeout", "20"},
                     {"auto_retry", "-1"}});
    readUserProf("m");
    const ProfileRecord& p = CurrentProfile;
    EXPECT_EQ(p.fontSize, 11);
    EXPECT_EQ(p.commport, 3);
    EXPECT_EQ(p.baud, 19200);
    EXPECT_EQ(p.parity, "e");
    EXPECT_EQ(p.databits, 7);
    EXPECT_EQ(p.stopBits, "1.5");
    EXPECT_EQ(p.flowControl, 2);
    EXPECT_EQ(p.phone + p.prefix + p.suffix + p.hangup + p.reset, "555-0100ATDP,+++AT&F");
    EXPECT_EQ(p.timeout, 60);
    EXPECT_EQ(p.cd_timeout, 20);
    EXPECT_TRUE(p.auto_retry);
}

TEST_F(UserProfile, AnUnknownFontWordIsMedium) {
    headless::putIni("p", "Font", "Large");
    readUserProf("p");
    EXPECT_EQ(CurrentProfile.fontSize, 10);
    headless::putIni("p", "Font", "small");
    readUserProf("p");
    EXPECT_EQ(CurrentProfile.fontSize, 9);
}

TEST_F(UserProfile, ANumberThatIsNoneIsReportedAndTheKeysBehindItStay) {
    putProfile("p", {{"commport", "2"}, {"baud", "fast"}, {"phone", "1"}});
    readUserProf("p");
    EXPECT_EQ(boxes(), (Lines{"An unexpected error 13 has occurred"}));
    EXPECT_EQ(CurrentProfile.commport, 2);
    EXPECT_EQ(CurrentProfile.baud, 9600);
    EXPECT_EQ(CurrentProfile.phone, "");
}

TEST_F(UserProfile, ReadingSetsCaptionAndSize) {
    start();
    records.clear();
    putProfile("big", {{"Font", "small"}});
    readUserProf("big");
    EXPECT_EQ(happened(),
              (Lines{"caption frmterm Zentora Terminal Emulator - big", "apptitle QXTERM - big"}));
    EXPECT_EQ(charWidth, 7);
    EXPECT_EQ(lineHeight, 15);
}

TEST_F(UserProfile, ANetworkProfileIsWrittenKeyByKey) {
    CurrentProfile.name = "office";
    CurrentProfile.connectType = connectType::net;
    CurrentProfile.host = "krv";
    CurrentProfile.port = 23;
    CurrentProfile.fontSize = 9;
    CurrentProfile.auto_retry = true;
    g_bProfileChanged = true;
    g_bProfileNew = true;
    writeUserProf();
    EXPECT_EQ(happened(), (Lines{"ini office font small", "ini office connect net", "ini office host krv",
                                 "ini office netport 23", "ini office commport 1", "ini office baud 9600",
                                 "ini office parity n", "ini office Databits 8", "ini office StopBits 1",
                                 "ini office FlowControl 1", "ini office phone ", "ini office prefix ATDT",
                                 "ini office suffix ", "ini office hangup ATH", "ini office reset ATZ",
                                 "ini office timeout 45", "ini office cd_timeout 300",
                                 "ini office auto_retry 1", "ini Settings Profiles office "}));
    EXPECT_FALSE(g_bProfileChanged);
    EXPECT_FALSE(g_bProfileNew);
    EXPECT_EQ(profileNames, (Lines{"office"}));
}

TEST_F(UserProfile, OnlyNetAndSshHaveAPortKey) {
    CurrentProfile.name = "s";
    CurrentProfile.connectType = connectType::ssh;
    writeUserProf();
    EXPECT_EQ(iniValue("s", "SSHnetport"), "22");
    EXPECT_EQ(iniValue("s", "netport"), "(none)");
    CurrentProfile.name = "l";
    CurrentProfile.connectType = connectType::loop;
    writeUserProf();
    EXPECT_EQ(iniValue("l", "connect"), "loop");
    EXPECT_EQ(iniValue("l", "SSHnetport"), "(none)");
    EXPECT_EQ(iniValue("l", "netport"), "(none)");
}

TEST_F(UserProfile, AnUnrecognisedTypeLeavesItsWord) {
    putProfile("odd", {{"connect", "carrier-pigeon"}, {"Profiles", ""}});
    readUserProf("odd");
    writeUserProf();
    EXPECT_EQ(iniValue("odd", "connect"), "carrier-pigeon");
}

TEST_F(UserProfile, WhatIsWrittenIsReadBack) {
    ProfileRecord record;
    record.name = "round";
    record.fontSize = 11;
    record.connectType = connectType::ssh;
    record.host = "h";
    record.port = 2222;
    record.commport = 4;
    record.baud = 300;
    record.parity = "s";
    record.databits = 5;
    record.stopBits = "2";
    record.flowControl = 3;
    record.phone = "0123";
    record.prefix = "P";
    record.suffix = "S";
    record.hangup = "H";
    record.reset = "R";
    record.timeout = 999;
    record.cd_timeout = 1;
    record.auto_retry = true;
    setCurrentProfile(record);
    writeUserProf();
    setCurrentProfile(ProfileRecord{});
    readUserProf("round");
    EXPECT_EQ(CurrentProfile, record);
}

}  // namespace
}  // namespace qxterm::test::user_profile_test
