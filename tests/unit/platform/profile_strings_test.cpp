#include "platform/profile_strings.h"

#include "platform/headless/profile_strings.h"
#include "platform/headless_fixture.h"

namespace qxterm::test::profile_strings_test {
namespace {

class ProfileStringsTest : public HeadlessTest {};

TEST_F(ProfileStringsTest, NamesMatchWithoutRegardToCaseAndKeepTheFirstSpelling) {
    headless::putIni("Settings", "Order", "a ");
    writePrivateProfileString("SETTINGS", "order", "b a ");
    writePrivateProfileString("lab", "host", "h");
    EXPECT_EQ(getPrivateProfileString("settings", "ORDER", ""), "b a");
    ASSERT_EQ(headless::ini().size(), 2U);
    EXPECT_EQ(headless::ini()[0].name, "Settings");
    EXPECT_EQ(headless::ini()[0].values,
              (std::vector<std::pair<std::string, std::string>>{{"Order", "b a "}}));
    EXPECT_EQ(headless::ini()[1].name, "lab");
    EXPECT_EQ(taken(),
              (Lines{"ini section=SETTINGS key=order value=b a ", "ini section=lab key=host value=h"}));
}

TEST_F(ProfileStringsTest, WhatIsMissingReadsAsTheFallback) {
    headless::putIni("lab", "host", "");
    EXPECT_EQ(getPrivateProfileString("lab", "netport", "23"), "23");
    EXPECT_EQ(getPrivateProfileString("shop", "host", "none"), "none");
    EXPECT_EQ(getPrivateProfileString("lab", "host", "none"), "");
}

TEST_F(ProfileStringsTest, AReadGivesAtMost512Characters) {
    headless::putIni("lab", "host", std::string(600, 'x'));
    EXPECT_EQ(getPrivateProfileString("lab", "host", "").size(), 512U);
    EXPECT_EQ(getPrivateProfileString("lab", "port", std::string(513, 'y')).size(), 512U);
}

TEST_F(ProfileStringsTest, AValueIsReadWithoutBlanksAroundItAndWithoutQuotationMarks) {
    headless::putIni("lab", "a", "  two words \t");
    headless::putIni("lab", "b", "\" kept \"");
    headless::putIni("lab", "c", "\"one");
    EXPECT_EQ(getPrivateProfileString("lab", "a", ""), "two words");
    EXPECT_EQ(getPrivateProfileString("lab", "b", ""), " kept ");
    EXPECT_EQ(getPrivateProfileString("lab", "c", ""), "\"one");
}

TEST_F(ProfileStringsTest, TheLanguageIsTheUsers) {
    EXPECT_EQ(getProfileString("intl", "sLanguage", "xxx"), "enu");
    headless::setLanguage("jpn");
    EXPECT_EQ(getProfileString("Intl", "SLANGUAGE", "xxx"), "jpn");
    EXPECT_EQ(getProfileString("intl", "sCountry", "xxx"), "xxx");
}

}  // namespace
}  // namespace qxterm::test::profile_strings_test
