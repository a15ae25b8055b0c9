// Enabling, disabling, adding, deleting and re-commanding in the Startup folders, and the file behind a
// command line that names a shortcut.
#include "core/uStartupManager.h"
#include "infra/runtime/text.h"
#include "model/change_refused.h"
#include "shelllink/uShellLinkInfo.h"
#include "tests/locations/folders/folder_fixture.h"
#include "tests/support/import_patch.h"

#include <objbase.h>
#include <gmock/gmock.h>
#include <shellapi.h>

#include <thread>

namespace smh::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::wstring Move(const std::wstring& from, const std::wstring& to) {
  return L"MoveFile \"" + from + L"\" \"" + to + L'"';
}

using FolderChange = BothWays<FolderTest>;
INSTANTIATE_TEST_SUITE_P(Checkpoints, FolderChange, ::testing::Bool());

TEST_P(FolderChange, DisablingAndEnablingMoveTheFileAndNumberNamesThatAreTaken) {
  for (const bool isUser : {true, false}) {
    const StartupPlaces& places = isUser ? user : common;
    TLocationStartup& location = isUser ? UserFolder() : CommonFolder();
    const std::wstring file = PutShortcut(places.startup + L"Foo.lnk", L"new");
    const std::string bytes = ReadFileBytes(file);
    Put(places.disabled + L"Foo.lnk", "first");
    Put(places.disabled + L"Foo (1).lnk", "second");
    const ItemRef item = LoadAndFind(location, file);

    location.DisableItem(item);
    const std::wstring disabled = places.disabled + L"Foo (2).lnk";
    ExpectCheckpoint(L"Startup Manager: Disabling Foo", {Move(file, disabled)});
    EXPECT_THAT(FilesIn(places.startup), IsEmpty());
    EXPECT_EQ(ReadFileBytes(disabled), bytes);
    EXPECT_EQ(ReadFileBytes(places.disabled + L"Foo.lnk"), "first");
    EXPECT_EQ(item->Name(), disabled);
    EXPECT_EQ(item->State().details.LinkPath, disabled);
    EXPECT_EQ(item->State().details.Command, Command(L"new"));
    EXPECT_FALSE(item->IsEnabled());
    EXPECT_TRUE(item->TakeChangedMark());

    Put(places.startup + L"Foo (2).lnk", "third");
    location.EnableItem(item);
    ExpectCheckpoint(L"Startup Manager: Enabling Foo (2)",
                     {Move(disabled, places.startup + L"Foo (2) (1).lnk")});
    EXPECT_EQ(ReadFileBytes(places.startup + L"Foo (2) (1).lnk"), bytes);
    EXPECT_EQ(ReadFileBytes(places.startup + L"Foo (2).lnk"), "third");
    EXPECT_TRUE(item->IsEnabled());
    location.ReadItems();
    EXPECT_TRUE(item->IsListed()) << "the same object goes on";
    EXPECT_EQ(Names(location).size(), 4u);
  }
}

TEST_P(FolderChange, WhatOtherToolsDisabledComesBackAndThenGoesToTheOwnPlace) {
  for (const std::wstring& folder : {user.autoruns, user.brisko}) {
    const ItemRef item = LoadAndFind(UserFolder(), Put(folder + L"tool.exe", ReadFileBytes(Program())));
    UserFolder().EnableItem(item);
    EXPECT_THAT(FilesIn(folder), IsEmpty());
    EXPECT_TRUE(Exists(user.startup + L"tool.exe"));
    EXPECT_EQ(item->State().details.FilePath, user.startup + L"tool.exe");
    EXPECT_EQ(item->State().details.Command, user.startup + L"tool.exe");
    UserFolder().DisableItem(item);
    EXPECT_TRUE(Exists(user.disabled + L"tool.exe"));
    fs::remove(user.disabled + L"tool.exe");
  }
}

TEST_P(FolderChange, WhatIsSoAlreadyOrIsNotListedStaysUntouched) {
  const std::wstring file = PutShortcut(user.startup + L"Foo.lnk");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  UserFolder().EnableItem(item);
  UserFolder().ChangeItemCommand(item, std::wstring(item->State().details.Command));
  CommonFolder().DisableItem(item);
  CommonFolder().DeleteItem(item);
  CommonFolder().ChangeItemCommand(item, L"x.exe");
  ClearItems();
  UserFolder().DisableItem(item);
  UserFolder().DeleteItem(item);
  UserFolder().ChangeItemCommand(item, L"x.exe");
  EXPECT_THAT(FilesIn(user.startup), ElementsAre(L"Foo.lnk"));
  EXPECT_THAT(RecordedChanges(), IsEmpty());
}

TEST_P(FolderChange, AddingMakesAShortcutThatStartsTheCommand) {
  const int position =
      UserFolder().AddItem(L"New entry", L'"' + Program() + L"\" /one \"two three\"").position;
  ExpectCheckpoint(L"Startup Manager: Adding New entry",
                   {Move(user.temporary + L"New entry.lnk", user.startup + L"New entry.lnk")});
  const std::wstring file = user.startup + L"New entry.lnk";
  const ItemRef item = FindItem(sulFolderUser, file);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->Position(), position);
  EXPECT_TRUE(item->IsEnabled());
  EXPECT_EQ(item->GivenText(), L"New entry");
  EXPECT_EQ(item->State().details.Command, Command(L"/one \"two three\""));
  const TShellLinkInfo link(file);
  EXPECT_EQ(link.Target(), Program());
  EXPECT_EQ(link.Arguments(), L"/one \"two three\"");
  EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
  UserFolder().ReadItems();
  EXPECT_TRUE(item->IsListed());

  // An extension is changed; a bare name is found.
  CommonFolder().AddItem(L"Note.txt", L"notepad.exe a.txt");
  const TShellLinkInfo found(common.startup + L"Note.lnk");
  EXPECT_TRUE(SameText(FileNamePart(found.Target()), L"notepad.exe"));
  EXPECT_NE(FolderPart(found.Target()), L"") << "with its folder";
  EXPECT_EQ(found.Arguments(), L"a.txt");
}

TEST_P(FolderChange, NamesThatAreNoPlainFileNameAreRefusedBeforeAnythingIsMade) {
  for (const wchar_t* name :
       {L"",    L".",    L"..",      L"a\\b", L"..\\a",    L"C:a",       L"a/b",     L"a:b",    L"a*",
        L"a?",  L"a\"b", L"<a",      L"a>",   L"a|b",      L"a\nb",      L"a\x1F",   L"trail ", L"trail.",
        L"NUL", L"con",  L"Aux.txt", L"COM1", L"lpt9.lnk", L"COM\u00B2", L"CONOUT$", L"prn .x"}) {
    EXPECT_EQ(ErrorOf([&] { UserFolder().AddItem(name, Program()); }), DWORD(ERROR_INVALID_NAME))
        << fs::path(name);
  }
  EXPECT_TRUE(LogHas(L"Error add item \"trail.\" (" + Program() + L") in location \"sulFolderUser\"."));
  EXPECT_THAT(FilesIn(user.startup), IsEmpty());
  EXPECT_FALSE(Exists(user.temporary));
  EXPECT_THAT(RecordedChanges(), IsEmpty());
  for (const wchar_t* name : {L"COM", L"COM0x", L"nulls", L".hidden", L" lead", L"\u00C4\u4E2D"}) {
    EXPECT_NO_THROW(UserFolder().AddItem(name, Program())) << fs::path(name);
  }
  EXPECT_EQ(FilesIn(user.startup).size(), 6u);
}

TEST_P(FolderChange, EmptyAndLongTextsAreRefusedByName) {
  const std::wstring file = PutShortcut(user.startup + L"Foo.lnk");
  const std::string bytes = ReadFileBytes(file);
  const ItemRef item = LoadAndFind(UserFolder(), file);
  const std::wstring tooLong = Command(std::wstring(32'766, L'c'));
  const std::pair<std::function<void()>, const wchar_t*> rows[] = {
      {[&] { UserFolder().ChangeItemCommand(item, L""); }, L"The command is empty."},
      {[&] { UserFolder().AddItem(L"New", L""); }, L"The command is empty."},
      {[&] { UserFolder().ChangeItemCommand(item, tooLong); }, L"The command is too long."},
      {[&] { UserFolder().AddItem(L"New", tooLong); }, L"The command is too long."},
      {[&] { UserFolder().AddItem(std::wstring(252, L'n'), Program()); }, L"The name is too long."},
      {[&] { UserFolder().AddItem(std::wstring(255 - user.startup.size(), L'n') + L"n", Program()); },
       L"The name is too long."},
  };
  for (const auto& [change, text] : rows) {
    try {
      change();
      ADD_FAILURE() << "nothing was raised: " << fs::path(text);
    } catch (const EChangeRefused& refused) {
      EXPECT_EQ(refused.Message(), text);
    }
    EXPECT_EQ(ReadFileBytes(file), bytes);
    EXPECT_THAT(FilesIn(user.startup), ElementsAre(L"Foo.lnk"));
  }
  EXPECT_THAT(RecordedChanges(), IsEmpty());
}

TEST_P(FolderChange, AddingOverAFileOrWithoutAProgramFails) {
  const std::wstring file = Put(user.startup + L"Taken.lnk", "another");
  EXPECT_EQ(ErrorOf([&] { UserFolder().AddItem(L"taken", Program()); }), DWORD(ERROR_ALREADY_EXISTS));
  EXPECT_EQ(ReadFileBytes(file), "another");
  EXPECT_THROW(UserFolder().AddItem(L"none", L""), EChangeRefused);
  // Of two at the same time one comes too late.
  module.Safeguard().Before([&](const std::wstring& line) {
    if (line.starts_with(L"MoveFile")) Put(user.startup + L"Late.lnk", "early");
  });
  if (GetParam()) {
    EXPECT_EQ(ErrorOf([&] { UserFolder().AddItem(L"Late", Program()); }), DWORD(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(ReadFileBytes(user.startup + L"Late.lnk"), "early");
  }
  module.Safeguard().Before(nullptr);
  EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
  EXPECT_THAT(Names(UserFolder()), IsEmpty());
}

TEST_P(FolderChange, AFileInUseStaysAndAnotherGoes) {
  const std::wstring file = PutShortcut(user.startup + L"Foo.lnk");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  {
    const ScopedHandle held(
        CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(ErrorOf([&] { UserFolder().DeleteItem(item); }), DWORD(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(ErrorOf([&] { UserFolder().DisableItem(item); }), DWORD(ERROR_SHARING_VIOLATION));
    EXPECT_TRUE(Exists(file) && item->IsListed() && item->IsEnabled());
  }
  module.Safeguard().Clear();
  UserFolder().DeleteItem(item);
  ExpectCheckpoint(L"Startup Manager: Deleting Foo", {L"DeleteFile \"" + file + L'"'});
  EXPECT_FALSE(Exists(file) || item->IsListed());
}

// Windows refuses to replace a file that anybody reads.
TEST_P(FolderChange, AReaderIsWaitedForBeforeItsFileIsReplaced) {
  const std::wstring file = PutShortcut(user.startup + L"Foo.lnk");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  const auto read = [&] {
    return ScopedHandle(CreateFileW(file.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr));
  };
  ScopedHandle reader = read();
  const std::jthread leaves([&] {
    Sleep(200);
    reader.Reset();
  });
  UserFolder().ChangeItemCommand(item, Program() + L" /new");
  EXPECT_EQ(TShellLinkInfo(file).Arguments(), L"/new");
  if (GetParam()) return;  // The service has a test of its own for one that stays.
  const std::string bytes = ReadFileBytes(file);
  ScopedHandle stays = read();
  EXPECT_EQ(ErrorOf([&] { UserFolder().ChangeItemCommand(item, Program() + L" /newer"); }),
            DWORD(ERROR_SHARING_VIOLATION));
  EXPECT_EQ(ReadFileBytes(file), bytes);
  stays.Reset();
  EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
}

TEST_P(FolderChange, ANewCommandKeepsEverythingElseOfTheShortcut) {
  const std::wstring second = Folder().Write(L"second.exe", "x");
  ShortcutFields fields;
  fields.target = Program();
  fields.arguments = L"old";
  fields.description = L"@C:\\strings.dll,-7";
  fields.workingFolder = L"C:\\Work";
  fields.iconLocation = L"C:\\icons.dll";
  fields.iconIndex = -5;
  fields.showCommand = SW_SHOWMINNOACTIVE;
  fields.hotKey = 0x0641;
  for (const std::wstring& folder : {user.startup, user.disabled}) {
    const std::wstring file = Put(folder + L"Foo.lnk", "");
    WriteShortcut(fields, file);
    const ItemRef item = LoadAndFind(UserFolder(), file);
    item->ReadExtendedInfo();
    UserFolder().ChangeItemCommand(item, L'"' + second + L"\" /new");
    ExpectCheckpoint(L"Startup Manager: Changing Foo",
                     {L"CopyFile \"" + user.temporary + L"Foo.lnk\" \"" + file + L"\" overwrite 1"});
    const TShellLinkInfo link(file);
    EXPECT_EQ(link.Target(), second);
    EXPECT_EQ(link.Arguments(), L"/new");
    EXPECT_EQ(link.StoredDescription(), L"@C:\\strings.dll,-7") << "not resolved";
    EXPECT_EQ(link.WorkingDirectory(), L"C:\\Work");
    EXPECT_EQ(link.IconLocation(), L"C:\\icons.dll");
    EXPECT_EQ(link.IconIndex(), -5);
    EXPECT_EQ(link.ShowCommand(), DWORD(SW_SHOWMINNOACTIVE));
    EXPECT_EQ(link.HotKey(), 0x0641);
    EXPECT_EQ(item->State().details.Command, second + L" /new");
    EXPECT_EQ(item->Name(), file);
    EXPECT_EQ(item->IsEnabled(), folder == user.startup);
    EXPECT_TRUE(item->NeedsExtendedInfo());
    EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
    fs::remove(file);
  }
}

TEST_P(FolderChange, FilesWithoutACommandToChangeAreRefused) {
  LinkBuilder darwin = FullLink();
  std::erase_if(darwin.blocks, [](const LinkBlock& block) { return block.signature != 0xA0000006; });
  const std::wstring files[] = {
      Put(user.startup + L"program.exe", ReadFileBytes(Program())),
      Put(user.startup + L"damaged.lnk", "text"),
      Put(user.startup + L"empty.lnk", LinkBuilder{}),
      Put(user.startup + L"darwin.lnk", darwin),
  };
  UserFolder().ReadItems();
  for (const std::wstring& file : files) {
    const std::string bytes = ReadFileBytes(file);
    const ItemRef item = FindItem(sulFolderUser, file);
    EXPECT_THROW(UserFolder().ChangeItemCommand(item, Program() + L" /x"), Exception);
    EXPECT_THROW(UserFolder().MoveItem(item, sulRegistryUserRun), Exception);
    EXPECT_EQ(ReadFileBytes(file), bytes);
    EXPECT_TRUE(item->IsListed());
    EXPECT_TRUE(LogHas(L"Error change item \"" + file + L"\" comand on \"" + Program() +
                       L" /x\" in location \"sulFolderUser\"\r\n"));
    EXPECT_TRUE(
        LogHas(L"Error move item \"" + file + L"\" from \"sulFolderUser\" to \"sulRegistryUserRun\"."));
  }
  EXPECT_THAT(RecordedChanges(), IsEmpty()) << "refused before anything is touched";
  EXPECT_THAT(FilesIn(user.temporary), IsEmpty());
}

// A thread without COM, and one that has it in the other way.
TEST_P(FolderChange, TheCallersThreadNeedsNoComAndKeepsWhatItHas) {
  for (const bool hasCom : {false, true}) {
    HRESULT comAfterwards = E_FAIL;
    DWORD error = ~0u;
    std::thread([&] {
      if (hasCom) CoInitializeEx(nullptr, COINIT_MULTITHREADED);
      error = ErrorOf([&] { UserFolder().AddItem(hasCom ? L"multi" : L"none", Program()); });
      comAfterwards = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
      CoUninitialize();
      if (hasCom) CoUninitialize();
    }).join();
    EXPECT_EQ(error, 0u);
    EXPECT_EQ(comAfterwards, hasCom ? S_FALSE : S_OK);
  }
  EXPECT_THAT(FilesIn(user.startup), ElementsAre(L"multi.lnk", L"none.lnk"));
}

std::wstring g_opened;
HINSTANCE WINAPI TakeOpened(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR, INT) {
  g_opened = std::wstring(verb) + L" " + file + L" " + parameters;
  const bool works = g_opened.find(L"Foo") != std::wstring::npos;
  return reinterpret_cast<HINSTANCE>(works ? 33 : SE_ERR_FNF);
}

TEST_F(FolderTest, ShowOpensTheFileBrowserAtTheFile) {
  const ImportPatch patch("ShellExecuteW", &TakeOpened);
  for (const std::wstring& name : {std::wstring(L"Foo, bar.exe"), std::wstring(L"Gone.exe")}) {
    const std::wstring file = Put(user.startup + name, "MZ");
    const ItemRef item = LoadAndFind(UserFolder(), file);
    SetLastError(ERROR_DISK_FULL);
    EXPECT_EQ(ErrorOf([&] { UserFolder().ShowItemLocation(*item); }),
              name.starts_with(L"Foo") ? ERROR_SUCCESS : DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(g_opened, L"open explorer.exe /select,\"" + file + L"\"");
  }
}

TEST_F(FolderTest, ACommandThatIsAShortcutResolvesToWhatThatStarts) {
  // Never released: the end of a manager that was not asked for its collection faults.
  const auto resolve = [manager = new TStartupManager](const std::wstring& command) {
    return TakeText([&](BoundaryText* file) { return manager->ResolveCommandFile(command.c_str(), file); });
  };
  const std::wstring link = PutShortcut(Folder().File(L"a link.lnk"), L"/tray");
  EXPECT_EQ(resolve(link), Program());
  EXPECT_EQ(resolve(L'"' + Folder().File(L"A LINK.LNK") + L'"'), Program());
  // What cannot be read, or has no target, is its own answer.
  const std::wstring damaged = L'"' + Folder().Write(L"damaged.Lnk", "text") + L'"';
  EXPECT_EQ(resolve(damaged), damaged);
  const std::wstring empty = Folder().Write(L"empty.lnk", LinkBuilder{}.Build().Text());
  EXPECT_EQ(resolve(empty), empty);
  EXPECT_EQ(resolve(Folder().File(L"missing.lnk")), Folder().File(L"missing.lnk"));
}

}  // namespace
}  // namespace smh::test
