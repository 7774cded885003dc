#include "setup/aside.h"

#include <gmock/gmock.h>

namespace setup::aside_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Aside, NamesGoThereAndBack) {
    EXPECT_EQ(asideName(L"qxterm.exe", 12), L"qxterm.exe.in-use-12");
    EXPECT_EQ(nameBeforeAside(L"qxterm.exe.in-use-12"), L"qxterm.exe");
    EXPECT_EQ(nameBeforeAside(asideName(asideName(L"a", 1), 2)), L"a.in-use-1");
}

TEST(Aside, OtherNamesAreNone) {
    for (const wchar_t* name : {L"qxterm.exe", L"a.in-use-", L"a.in-use-1x", L".in-use-1", L""}) {
        EXPECT_EQ(nameBeforeAside(name), L"") << name;
    }
}

TEST(FileList, FolderAndFiles) {
    const FileList list = readFileList(L"C:\\p\\|a.exe|manual\\b.txt");
    EXPECT_EQ(list.folder, L"C:\\p\\");
    EXPECT_THAT(list.files, ElementsAre(L"a.exe", L"manual\\b.txt"));
}

TEST(FileList, WhatIsMissingIsLeftOut) {
    EXPECT_EQ(readFileList(L"C:\\p|a").folder, L"C:\\p\\");
    EXPECT_THAT(readFileList(L"C:\\p||a|").files, ElementsAre(L"a"));
    EXPECT_THAT(readFileList(L"C:\\p").files, IsEmpty());
    EXPECT_THAT(readFileList(L"|a").files, IsEmpty());
    EXPECT_EQ(readFileList(L"").folder, L"");
}

}  // namespace
}  // namespace setup::aside_test
