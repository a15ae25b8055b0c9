// How changes of the Startup folders are noticed, and how loads and changes stay apart.
#include "locations/folders/folder_watch.h"
#include "tests/locations/folders/folder_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/waiting.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kSignalLimit = 5'000;

class FolderWatchTest : public FolderTest {
 protected:
  bool ChangeArrives() {
    const DWORD start = GetTickCount();
    while (!UserFolder().IsChanged()) {
      if (GetTickCount() - start > kSignalLimit) return false;
      Sleep(5);
    }
    // What else the same change signals.
    Sleep(50);
    Settle(UserFolder());
    return true;
  }
};

TEST_F(FolderWatchTest, FilesThatComeChangeAndGoInEveryPlaceAreNoticed) {
  for (const std::wstring& folder : {user.startup, user.disabled, user.autoruns, user.brisko}) {
    fs::create_directories(folder);
    Settle(UserFolder());
    EXPECT_FALSE(UserFolder().IsChanged());
    const std::wstring file = Put(folder + L"new.lnk", "1");
    EXPECT_TRUE(ChangeArrives()) << "a new file";
    Put(file, "more than before");
    EXPECT_TRUE(ChangeArrives()) << "a changed file";
    fs::remove(file);
    EXPECT_TRUE(ChangeArrives()) << "a deleted file";
    EXPECT_FALSE(UserFolder().IsChanged());
  }
}

TEST_F(FolderWatchTest, ALoadDuringAChangeDoesNothingAndIsDueAfterwards) {
  const std::wstring file = PutShortcut(user.startup + L"Tray.lnk");
  fs::create_directories(user.disabled);
  const ItemRef item = LoadAndFind(UserFolder(), file);
  PutShortcut(user.startup + L"unseen.lnk");
  ASSERT_TRUE(ChangeArrives());
  // Nothing of the change itself reaches the folders: only the load that was missed can be due.
  module.Safeguard().Answer(L"MoveFile", ERROR_DISK_FULL);
  module.Safeguard().Before([&](const std::wstring& line) {
    if (!line.starts_with(L"MoveFile")) return;
    UserFolder().ReadItems();
    EXPECT_EQ(Names(UserFolder()).size(), 1u);
    EXPECT_FALSE(UserFolder().IsChanged());
  });
  EXPECT_EQ(ErrorOf([&] { UserFolder().DisableItem(item); }), DWORD(ERROR_DISK_FULL));
  module.Safeguard().Clear();
  EXPECT_TRUE(UserFolder().IsChanged());
  EXPECT_FALSE(UserFolder().IsChanged()) << "once";
  UserFolder().ReadItems();
  EXPECT_EQ(Names(UserFolder()).size(), 2u);
}

bool isUnreachable = false;
// A folder that nobody may open; none when empty.
std::wstring blocked;
int lookUps = 0;
int waits = 0;

HANDLE WINAPI FindFirst(LPCWSTR path, BOOL subtree, DWORD filter) {
  ++lookUps;
  if (isUnreachable || (!blocked.empty() && path == blocked)) {
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
  }
  return RealFunction<decltype(FindFirstChangeNotificationW)>(
      L"kernel32.dll", "FindFirstChangeNotificationW")(path, subtree, filter);
}
DWORD WINAPI Attributes(LPCWSTR path) {
  ++lookUps;
  return RealFunction<decltype(GetFileAttributesW)>(L"kernel32.dll", "GetFileAttributesW")(path);
}
DWORD WINAPI Wait(DWORD count, const HANDLE* handles, BOOL all, DWORD limit) {
  ++waits;
  return RealFunction<decltype(WaitForMultipleObjects)>(L"kernel32.dll", "WaitForMultipleObjects")(
      count, handles, all, limit);
}

// A folder of its own, three levels below one that is always there.
class WatchedFolderTest : public ::testing::Test {
 protected:
  bool TakeChange() {
    const bool isDue = watch.IsDue();
    EXPECT_EQ(watch.IsDue(), isDue) << "asking takes nothing";
    watch.Accept();
    return isDue;
  }
  bool ChangeArrives() {
    const bool arrived = WaitUntil([&] { return TakeChange(); }, kSignalLimit);
    IsQuiet();
    return arrived;
  }
  // Takes what is still on its way; whether that was nothing.
  bool IsQuiet() {
    Sleep(50);
    int changes = 0;
    while (TakeChange()) ++changes;
    return changes == 0;
  }
  bool FilesAreNoticed() {
    folder.Write(L"a\\b\\c\\" + std::to_wstring(++files), "1");
    return ChangeArrives();
  }
  void Rename(const std::wstring& from, const std::wstring& to) {
    fs::rename(folder.File(from), folder.File(to));
  }

  const TemporaryFolder folder;
  int files = 0;
  FolderWatch watch{{L"", folder.File(L"a\\b\\c\\")}};
};

TEST_F(WatchedFolderTest, AFolderIsNoticedOnceItIsThereHoweverMuchOfItsPathWasMissing) {
  for (const wchar_t* above : {L"a", L"a\\other", L"a\\b"}) {
    folder.MakeFolder(above);
    EXPECT_TRUE(IsQuiet()) << "not the folder itself";
  }
  folder.MakeFolder(L"a\\b\\c");
  EXPECT_TRUE(ChangeArrives());
  EXPECT_TRUE(FilesAreNoticed());
}

TEST_F(WatchedFolderTest, AFolderThatGoesOrIsReplacedWithAnyAboveItIsNoticedAndWatchedAgain) {
  for (const std::wstring level : {L"a", L"a\\b", L"a\\b\\c"}) {
    folder.MakeFolder(L"a\\b\\c");
    EXPECT_TRUE(ChangeArrives());
    Rename(level, L"gone" + std::to_wstring(level.size()));
    EXPECT_TRUE(ChangeArrives());
    EXPECT_TRUE(IsQuiet());
    folder.MakeFolder(L"a\\b\\c");
    EXPECT_TRUE(ChangeArrives());
    EXPECT_TRUE(FilesAreNoticed());

    Rename(level, L"replaced" + std::to_wstring(level.size()));
    folder.MakeFolder(L"a\\b\\c");
    EXPECT_TRUE(ChangeArrives());
    EXPECT_TRUE(FilesAreNoticed());
    Rename(level, L"end" + std::to_wstring(level.size()));
    IsQuiet();
  }
}

TEST_F(WatchedFolderTest, AnIdlePollIsOneWait) {
  const ImportPatch first("FindFirstChangeNotificationW", &FindFirst);
  const ImportPatch attributes("GetFileAttributesW", &Attributes);
  const ImportPatch wait("WaitForMultipleObjects", &Wait);
  for (const wchar_t* there : {L"a", L"a\\b\\c"}) {
    folder.MakeFolder(there);
    IsQuiet();
    lookUps = waits = 0;
    EXPECT_FALSE(watch.IsDue());
    EXPECT_EQ(lookUps, 0);
    EXPECT_EQ(waits, 1);
  }
}

TEST_F(WatchedFolderTest, WhatCannotBeReachedIsTriedAgain) {
  folder.MakeFolder(L"a\\b\\c");
  const ImportPatch patch("FindFirstChangeNotificationW", &FindFirst);
  for (const bool isOnlyItself : {false, true}) {
    isUnreachable = !isOnlyItself;
    if (isOnlyItself) blocked = folder.File(L"a\\b\\c\\");
    watch = FolderWatch({folder.File(L"a\\b\\c\\")});
    EXPECT_TRUE(IsQuiet());
    isUnreachable = false;
    blocked.clear();
    EXPECT_TRUE(ChangeArrives());
    EXPECT_TRUE(FilesAreNoticed());
  }
}

}  // namespace
}  // namespace smh::test
