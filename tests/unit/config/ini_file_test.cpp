#include "config/ini_file.h"

#include <array>

#include "app/program_fixture.h"
#include "config/profile_lists.h"
#include "config/user_profile.h"
#include "diag/error_trap.h"
#include "diag/trace_log.h"

namespace qxterm::test::ini_file_test {
namespace {

using Lines = std::vector<std::string>;

class IniFile : public ProgramTest {};

/// What the program has before it has read anything: constants, and so older than this.
const std::array<std::int16_t, 3> atFirst{g_iWindowLeft, g_iWindowTop, g_iConnectTimeout};

// They stay when the reading fails half way.
TEST(IniFileAtFirst, TheWindowIsCentredAndAnAttemptTakes45Seconds) {
    EXPECT_EQ(atFirst, (std::array<std::int16_t, 3>{-1, -1, 45}));
}

TEST_F(IniFile, AnEmptyFileGivesTheDefaults) {
    g_bProfileChanged = true;
    readIniFile();
    EXPECT_EQ(profileCount(), 0);
    EXPECT_EQ(mruNames[0], "");
    EXPECT_EQ(g_iWindowLeft, -1);
    EXPECT_EQ(g_iWindowTop, -1);
    EXPECT_EQ(g_iConnectTimeout, 45);
    EXPECT_EQ(g_sLogging, "0");
    EXPECT_FALSE(g_bProfileChanged);
    EXPECT_TRUE(records.empty());
}

TEST_F(IniFile, TheSettingsAreRead) {
    putSettings(
        {{"Window", "1200 900"}, {"timeout", "7"}, {"Logging", " 1 "}, {"Profiles", "a b "}, {"order", "b"}});
    readIniFile();
    EXPECT_EQ(g_iWindowLeft, 1200);
    EXPECT_EQ(g_iWindowTop, 900);
    EXPECT_EQ(g_iConnectTimeout, 7);
    EXPECT_TRUE(tracing());
    EXPECT_EQ(profileCount(), 2);
    EXPECT_EQ(mruNames[0], "b");
}

TEST_F(IniFile, AnotherDigitThanOneLeavesTheTraceOff) {
    putSettings({{"Logging", "2"}});
    readIniFile();
    EXPECT_FALSE(tracing());
}

TEST_F(IniFile, AWindowThatIsNotTwoNumbersIsReportedAndWhatFollowsIsLeft) {
    putSettings({{"Window", "100"}, {"timeout", "7"}, {"Profiles", "kept "}});
    readIniFile();
    EXPECT_EQ(boxes(), (Lines{"An unexpected error 13 has occurred"}));
    EXPECT_EQ(profileNames, (Lines{"kept"}));
    EXPECT_EQ(g_iConnectTimeout, 45);
}

TEST_F(IniFile, AWindowBeyond16BitsIsAnOverflow) {
    putSettings({{"Window", "32768 0"}});
    readIniFile();
    EXPECT_EQ(boxes(), (Lines{"An unexpected error 6 has occurred"}));
}

TEST_F(IniFile, AFailureIsReportedUnderTheRoutinesName) {
    start();
    records.clear();
    planFault("readIniFile", 9);
    readIniFile();
    EXPECT_EQ(boxes(), (Lines{"An unexpected error 9 has occurred\r\nroutine: readIniFile\r\nmessage: "
                              "Subscript out of range"}));
}

TEST_F(IniFile, ThePortRangeIsWrittenBack) {
    readPortForwardStart();
    EXPECT_EQ(g_lPortForwardStart, 3000);
    EXPECT_EQ(happened(), (Lines{"ini Settings PortForwardRangeStart 3000"}));
    headless::putIni("Settings", "PortForwardRangeStart", " +4100 ");
    readPortForwardStart();
    EXPECT_EQ(g_lPortForwardStart, 4100);
    EXPECT_EQ(iniValue("Settings", "PortForwardRangeStart"), "4100");
}

TEST_F(IniFile, APortRangeThatIsNoNumberIsTheCallersError) {
    headless::putIni("Settings", "PortForwardRangeStart", "many");
    EXPECT_THROW(readPortForwardStart(), RunTimeError);
    EXPECT_EQ(iniValue("Settings", "PortForwardRangeStart"), "many");
}

TEST_F(IniFile, ATimeoutIsStoredForAllConnections) {
    storeConnectTimeout(90);
    EXPECT_EQ(g_iConnectTimeout, 90);
    EXPECT_EQ(iniValue("Settings", "timeout"), "90");
}

}  // namespace
}  // namespace qxterm::test::ini_file_test
