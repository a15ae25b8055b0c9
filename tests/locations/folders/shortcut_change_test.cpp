// Shortcuts with another command, and the folder in which they are made.
#include "locations/folders/temporary_use.h"
#include "model/change_refused.h"
#include "shelllink/uShellLinkInfo.h"
#include "tests/locations/folders/folder_fixture.h"
#include "tests/support/test_main.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace smh::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ShortcutChangeTest : public FolderTest {
 protected:
  ShortcutChangeTest() { Folder().MakeFolder(L"made"); }

  std::wstring MadeFolder() const { return Folder().File(L"made\\"); }
  std::string Changed(std::string_view bytes, const ShortcutCommand& command) const {
    return ChangedLink(L"C:\\old.lnk", bytes, command, MadeFolder());
  }
};

TEST_F(ShortcutChangeTest, ALinkMayNameWhatIsMissing) {
  const std::string old = LinkBytes(ShortcutFields({Program(), L"old"}), MadeFolder());
  for (const wchar_t* const target : {L"C:\\gone\\a b.exe", L"Q:\\gone.exe", L"\\\\server\\share\\x.exe"}) {
    const TShellLinkInfo link(Folder().Write(L"x.lnk", Changed(old, {target, L""})));
    EXPECT_EQ(link.Target(), target);
    EXPECT_EQ(link.Arguments(), L"");
  }
}

TEST_F(ShortcutChangeTest, WhatCannotBeChangedIsRefusedAndLeavesNothing) {
  const std::string old = LinkBytes(ShortcutFields({Program(), L"old"}), MadeFolder());
  LinkBuilder installed{.info = LinkInfoSpec{.basePath = "C:\\a.exe"}};
  installed.blocks = {{0xA0000006, StringBlockData("x", u"x")}};
  EXPECT_THROW(Changed(installed.Build().Text(), {Program(), L""}), EOSError);
  EXPECT_THROW(Changed(LinkBuilder{}.Build().Text(), {Program(), L""}), EOSError);
  EXPECT_THROW(Changed(old.substr(0, 90), {Program(), L""}), TShellLinkInfoException);
  // The shell takes the part before the NUL.
  EXPECT_THROW(Changed(old, {Program() + std::wstring(L"\0x", 2), L""}), EChangeRefused);
  EXPECT_THROW(Changed(old, {Program(), std::wstring(L"a\0b", 3)}), EChangeRefused);
  EXPECT_THROW(Changed(old, {L"relative.exe", L""}), EChangeRefused);
  EXPECT_THAT(FilesIn(MadeFolder()), IsEmpty());
}

// Uses the folder until it is ended.
SMH_CHILD(UseTemporaryFolder) {
  const TemporaryUse use(arguments.at(0));
  WriteFileBytes(arguments.at(0) + L"theirs.lnk", "x");
  Sleep(INFINITE);
  return 0;
}

TEST_F(ShortcutChangeTest, LeftoversGoUnlessSomebodyIsAtWork) {
  const std::wstring folder = MadeFolder();
  std::optional<ChildProcess> other(std::in_place, ThisProgram(),
                                    std::vector<std::wstring>{L"--child=UseTemporaryFolder", folder});
  for (int i = 0; i < 1000 && !Exists(folder + L"theirs.lnk"); ++i) Sleep(10);
  {
    const TemporaryUse use(folder);
    EXPECT_THAT(FilesIn(folder), ElementsAre(L"theirs.lnk"));
  }
  // Ended on its way.
  other.reset();
  {
    const TemporaryUse use(folder);
    EXPECT_THAT(FilesIn(folder), IsEmpty());
    WriteFileBytes(folder + L"mine.lnk", "x");
    const TemporaryUse inner(folder);
    EXPECT_THAT(FilesIn(folder), ElementsAre(L"mine.lnk"));
    WriteFileBytes(Folder().MakeFolder(L"second") + L"\\left.lnk", "x");
    const TemporaryUse another(Folder().File(L"second\\"));
    EXPECT_THAT(FilesIn(Folder().File(L"second")), IsEmpty());
  }
}

TEST_F(ShortcutChangeTest, AnAddedEntryRemovesWhatAKilledChangeLeft) {
  Put(user.temporary + L"left.lnk", "x");
  UserFolder().AddItem(L"New", Command(L"/x"));
  EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
  EXPECT_TRUE(Exists(user.startup + L"New.lnk"));
}

}  // namespace
}  // namespace smh::test
