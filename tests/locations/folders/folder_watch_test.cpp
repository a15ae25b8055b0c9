// How changes of the Startup folders are noticed, and how loads and changes stay apart.
#include "folder_fixture.h"

#include <filesystem>
#include <gmock/gmock.h>

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

TEST_F(FolderWatchTest, AFolderThatGoesAndComesBackIsNoticedAndWatchedAgain) {
  UserFolder().ReadItems();
  user.RemoveStartup();
  EXPECT_TRUE(ChangeArrives());
  UserFolder().ReadItems();
  EXPECT_FALSE(UserFolder().IsChanged());
  const std::wstring file = PutShortcut(user.startup + L"back.lnk");
  EXPECT_TRUE(ChangeArrives());
  EXPECT_NE(LoadAndFind(UserFolder(), file), nullptr);
  PutShortcut(user.startup + L"next.lnk");
  EXPECT_TRUE(ChangeArrives()) << "the new folder is watched";
}

TEST_F(FolderWatchTest, NothingToWatchIsNoChange) {
  user.RemoveStartup();
  Settle(UserFolder());
  EXPECT_FALSE(UserFolder().IsChanged());
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

}  // namespace
}  // namespace smh::test
