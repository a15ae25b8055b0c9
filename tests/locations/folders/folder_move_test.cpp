// Moves between the Startup folders, to and from a Run key, and to another volume.
#include "infra/runtime/exceptions.h"
#include "locations/folders/held_file.h"
#include "shelllink/uShellLinkInfo.h"
#include "tests/locations/folders/folder_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/registry_fixture.h"

#include <gmock/gmock.h>

namespace smh::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FolderMove : public BothWays<FolderTest> {
 protected:
  FolderMove() : savedRun_(HKEY_CURRENT_USER, kRunKey) {
    DeleteKeyTree(HKEY_CURRENT_USER, kRunKey);
    MakeKey(HKEY_CURRENT_USER, kRunKey);
  }

  TLocationStartup& UserRun() { return *FindLocation(sulRegistryUserRun); }

 private:
  const SavedKey savedRun_;
};
INSTANTIATE_TEST_SUITE_P(Checkpoints, FolderMove, ::testing::Bool());

TEST_P(FolderMove, BetweenTheFoldersTheFileGoesAlongWithItsState) {
  const std::wstring enabled = PutShortcut(user.startup + L"On.lnk", L"x");
  const std::wstring foreign = Put(user.autoruns + L"off.exe", ReadFileBytes(Program()));
  const std::wstring damaged = Put(user.startup + L"damaged.lnk", "kept as it is");
  // Not listed yet.
  Put(common.startup + L"On.lnk", "another");
  Put(common.disabled + L"off.exe", "another");
  const ItemRef on = LoadAndFind(UserFolder(), enabled);
  const std::string bytes = ReadFileBytes(enabled);
  const int position = on->Position();
  UserFolder().MoveItem(on, sulFolderCommon);
  ExpectCheckpoint(L"Startup Manager: Moving On",
                   {L"MoveFile \"" + enabled + L"\" \"" + common.startup + L"On (1).lnk\""});
  EXPECT_FALSE(Exists(enabled));
  EXPECT_FALSE(on->IsListed());
  EXPECT_EQ(ReadFileBytes(common.startup + L"On (1).lnk"), bytes);
  const ItemRef moved = FindItem(sulFolderCommon, common.startup + L"On (1).lnk");
  ASSERT_NE(moved, nullptr);
  EXPECT_EQ(moved->Position(), position);
  EXPECT_TRUE(moved->IsEnabled());
  EXPECT_EQ(moved->GivenText(), L"On (1)");
  EXPECT_EQ(moved->State().details.Command, Command(L"x"));

  UserFolder().MoveItem(FindItem(sulFolderUser, foreign), sulFolderCommon);
  EXPECT_EQ(ReadFileBytes(common.disabled + L"off (1).exe"), ReadFileBytes(Program()));
  EXPECT_FALSE(FindItem(sulFolderCommon, common.disabled + L"off (1).exe")->IsEnabled());
  EXPECT_THAT(FilesIn(user.autoruns), IsEmpty());

  UserFolder().MoveItem(FindItem(sulFolderUser, damaged), sulFolderCommon);
  EXPECT_EQ(ReadFileBytes(common.startup + L"damaged.lnk"), "kept as it is");
  CommonFolder().MoveItem(moved, sulFolderUser);
  EXPECT_EQ(ReadFileBytes(user.startup + L"On (1).lnk"), bytes);
}

TEST_P(FolderMove, AnEntryThatTheTargetHasOrAMissingTargetIsAnAssertionAndNothingChanges) {
  const std::wstring file = PutShortcut(user.startup + L"Same.lnk");
  PutShortcut(common.startup + L"same.lnk");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  CommonFolder().ReadItems();
  try {
    UserFolder().MoveItem(item, sulFolderCommon);
    ADD_FAILURE() << "nothing was raised";
  } catch (const EAssertionFailed& error) {
    EXPECT_NE(error.Message().find(L"Assertion failure (uLocationFolderStd"), std::wstring::npos);
  }
  EXPECT_TRUE(LogHas(L"Error move item \"" + file + L"\" from \"sulFolderUser\" to \"sulFolderCommon\"."));
  EXPECT_THROW(UserFolder().MoveItem(item, sulFolderUser), EAssertionFailed);
  EXPECT_THROW(UserFolder().MoveItem(item, sulRegistryIEBrowserObjects), EAssertionFailed);
  EXPECT_TRUE(Exists(file));
  EXPECT_TRUE(item->IsListed());
  EXPECT_THAT(module.Safeguard().Lines(), ::testing::Not(::testing::Contains(::testing::HasSubstr(L"File"))));
}

TEST_P(FolderMove, AFileThatIsGoneLeavesTheList) {
  for (const TTypeStartupLocation target : {sulFolderCommon, sulRegistryUserRun}) {
    const std::wstring file = PutShortcut(user.startup + L"Gone.lnk");
    const ItemRef item = LoadAndFind(UserFolder(), file);
    fs::remove(file);
    UserFolder().MoveItem(item, target);
    EXPECT_FALSE(item->IsListed());
  }
  EXPECT_THAT(Values(HKEY_CURRENT_USER, kRunKey), IsEmpty());
}

TEST_P(FolderMove, ToARunKeyAndBack) {
  const std::wstring on = PutShortcut(user.startup + L"On.lnk", L"/tray");
  const std::wstring off = PutShortcut(user.disabled + L"Off.lnk", L"/off");
  UserFolder().ReadItems();
  UserFolder().MoveItem(FindItem(sulFolderUser, on), sulRegistryUserRun);
  UserFolder().MoveItem(FindItem(sulFolderUser, off), sulRegistryUserRun);
  EXPECT_FALSE(Exists(on));
  EXPECT_FALSE(Exists(off));
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"On"), Sz(Command(L"/tray")));
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunSide, L"Off"), Sz(Command(L"/off")));
  EXPECT_THAT(Names(UserFolder()), IsEmpty());

  // Named after the program they start.
  module.Safeguard().Clear();
  std::vector<ItemRef> items;
  {
    ScopedLock lock(Items().Lock());
    items = Items().Snapshot();
  }
  ASSERT_EQ(items.size(), 2u);
  UserRun().MoveItem(items[0], sulFolderUser);
  const std::wstring first = items[0]->IsEnabled() ? user.startup : user.disabled;
  EXPECT_TRUE(Exists(first + L"auroratray.lnk"));
  const TShellLinkInfo link(first + L"auroratray.lnk");
  EXPECT_EQ(link.Target(), Program());
  EXPECT_EQ(link.Arguments(), items[0]->IsEnabled() ? L"/tray" : L"/off");
  const ItemRef back = FindItem(sulFolderUser, first + L"auroratray.lnk");
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->IsEnabled(), items[0]->IsEnabled());
  EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
  EXPECT_EQ(Values(HKEY_CURRENT_USER, kRunKey).size() + Values(HKEY_CURRENT_USER, kRunSide).size(), 1u);
}

// Every rename leads to another volume. The deletion that follows is refused, done, or both.
struct Deletion {
  bool isDone;
  bool isAnswered;
};
Deletion g_deletion;

BOOL WINAPI OnAnotherVolume(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* data, DWORD size) {
  static const auto real =
      RealFunction<decltype(SetFileInformationByHandle)>(L"kernel32.dll", "SetFileInformationByHandle");
  if (kind == FileRenameInfo) {
    SetLastError(ERROR_NOT_SAME_DEVICE);
    return FALSE;
  }
  if (g_deletion.isDone) real(file, kind, data, size);
  SetLastError(ERROR_ACCESS_DENIED);
  return g_deletion.isAnswered ? TRUE : FALSE;
}

TEST(HeldFileTest, ACopyToAnotherVolumeGoesOnlyWhileTheFileItselfStands) {
  for (const Deletion deletion :
       {Deletion{true, true}, Deletion{true, false}, Deletion{false, true}, Deletion{false, false}}) {
    SCOPED_TRACE(testing::Message() << deletion.isDone << deletion.isAnswered);
    g_deletion = deletion;
    const TemporaryFolder folder;
    const std::wstring from = folder.Write(L"from", "content");
    const std::wstring to = folder.File(L"to");
    const auto file = HeldFile::Require(from);
    const ImportPatch patch("SetFileInformationByHandle", &OnAnotherVolume);
    if (deletion.isDone) {
      file->RenameTo(to);
      EXPECT_EQ(file->Path(), to);
      EXPECT_TRUE(file->StandsAt(to));
      EXPECT_EQ(file->Bytes(100), "content");
    } else {
      EXPECT_THROW(file->RenameTo(to), EOSError);
      EXPECT_TRUE(file->StandsAt(from));
    }
    EXPECT_EQ(GetFileAttributesW(from.c_str()) != INVALID_FILE_ATTRIBUTES, !deletion.isDone);
    EXPECT_EQ(GetFileAttributesW(to.c_str()) != INVALID_FILE_ATTRIBUTES, deletion.isDone);
  }
}

// Numbering would make the name longer than a file system takes.
TEST_P(FolderMove, ANameThatCannotBeNumberedStays) {
  const std::wstring name = std::wstring(251, L'n') + L".lnk";
  const std::wstring file = Put(user.startup + name, "stays");
  Put(user.disabled + name, "taken");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  EXPECT_NE(ErrorOf([&] { UserFolder().DisableItem(item); }), 0u);
  EXPECT_EQ(ReadFileBytes(file), "stays");
  EXPECT_EQ(ReadFileBytes(user.disabled + name), "taken");
  EXPECT_TRUE(item->IsEnabled());
}

}  // namespace
}  // namespace smh::test
