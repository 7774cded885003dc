#include "config/profile_lists.h"

#include "app/menus.h"
#include "app/program_fixture.h"
#include "config/ini_file.h"
#include "connection/session.h"
#include "platform/headless/profile_strings.h"

namespace qxterm::test::profile_lists_test {
namespace {

using Names = std::vector<std::string>;

class ProfileLists : public ProgramTest {
protected:
    static Names recent() { return {mruNames.begin(), mruNames.end()}; }
};

TEST_F(ProfileLists, NamesAreSplitAtBlanksAndEmptyPiecesCountForNothing) {
    fillProfileNames("  alpha beta  gamma ");
    EXPECT_EQ(profileNames, (Names{"alpha", "beta", "gamma"}));
    EXPECT_EQ(profileCount(), 3);
    fillProfileNames("");
    EXPECT_TRUE(profileNames.empty());
}

TEST_F(ProfileLists, AtMostFourRecentNamesAreKept) {
    fillMruNames("a b c d e");
    EXPECT_EQ(recent(), (Names{"a", "b", "c", "d"}));
    fillMruNames("z");
    EXPECT_EQ(recent(), (Names{"z", "", "", ""}));
}

TEST_F(ProfileLists, TheFirstRecentNameIsLeftWithoutWriting) {
    fillMruNames("a b");
    reOrderProf("a");
    EXPECT_EQ(countOf("ini"), 0U);
    EXPECT_EQ(recent(), (Names{"a", "b", "", ""}));
}

TEST_F(ProfileLists, AKnownRecentNameMovesToTheFront) {
    fillMruNames("a b c d");
    reOrderProf("c");
    EXPECT_EQ(recent(), (Names{"c", "a", "b", "d"}));
    EXPECT_EQ(happened(), (Names{"ini Settings order c a b d "}));
}

TEST_F(ProfileLists, ANewRecentNameDropsTheFourth) {
    fillMruNames("a b c d");
    reOrderProf("x");
    EXPECT_EQ(recent(), (Names{"x", "a", "b", "c"}));
}

TEST_F(ProfileLists, AnEmptyRecentEntryIsWrittenAsALoneBlank) {
    reOrderProf("only");
    EXPECT_EQ(happened(), (Names{"ini Settings order only    "}));
}

TEST_F(ProfileLists, NamesAreComparedExactly) {
    fillMruNames("a b");
    reOrderProf("B");
    EXPECT_EQ(recent(), (Names{"B", "a", "b", ""}));
}

TEST_F(ProfileLists, RecentNamesAreShownInTheProfileMenu) {
    fillMruNames("main backup");
    setFiles();
    EXPECT_EQ(mnuprofitem.entry(5).caption, "&1 main");
    EXPECT_EQ(mnuprofitem.entry(6).caption, "&2 backup");
    EXPECT_TRUE(mnuprofitem.entry(6).visible);
    EXPECT_TRUE(mnuprofitem.entry(6).enabled);
    EXPECT_FALSE(mnuprofitem.entry(7).visible);
}

TEST_F(ProfileLists, RecentNamesAreDisabledDuringASession) {
    fillMruNames("main");
    g_bConnectActive = true;
    setFiles();
    EXPECT_FALSE(mnuprofitem.entry(5).enabled);
}

TEST_F(ProfileLists, ANameIsAddedOnceAndEachNameIsFollowedByABlank) {
    fillProfileNames("one two");
    addProfileName("three");
    addProfileName("one");
    EXPECT_EQ(profileNames, (Names{"one", "two", "three"}));
    EXPECT_EQ(iniValue("Settings", "Profiles"), "one two three ");
}

TEST_F(ProfileLists, AListOfAThousandProfilesIsReadAsFarAsOneReadGoes) {
    std::string all;
    for (int n = 1000; n < 2000; ++n) all += std::to_string(n) + ' ';
    headless::putIni("Settings", "Profiles", all);
    readIniFile();
    // 512 characters hold 102 names of four digits and a blank, and the first two digits of the next one
    EXPECT_EQ(profileCount(), 103);
    EXPECT_EQ(profileNames.front(), "1000");
    EXPECT_EQ(profileNames[101], "1101");
    EXPECT_EQ(profileNames.back(), "11");
}

TEST_F(ProfileLists, NamesThatAnotherWindowAddedStayInTheFile) {
    putSettings({{"Profiles", "alpha"}});
    start();
    headless::putIni("Settings", "Profiles", "alpha other ");
    records.clear();
    addProfileName("mine");
    EXPECT_EQ(happened(), (Names{"ini Settings Profiles alpha mine other "}));
}

// A read takes 512 characters: here the names n100 to n201, five characters each with their blank, and "n2"
// of the next.
TEST_F(ProfileLists, NamesThatAReadCutsOffStayInTheFile) {
    std::string all;
    for (int n = 100; n < 300; ++n) all += 'n' + std::to_string(n) + ' ';
    putSettings({{"Profiles", all.c_str()}});
    start();
    ASSERT_EQ(profileNames.size(), 103U);
    EXPECT_EQ(profileNames.back(), "n2");
    records.clear();
    addProfileName("mine");
    const std::string front = all.substr(0, 510);
    EXPECT_EQ(happened(), (Names{"ini Settings Profiles " + front + "mine " + all.substr(510)}));
}

}  // namespace
}  // namespace qxterm::test::profile_lists_test
