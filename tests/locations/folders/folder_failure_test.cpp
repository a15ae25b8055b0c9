// A backup service that refuses, pretends or does half of it: the change fails and nothing is lost.
#include "folder_fixture.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

class FolderFailure : public FolderTest {
 protected:
  FolderFailure()
      : file_(PutShortcut(user.startup + L"Foo.lnk", L"/old")),
        bytes_(ReadFileBytes(file_)),
        item_(LoadAndFind(UserFolder(), file_)) {}

  void ExpectAsBefore() const {
    EXPECT_EQ(ReadFileBytes(file_), bytes_);
    EXPECT_EQ(item_->Name(), file_);
    EXPECT_TRUE(item_->IsListed());
    EXPECT_TRUE(item_->IsEnabled());
    EXPECT_EQ(item_->Details().Command, Command(L"/old"));
    EXPECT_EQ(FilesIn(user.temporary).size(), 0u);
  }

  const std::wstring file_;
  const std::string bytes_;
  const ItemRef item_;
};

TEST_F(FolderFailure, EveryFailedCallRaisesItsErrorAndIsLogged) {
  struct Row {
    const wchar_t* call;
    std::function<void()> change;
    std::wstring line;
  };
  const std::wstring quoted = L'"' + file_ + L'"';
  const Row rows[] = {
      {L"MoveFile", [&] { UserFolder().DisableItem(item_); },
       L"Error disable item " + quoted + L" in location \"sulFolderUser\"."},
      {L"DeleteFile", [&] { UserFolder().DeleteItem(item_); },
       L"Error delete item " + quoted + L" in location \"sulFolderUser\"."},
      {L"CopyFile", [&] { UserFolder().ChangeItemCommand(item_, Program() + L" /new"); },
       L"Error change item " + quoted + L" comand on \"" + Program() +
           L" /new\" in location \"sulFolderUser\"\r\n"},
      {L"MoveFile", [&] { UserFolder().MoveItem(item_, sulFolderCommon); },
       L"Error move item " + quoted + L" from \"sulFolderUser\" to \"sulFolderCommon\"."},
      {L"DeleteFile", [&] { UserFolder().MoveItem(item_, sulRegistryUserRun); },
       L"Error move item " + quoted + L" from \"sulFolderUser\" to \"sulRegistryUserRun\"."},
      {L"MoveFile", [&] { UserFolder().AddItem(L"New", Program()); },
       L"Error add item \"New\" (" + Program() + L") in location \"sulFolderUser\"."},
  };
  for (const Row& row : rows) {
    for (const wchar_t* call : {row.call, L"BeginCheckpoint"}) {
      module.Safeguard().Answer(call, ERROR_DISK_FULL);
      EXPECT_EQ(ErrorOf(row.change), DWORD(ERROR_DISK_FULL)) << fs::path(row.line);
      ExpectAsBefore();
      EXPECT_TRUE(LogHas(L"Error class   : EOSError"));
      EXPECT_TRUE(LogHas(row.line)) << fs::path(row.line);
      module.Safeguard().Clear();
    }
    module.Safeguard().Answer(row.call, ERROR_SUCCESS);
    EXPECT_NE(ErrorOf(row.change), 0u) << "pretended: " << fs::path(row.line);
    ExpectAsBefore();
    module.Safeguard().Clear();
  }
  EXPECT_THAT(FilesIn(user.startup), ::testing::ElementsAre(L"Foo.lnk"));
  EXPECT_THAT(FilesIn(common.startup), ::testing::IsEmpty());
}

TEST_F(FolderFailure, AMoveThatLeavesTheSourceBehindIsNoMove) {
  module.Safeguard().Before([&](const std::wstring& line) {
    if (line.starts_with(L"MoveFile")) fs::copy_file(file_, user.disabled + L"Foo.lnk");
  });
  module.Safeguard().Answer(L"MoveFile", ERROR_SUCCESS);
  EXPECT_NE(ErrorOf([&] { UserFolder().DisableItem(item_); }), 0u);
  ExpectAsBefore();
  EXPECT_FALSE(Exists(user.disabled + L"Foo.lnk"));
}

TEST_F(FolderFailure, AReplacementThatEndsHalfwayIsUndone) {
  for (const LSTATUS status : {LSTATUS(ERROR_DISK_FULL), LSTATUS(ERROR_SUCCESS)}) {
    module.Safeguard().Before([&](const std::wstring& line) {
      if (line.starts_with(L"CopyFile")) WriteFileBytes(file_, "half");
    });
    module.Safeguard().Answer(L"CopyFile", status);
    EXPECT_NE(ErrorOf([&] { UserFolder().ChangeItemCommand(item_, Program() + L" /new"); }), 0u);
    ExpectAsBefore();
    module.Safeguard().Clear();
  }
}

// Numbering would make the name longer than a file system takes.
TEST_F(FolderFailure, ANameThatCannotBeNumberedStays) {
  const std::wstring name = std::wstring(251, L'n') + L".lnk";
  const std::wstring file = Put(user.startup + name, bytes_);
  Put(user.disabled + name, "taken");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  for (const bool checkpoints : {true, false}) {
    module.Settings().useCheckpoints = checkpoints;
    EXPECT_NE(ErrorOf([&] { UserFolder().DisableItem(item); }), 0u);
    EXPECT_EQ(ReadFileBytes(file), bytes_);
    EXPECT_EQ(ReadFileBytes(user.disabled + name), "taken");
    EXPECT_TRUE(item->IsEnabled());
  }
}

}  // namespace
}  // namespace smh::test
