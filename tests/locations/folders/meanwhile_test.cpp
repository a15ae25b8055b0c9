// Other programs at the same files: what they have changed since the list was read, and what they change
// while a change is at work. Nothing of theirs is overwritten or deleted, and what is refused touches
// nothing.
#include "infra/files/file_facts.h"
#include "shelllink/uShellLinkInfo.h"
#include "tests/locations/folders/folder_fixture.h"
#include "tests/locations/refusal.h"
#include "tests/support/import_patch.h"
#include "tests/support/registry_fixture.h"

#include <gmock/gmock.h>

namespace smh::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// All that tells a file from a copy of it, and its bytes.
struct FileFacts {
  std::string bytes;
  DWORD attributes = 0;
  std::uint64_t made = 0;
  std::uint64_t written = 0;
  std::uint64_t index = 0;
  bool operator==(const FileFacts&) const = default;
};

FileFacts FactsOf(const std::wstring& file) {
  const ScopedHandle handle(
      CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  BY_HANDLE_FILE_INFORMATION info = {};
  EXPECT_TRUE(GetFileInformationByHandle(handle.Get(), &info)) << fs::path(file);
  return {ReadFileBytes(file), info.dwFileAttributes, NumberOf(info.ftCreationTime),
          NumberOf(info.ftLastWriteTime), JoinHalves(info.nFileIndexHigh, info.nFileIndexLow)};
}

// Called once, in the plain way of changing, directly before the system's call that it stands in for.
std::function<void()> g_before;
// What the system's call answers instead of its work: its error, ERROR_SUCCESS for a pretended success.
std::optional<DWORD> g_answer;

void CallOnce() {
  if (const auto before = std::exchange(g_before, nullptr)) before();
}

BOOL AnsweredBy(const std::function<BOOL()>& work) {
  CallOnce();
  if (!g_answer) return work();
  SetLastError(*g_answer);
  return *g_answer == ERROR_SUCCESS;
}

BOOL WINAPI SetInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS what, void* data, DWORD size) {
  static const auto real =
      RealFunction<decltype(SetFileInformationByHandle)>(L"kernel32.dll", "SetFileInformationByHandle");
  const auto call = [&] { return real(file, what, data, size); };
  return what == FileBasicInfo ? call() : AnsweredBy(call);
}

BOOL WINAPI MakeLink(const wchar_t* link, const wchar_t* file, SECURITY_ATTRIBUTES* security) {
  static const auto real = RealFunction<decltype(CreateHardLinkW)>(L"kernel32.dll", "CreateHardLinkW");
  CallOnce();
  return real(link, file, security);
}

BOOL WINAPI MoveTo(const wchar_t* from, const wchar_t* to, DWORD flags) {
  static const auto real = RealFunction<decltype(MoveFileExW)>(L"kernel32.dll", "MoveFileExW");
  return AnsweredBy([&] { return real(from, to, flags); });
}

// Called once, directly before a file that was held is opened anew, for the service to work on it.
std::function<void()> g_letGo;

HANDLE WINAPI OpenFile(const wchar_t* path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                       DWORD making, DWORD flags, HANDLE model) {
  static const auto real = RealFunction<decltype(CreateFileW)>(L"kernel32.dll", "CreateFileW");
  if (access == GENERIC_READ && flags == FILE_FLAG_OPEN_REPARSE_POINT) {
    if (const auto letGo = std::exchange(g_letGo, nullptr)) letGo();
  }
  return real(path, access, sharing, security, making, flags, model);
}

class FolderMeanwhile : public BothWays<FolderTest> {
 protected:
  FolderMeanwhile() : savedRun_(HKEY_CURRENT_USER, kRunKey) {
    DeleteKeyTree(HKEY_CURRENT_USER, kRunKey);
    MakeKey(HKEY_CURRENT_USER, kRunKey);
    g_before = nullptr;
    g_answer.reset();
  }
  ~FolderMeanwhile() override {
    module.Safeguard().Clear();
    g_before = nullptr;
    g_answer.reset();
  }

  // Has `outside` run once while the next change is at work: behind its plans and before its look. `call` is
  // the service's that the change makes when it is recorded.
  void Meanwhile(std::wstring call, std::function<void()> outside) {
    if (!GetParam()) {
      g_before = std::move(outside);
      return;
    }
    module.Safeguard().Before(
        [call = std::move(call), outside = std::move(outside)](const std::wstring& line) mutable {
          if (outside && line.starts_with(call)) std::exchange(outside, nullptr)();
        });
  }
  void Quiet() {
    module.Safeguard().Clear();
    g_before = nullptr;
    g_answer.reset();
  }
  // The next calls of that kind are refused, or answer success without an effect.
  void Refuse(const wchar_t* call, DWORD answer) {
    if (GetParam()) {
      module.Safeguard().Answer(call, static_cast<LSTATUS>(answer), 9);
    } else {
      g_answer = answer;
    }
  }

  struct Change {
    const wchar_t* call;
    std::function<void(const ItemRef&)> run;
  };
  const Change disable_{L"MoveFile", [](const ItemRef& item) { UserFolder().DisableItem(item); }};
  const Change delete_{L"DeleteFile", [](const ItemRef& item) { UserFolder().DeleteItem(item); }};
  const Change move_{L"MoveFile", [](const ItemRef& item) { UserFolder().MoveItem(item, sulFolderCommon); }};
  const Change toRun_{L"DeleteFile",
                      [](const ItemRef& item) { UserFolder().MoveItem(item, sulRegistryUserRun); }};
  const Change change_{L"CopyFile", [this](const ItemRef& item) {
                         UserFolder().ChangeItemCommand(item, Command(L"/changed"));
                       }};

 private:
  const SavedKey savedRun_;
  const ImportPatch open_{"CreateFileW", &OpenFile};
  const ImportPatch rename_{"SetFileInformationByHandle", &SetInformation};
  const ImportPatch link_{"CreateHardLinkW", &MakeLink};
  const ImportPatch move1_{"MoveFileExW", &MoveTo};
};
INSTANTIATE_TEST_SUITE_P(Checkpoints, FolderMeanwhile, ::testing::Bool());

TEST_P(FolderMeanwhile, WhatTheUserAgreedToIsComparedDownToTheCaseOfALetter) {
  for (const Change& change : {delete_, move_, toRun_, change_}) {
    for (const wchar_t* arguments : {L"/New", L"/OLD"}) {
      const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/old");
      const ItemRef item = LoadAndFind(UserFolder(), file);
      item->TakeChangedMark();
      PutShortcut(file, arguments);
      const FileFacts facts = FactsOf(file);
      ExpectChangedMeanwhile([&] { change.run(item); });
      EXPECT_EQ(FactsOf(file), facts) << "not even replaced by a copy";
      EXPECT_THAT(FilesIn(common.startup), IsEmpty());
      EXPECT_THAT(Values(HKEY_CURRENT_USER, kRunKey), IsEmpty());
      EXPECT_EQ(item->State().details.Command, Command(arguments)) << "brought up to date";
      EXPECT_TRUE(item->TakeChangedMark());
      EXPECT_TRUE(item->IsListed());

      EXPECT_NO_THROW(change.run(item)) << "the user has seen it now";
      if (Exists(file)) {
        EXPECT_EQ(TShellLinkInfo(file).Arguments(), L"/changed");
      }
      for (const std::wstring& left : {file, common.startup + L"Foo.lnk"}) DeleteFileW(left.c_str());
      for (const std::wstring& name : Values(HKEY_CURRENT_USER, kRunKey)) {
        EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, name), Sz(Command(arguments)));
        RemoveValue(HKEY_CURRENT_USER, kRunKey, name);
      }
      ClearItems();
    }
  }
}

TEST_P(FolderMeanwhile, DisablingAndEnablingGoOnWithWhatStandsThere) {
  const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/old");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  PutShortcut(file, L"/OLD");
  UserFolder().DisableItem(item);
  EXPECT_EQ(item->State().details.Command, Command(L"/OLD"));
  PutShortcut(item->Name(), L"/newer");
  UserFolder().EnableItem(item);
  EXPECT_EQ(item->State().details.Command, Command(L"/newer"));
  EXPECT_EQ(TShellLinkInfo(file).Arguments(), L"/newer");
}

// It is listed as itself, which would be a command that starts nothing once it is gone.
TEST_P(FolderMeanwhile, AShortcutThatWasHeldWhileItWasListedMovesAsItsCommand) {
  const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/tray");
  ScopedHandle held(CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  const ItemRef item = LoadAndFind(UserFolder(), file);
  ASSERT_EQ(item->State().details.Command, file);
  held.Reset();
  ExpectChangedMeanwhile([&] { toRun_.run(item); });
  EXPECT_EQ(item->State().details.Command, Command(L"/tray"));
  EXPECT_TRUE(Exists(file));
  toRun_.run(item);
  EXPECT_FALSE(Exists(file));
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"Foo"), Sz(Command(L"/tray")));
}

// A file that is held cannot be changed by others; the service lets go of it for a moment.
TEST_P(FolderMeanwhile, WhatOthersPutInThePlaceOfTheSourceStays) {
  if (!GetParam()) return;
  for (const Change& change : {disable_, delete_, move_, toRun_, change_}) {
    const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/old");
    const ItemRef item = LoadAndFind(UserFolder(), file);
    Meanwhile(change.call, [&] {
      fs::rename(file, Folder().File(L"theirs.lnk"));
      PutShortcut(file, L"/theirs");
    });
    ExpectChangedMeanwhile([&] { change.run(item); });
    Quiet();
    EXPECT_EQ(TShellLinkInfo(file).Arguments(), L"/theirs") << fs::path(change.call);
    EXPECT_TRUE(Exists(Folder().File(L"theirs.lnk"))) << "where they have put it";
    EXPECT_THAT(FilesIn(user.disabled), IsEmpty());
    EXPECT_THAT(FilesIn(common.startup), IsEmpty());
    EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
    EXPECT_THAT(Values(HKEY_CURRENT_USER, kRunKey), IsEmpty());
    EXPECT_TRUE(UserFolder().IsChanged()) << "a load brings the list up to date";
    ClearItems();
  }
}

TEST_P(FolderMeanwhile, InTheMomentInWhichAFileIsLetGoOfItMayGoToo) {
  if (!GetParam()) return;
  for (const Change& change : {disable_, delete_, move_, toRun_}) {
    for (const bool isReplaced : {true, false}) {
      const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/old");
      const ItemRef item = LoadAndFind(UserFolder(), file);
      g_letGo = [&] {
        fs::rename(file, Folder().File(L"theirs.lnk"));
        if (isReplaced) Put(file, "theirs");
      };
      const bool isDone = !isReplaced && std::wstring_view(change.call) == L"DeleteFile";
      if (isDone) {
        EXPECT_NO_THROW(change.run(item)) << "there is nothing left to remove";
      } else {
        ExpectChangedMeanwhile([&] { change.run(item); });
      }
      EXPECT_EQ(g_letGo, nullptr);
      EXPECT_TRUE(Exists(Folder().File(L"theirs.lnk")));
      EXPECT_EQ(Exists(file), isReplaced) << "what others have taken away does not come back";
      for (const std::wstring& folder : {user.disabled, common.startup, user.temporary}) {
        EXPECT_THAT(FilesIn(folder), IsEmpty());
      }
      DeleteFileW(file.c_str());
      for (const std::wstring& name : Values(HKEY_CURRENT_USER, kRunKey)) {
        EXPECT_FALSE(isReplaced) << "theirs is the entry now";
        RemoveValue(HKEY_CURRENT_USER, kRunKey, name);
      }
      ClearItems();
    }
  }
}

TEST_P(FolderMeanwhile, WhatOthersWriteIntoAShortcutIsNotDeleted) {
  if (!GetParam()) return;
  for (const Change& change : {delete_, toRun_}) {
    const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/old");
    const ItemRef item = LoadAndFind(UserFolder(), file);
    g_letGo = [&] { Put(file, "theirs"); };
    ExpectChangedMeanwhile([&] { change.run(item); });
    EXPECT_EQ(ReadFileBytes(file), "theirs");
    EXPECT_THAT(Values(HKEY_CURRENT_USER, kRunKey), IsEmpty());
    ClearItems();
  }
}

TEST_P(FolderMeanwhile, WhatOthersWriteIntoAShortcutIsNotReplaced) {
  const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/old");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  Meanwhile(L"CopyFile", [&] { PutShortcut(file, L"/theirs"); });
  ExpectChangedMeanwhile([&] { change_.run(item); });
  EXPECT_EQ(TShellLinkInfo(file).Arguments(), L"/theirs");
  EXPECT_THAT(FilesIn(user.startup), ElementsAre(L"Foo.lnk"));
  EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
}

TEST_P(FolderMeanwhile, WhatOthersPutInThePlaceOfTheTargetStaysAndTheSourceToo) {
  for (const auto& [change, folder] :
       {std::pair(disable_, user.disabled), std::pair(move_, common.startup)}) {
    const std::wstring to = folder + L"Foo.lnk";
    const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/old");
    const FileFacts facts = FactsOf(file);
    const ItemRef item = LoadAndFind(UserFolder(), file);
    Meanwhile(change.call, [&] { Put(to, "theirs"); });
    EXPECT_NE(ErrorOf([&] { change.run(item); }), 0u);
    Quiet();
    EXPECT_EQ(ReadFileBytes(to), "theirs");
    EXPECT_EQ(FactsOf(file), facts);
    EXPECT_TRUE(item->IsEnabled() && item->IsListed());
    DeleteFileW(to.c_str());
  }
}

TEST_P(FolderMeanwhile, ARefusedChangeTouchesNothing) {
  const std::wstring file = PutShortcut(user.startup + L"Foo.lnk", L"/old");
  ASSERT_TRUE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
  const ItemRef item = LoadAndFind(UserFolder(), file);
  const FileFacts facts = FactsOf(file);
  const auto expectAsBefore = [&](const auto& what) {
    EXPECT_EQ(FactsOf(file), facts) << what;
    EXPECT_THAT(FilesIn(user.startup), ElementsAre(L"Foo.lnk"));
    EXPECT_THAT(FilesIn(common.startup), IsEmpty());
    EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
    EXPECT_THAT(Values(HKEY_CURRENT_USER, kRunKey), IsEmpty());
    EXPECT_TRUE(item->IsListed() && item->IsEnabled());
    EXPECT_EQ(item->State().details.Command, Command(L"/old"));
  };
  for (const DWORD answer : {DWORD{ERROR_ACCESS_DENIED}, DWORD{ERROR_DISK_FULL}, DWORD{ERROR_SUCCESS}}) {
    for (const Change& change : {disable_, delete_, move_, toRun_, change_}) {
      Refuse(change.call, answer);
      EXPECT_NE(ErrorOf([&] { change.run(item); }), 0u) << fs::path(change.call);
      Quiet();
      expectAsBefore(fs::path(change.call));
    }
  }
  for (const wchar_t* command : {L"http://example.org/x", L"relative\\x.exe", L"no such program"}) {
    EXPECT_THROW(UserFolder().ChangeItemCommand(item, command), EChangeRefused);
    EXPECT_THROW(UserFolder().AddItem(L"New", command), EChangeRefused);
    expectAsBefore(fs::path(command));
  }
}

}  // namespace
}  // namespace smh::test
