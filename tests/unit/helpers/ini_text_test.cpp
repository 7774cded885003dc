#include "setup/ini_text.h"

#include <gmock/gmock.h>

namespace setup::ini_text_test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

std::string value(std::string_view text, std::string_view section, std::string_view key) {
    const auto sections = readIni(text);
    const std::string* found = valueOf(sections, section, key);
    return found == nullptr ? "<none>" : *found;
}

TEST(IniText, ReadsValuesAsWindowsDoes) {
    const char* text =
        "before=1\r\n; note\r\n[ Settings ] \r\n Profiles = a b \r\n[a]\nhost=\"h 1\"\nkey\nempty=\n=x\n";
    EXPECT_EQ(value(text, "settings", "PROFILES"), "a b");
    EXPECT_EQ(value(text, "A", "host"), "h 1");
    EXPECT_EQ(value(text, "a", "empty"), "");
    EXPECT_EQ(value(text, "a", "key"), "<none>");
    EXPECT_EQ(value(text, "b", "host"), "<none>");
    ASSERT_THAT(readIni(text), SizeIs(2));
    EXPECT_THAT(readIni(text)[1].values, SizeIs(2));
}

TEST(IniText, TheFirstOfTwoCounts) {
    EXPECT_EQ(value("[s]\nk=1\nK=2\n[S]\nk=3\nm=4\n", "s", "k"), "1");
    EXPECT_EQ(value("[s]\nk=1\n[t]\nk=5\n[S]\nm=4\n", "s", "m"), "4");
    EXPECT_EQ(value("[s]\nk=1\n[t]\nk=5\n[S]\nm=4\n", "t", "k"), "5");
}

TEST(IniText, AnEmptyTextHasNoSections) {
    EXPECT_THAT(readIni(""), IsEmpty());
    EXPECT_THAT(readIni("\n[\n"), SizeIs(1));
}

TEST(MergedProfiles, IntoNothingIsWhatIsBrought) {
    EXPECT_EQ(mergedProfiles("", "[Settings]\nProfiles=a\n[a]\nhost=h\n"),
              "[Settings]\r\nProfiles=a \r\n[a]\r\nhost=h\r\n");
}

TEST(MergedProfiles, WhatIsThereStays) {
    EXPECT_EQ(
        mergedProfiles(
            "[Settings]\r\nProfiles=own \r\ntimeout=9\r\n[own]\r\nhost=1\r\n",
            "[settings]\nprofiles=new own\ntimeout=5\nLogging=0\n[OWN]\nhost=2\nnetport=3\n[new]\nhost=4\n"),
        "[Settings]\r\nProfiles=own new "
        "\r\ntimeout=9\r\nLogging=0\r\n[own]\r\nhost=1\r\n[new]\r\nhost=4\r\n");
}

TEST(MergedProfiles, AFileWithoutSettingsGetsThem) {
    EXPECT_EQ(mergedProfiles("[x]\r\ny=z\r\n", "[Settings]\nProfiles=a\n[a]\nhost=h\n"),
              "[x]\r\ny=z\r\n[Settings]\r\nProfiles=a \r\n[a]\r\nhost=h\r\n");
}

TEST(NamesProfiles, WantsANameInTheList) {
    EXPECT_TRUE(namesProfiles("[Settings]\nProfiles=a\n"));
    EXPECT_FALSE(namesProfiles("[Settings]\nProfiles= \n"));
    EXPECT_FALSE(namesProfiles("[Settings]\ntimeout=3\n[a]\nProfiles=a\n"));
    EXPECT_FALSE(namesProfiles(""));
}

}  // namespace
}  // namespace setup::ini_text_test
