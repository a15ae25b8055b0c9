// What a load of the Startup folders lists.
#include "tests/locations/folders/folder_fixture.h"
#include "tests/support/import_patch.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace smh::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

LinkBuilder LinkTo(const std::wstring& program) {
  LinkBuilder link;
  link.info = LinkInfoSpec{.basePath = std::string(program.begin(), program.end())};
  return link;
}

TEST_F(FolderTest, ShortcutsAndProgramFilesOfEveryPlaceAreListedAndNothingElse) {
  for (const bool isUser : {true, false}) {
    const StartupPlaces& places = isUser ? user : common;
    TLocationStartup& location = isUser ? UserFolder() : CommonFolder();
    const std::wstring shortcut = PutShortcut(places.startup + L"Tray.LNK");
    const std::wstring program = Put(places.startup + L"run me.exe", ReadFileBytes(Program()));
    const std::wstring script = Put(places.startup + L"script.Cmd", "exit");
    Put(places.startup + L"notes.txt", "text");
    Put(places.startup + L"lnk", "no extension");
    fs::create_directories(places.startup + L"x.lnk");
    Put(places.startup + L"sub\\below.lnk", "");
    const std::wstring own = PutShortcut(places.disabled + L"own.lnk");
    const std::wstring other = PutShortcut(places.autoruns + L"other.lnk");
    const std::wstring old = PutShortcut(places.brisko + L"old.lnk");

    location.ReadItems();
    std::vector<std::wstring> names = Names(location);
    ASSERT_EQ(names.size(), 6u);
    EXPECT_THAT(std::vector(names.begin() + 3, names.end()), ElementsAre(own, other, old));
    names.resize(3);
    EXPECT_THAT(names, UnorderedElementsAre(shortcut, program, script));
    for (const std::wstring& name : {shortcut, program, script, own, other, old}) {
      const ItemRef item = FindItem(location.LocationType(), name);
      EXPECT_EQ(item->IsEnabled(), name == shortcut || name == program || name == script);
      EXPECT_FALSE(item->IsProtected());
    }
    EXPECT_EQ(FindItem(location.LocationType(), own)->GivenText(), L"own");

    const ItemDetails details = FindItem(location.LocationType(), program)->State().details;
    EXPECT_EQ(details.Kind, TargetKind::kExecutable);
    EXPECT_EQ(details.Command, program);
    EXPECT_EQ(details.FilePath, program);
    EXPECT_EQ(details.Version->Company(), L"Northlight Audio Ltd.");
  }
}

TEST_F(FolderTest, AShortcutShowsWhatItStartsAndItsOwnFacts) {
  LinkBuilder link = LinkTo(Program());
  link.iconIndex = -5;
  link.hotKey = 0x0641;
  link.strings = {{LinkString::kName, u"replaced by the version record"},
                  {LinkString::kArguments, u"/tray \"a b\""},
                  {LinkString::kWorkingDir, u"C:\\Work"},
                  {LinkString::kIconLocation, u"C:\\icons.dll"}};
  const std::wstring file = Put(user.startup + L"Full.lnk", link);
  const ItemDetails details = LoadAndFind(UserFolder(), file)->State().details;
  EXPECT_EQ(details.Kind, TargetKind::kShortcut);
  EXPECT_EQ(details.Caption, L"Full");
  EXPECT_EQ(details.EntryName, L"Full");
  EXPECT_EQ(details.LinkPath, file);
  EXPECT_EQ(details.Command, Command(L"/tray \"a b\""));
  EXPECT_EQ(details.FilePath, Program());
  EXPECT_TRUE(details.FileFound);
  EXPECT_EQ(details.WorkingFolder, L"C:\\Work");
  EXPECT_EQ(details.IconPath, L"C:\\icons.dll");
  EXPECT_EQ(details.IconIndex, -5);
  EXPECT_EQ(details.LinkShowCommand, 0x0641);
  EXPECT_EQ(details.Description, L"Aurora Mixer tray icon");
}

TEST_F(FolderTest, TargetsFromAnEnvironmentBlockAndTargetsThatAreMissing) {
  SetEnvironmentVariableW(L"SMH_FOLDER_TEST", Folder().Path().c_str());
  LinkBuilder environment = LinkTo(L"C:\\ignored.exe");
  environment.blocks = {{0xA0000001, StringBlockData("", u"%SMH_FOLDER_TEST%\\auroratray.exe")},
                        {0xA0000007, StringBlockData("", u"%SMH_FOLDER_TEST%\\icon.ico")}};
  const ItemDetails found =
      LoadAndFind(UserFolder(), Put(user.startup + L"e.lnk", environment))->State().details;
  EXPECT_EQ(found.Command, Program());
  EXPECT_EQ(found.FilePath, Program());
  EXPECT_THAT(std::wstring(found.IconPath), ::testing::EndsWith(L"\\icon.ico"));

  LinkBuilder lost = LinkTo(Folder().File(L"lost.exe"));
  lost.strings = {{LinkString::kName, u"Its own text"}, {LinkString::kArguments, u"-x"}};
  const ItemDetails missing = LoadAndFind(UserFolder(), Put(user.startup + L"l.lnk", lost))->State().details;
  EXPECT_EQ(missing.Command, Folder().File(L"lost.exe") + L" -x");
  EXPECT_FALSE(missing.FileFound);
  EXPECT_EQ(missing.Description, L"Its own text");
}

// Windows may start what this system cannot read.
TEST_F(FolderTest, ShortcutsThatCannotBeReadOrHaveNoTargetStandForThemselves) {
  const std::wstring files[] = {
      Put(user.startup + L"empty.lnk", ""),
      Put(user.startup + L"short.lnk", FullLink().Build().CutTo(75).Text()),
      Put(user.startup + L"text.lnk", std::string(200, 'x')),
      Put(user.startup + L"large.lnk", std::string(5'242'881, '\0')),
  };
  const std::wstring noTarget = Put(user.startup + L"nothing.lnk", LinkBuilder{});
  // A list whose file's name does not end in its item: not for the shell.
  LinkBuilder endless;
  endless.idList = IdListOf({"\x32" + std::string(11, '\0') + "name"});
  const std::wstring unsafe = Put(user.startup + L"unsafe.lnk", endless);
  UserFolder().ReadItems();
  EXPECT_EQ(Names(UserFolder()).size(), 6u);
  for (const std::wstring& file : files) {
    const ItemRef item = FindItem(sulFolderUser, file);
    ASSERT_NE(item, nullptr);
    const ItemDetails details = item->State().details;
    EXPECT_EQ(details.Caption, fs::path(file).filename().wstring());
    EXPECT_EQ(details.Command, file);
    EXPECT_EQ(details.FilePath, file);
    EXPECT_EQ(details.EntryName, fs::path(file).stem().wstring());
    EXPECT_TRUE(LogHas(file)) << "the reason is logged";
  }
  for (const std::wstring& file : {noTarget, unsafe}) {
    const ItemDetails details = FindItem(sulFolderUser, file)->State().details;
    EXPECT_EQ(details.Caption, fs::path(file).stem().wstring());
    EXPECT_EQ(details.Command, file);
    EXPECT_EQ(details.FilePath, file);
  }
}

TEST_F(FolderTest, FilesThatOthersHoldOrThatVanishMeanwhile) {
  const std::wstring held = PutShortcut(user.startup + L"held.lnk");
  const std::wstring locked = PutShortcut(user.startup + L"locked.lnk");
  const std::wstring shared = PutShortcut(user.startup + L"shared.lnk");
  const auto open = [](const std::wstring& file, DWORD share) {
    return ScopedHandle(CreateFileW(file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
  };
  const ScopedHandle handles[] = {open(held, FILE_SHARE_READ | FILE_SHARE_WRITE), open(locked, 0),
                                  open(shared, FILE_SHARE_READ | FILE_SHARE_DELETE)};
  UserFolder().ReadItems();
  EXPECT_TRUE(FindItem(sulFolderUser, held)->IsProtected());
  EXPECT_EQ(FindItem(sulFolderUser, held)->State().details.FilePath, Program());
  EXPECT_TRUE(FindItem(sulFolderUser, locked)->IsProtected());
  EXPECT_EQ(FindItem(sulFolderUser, locked)->State().details.Command, locked) << "cannot be read now";
  EXPECT_FALSE(FindItem(sulFolderUser, shared)->IsProtected());
  EXPECT_TRUE(UserFolder().IsRetryDue());

  static std::wstring vanishing;
  vanishing = PutShortcut(user.startup + L"vanishing.lnk");
  const ImportPatch patch(
      "FindClose", +[](HANDLE find) -> BOOL {
        DeleteFileW(vanishing.c_str());
        return RealFunction<decltype(FindClose)>(L"kernel32.dll", "FindClose")(find);
      });
  UserFolder().ReadItems();
  ASSERT_NE(FindItem(sulFolderUser, vanishing), nullptr);
  UserFolder().ReadItems();
  EXPECT_EQ(FindItem(sulFolderUser, vanishing), nullptr);
}

TEST_F(FolderTest, AShortcutThatOthersHoldForAMomentStaysWhatItWas) {
  const std::wstring file = PutShortcut(user.startup + L"held.lnk", L"-old");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  UserFolder().ReadItems();
  EXPECT_FALSE(UserFolder().IsRetryDue());
  PutShortcut(file, L"-new");
  {
    const ScopedHandle holder(CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    for (const Look look : {Look::kForChanges, Look::kAgain}) {
      UserFolder().ReadItems(look);
      EXPECT_EQ(item->State().details.Command, Command(L"-old"));
      EXPECT_EQ(item->State().details.FilePath, Program());
    }
    EXPECT_FALSE(UserFolder().IsRetryDue()) << "the second failure in a row";
    EXPECT_TRUE(UserFolder().IsRetryDue());
  }
  UserFolder().ReadItems();
  EXPECT_EQ(item->State().details.Command, Command(L"-new"));
  EXPECT_FALSE(UserFolder().IsRetryDue());
}

TEST_F(FolderTest, NamesAreMatchedIgnoringTheCaseOfAsciiLetters) {
  const ItemRef item = LoadAndFind(UserFolder(), PutShortcut(user.startup + L"Foo \u00C4.lnk"));
  ASSERT_NE(item, nullptr);
  ASSERT_TRUE(
      MoveFileW((user.startup + L"Foo \u00C4.lnk").c_str(), (user.startup + L"fOO \u00C4.LNK").c_str()));
  UserFolder().ReadItems();
  EXPECT_TRUE(item->IsListed());
  EXPECT_EQ(Names(UserFolder()).size(), 1u);
  // To the system the others are the same letters too, and it is another name to the list.
  const std::wstring renamed = user.startup + L"foo \u00E4.lnk";
  ASSERT_TRUE(DeleteFileW(item->Name().c_str()));
  PutShortcut(renamed);
  UserFolder().ReadItems();
  EXPECT_THAT(Names(UserFolder()), ElementsAre(renamed));
}

TEST_F(FolderTest, LongestNamesAndUnpairedSurrogates) {
  const std::wstring longest = user.startup + std::wstring(251, L'n') + L".lnk";
  PutShortcut(Folder().File(L"x.lnk"));
  Put(longest, ReadFileBytes(Folder().File(L"x.lnk")));
  const ItemRef item = LoadAndFind(UserFolder(), longest);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->GivenText(), std::wstring(251, L'n'));

  // As a file system without Unicode rules hands it out.
  const std::wstring plain = PutShortcut(user.startup + L"zz.lnk");
  const ImportPatch patch(
      "FindNextFileW", +[](HANDLE find, WIN32_FIND_DATAW* data) -> BOOL {
        const BOOL found =
            RealFunction<decltype(FindNextFileW)>(L"kernel32.dll", "FindNextFileW")(find, data);
        if (found && data->cFileName[0] == L'z') data->cFileName[0] = 0xD83D;
        return found;
      });
  UserFolder().ReadItems();
  const ItemRef odd = FindItem(sulFolderUser, user.startup + L"\xD83Dz.lnk");
  ASSERT_NE(odd, nullptr);
  EXPECT_EQ(odd->State().details.Command, odd->Name());
  EXPECT_TRUE(odd->IsProtected());
  EXPECT_EQ(UserFolder().DisableItem(odd).kind, ChangeAnswer::Kind::kGone);
  EXPECT_FALSE(odd->IsListed());
  EXPECT_TRUE(Exists(plain));
}

TEST_F(FolderTest, AChangedShortcutStaysTheSameItem) {
  const std::wstring file = PutShortcut(user.startup + L"Tray.lnk", L"old");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  item->ReadExtendedInfo();
  PutShortcut(file, L"OLD");
  UserFolder().ReadItems();
  EXPECT_EQ(item->State().details.Command, Command(L"old")) << "case is no change";

  const std::wstring second = Folder().Write(L"second.exe", "no version record");
  Put(file, LinkTo(second));
  UserFolder().ReadItems();
  EXPECT_EQ(FindItem(sulFolderUser, file), item);
  const ItemDetails details = item->State().details;
  EXPECT_EQ(details.Command, second);
  EXPECT_EQ(details.FilePath, second);
  EXPECT_EQ(details.Caption, L"Tray");
  EXPECT_EQ(details.Description, L"") << "nothing of the old program is kept";
  EXPECT_TRUE(item->NeedsExtendedInfo());
  EXPECT_TRUE(LogHas(L"Detect change item Tray (Tray). Target command change from \"" + Command(L"old") +
                     L"\" to \"" + second + L"\"."));

  Put(file, "damaged");
  UserFolder().ReadItems();
  EXPECT_EQ(item->State().details.Command, file);
  EXPECT_EQ(item->State().details.Caption, L"Tray.lnk");
  EXPECT_TRUE(item->IsListed());
}

TEST_F(FolderTest, ALoadThatFailsKeepsTheList) {
  const ItemRef item = LoadAndFind(UserFolder(), PutShortcut(user.startup + L"Tray.lnk"));
  {
    const ImportPatch patch(
        "FindFirstFileW", +[](const wchar_t*, WIN32_FIND_DATAW*) -> HANDLE {
          SetLastError(ERROR_ACCESS_DENIED);
          return INVALID_HANDLE_VALUE;
        });
    EXPECT_NO_THROW(UserFolder().ReadItems());
  }
  EXPECT_TRUE(item->IsListed());
  EXPECT_TRUE(LogHas(L"Error load item list for location \"sulFolderUser\"."));
  EXPECT_TRUE(UserFolder().IsRetryDue());
}

std::wstring closedFolder;

HANDLE WINAPI FindUnlessClosed(const wchar_t* pattern, WIN32_FIND_DATAW* data) {
  if (pattern == closedFolder + L"*") {
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
  }
  return RealFunction<decltype(FindFirstFileW)>(L"kernel32.dll", "FindFirstFileW")(pattern, data);
}

TEST_F(FolderTest, AFolderThatCannotBeReadOrIsAFileIsPassedOver) {
  const std::wstring kept = PutShortcut(user.autoruns + L"kept.lnk");
  const std::wstring gone = PutShortcut(user.autoruns + L"gone.lnk");
  const ItemRef item = LoadAndFind(UserFolder(), kept);
  fs::remove(gone);
  const std::wstring behind = PutShortcut(user.brisko + L"behind.lnk");
  const std::wstring file = Put(user.disabled.substr(0, user.disabled.size() - 1), "no folder");
  closedFolder = user.autoruns;
  {
    const ImportPatch patch("FindFirstFileW", FindUnlessClosed);
    UserFolder().ReadItems();
  }
  EXPECT_TRUE(item->IsListed());
  EXPECT_THAT(Names(UserFolder()), ElementsAre(kept, behind)) << "one that is gone is gone all the same";
  EXPECT_TRUE(LogHas(L"Folder: \"" + user.autoruns)) << "denied";
  EXPECT_TRUE(LogHas(L"Folder: \"" + user.disabled)) << "a file";
  EXPECT_TRUE(UserFolder().IsRetryDue());
  UserFolder().ReadItems();
  EXPECT_FALSE(UserFolder().IsRetryDue()) << "the watch tells when the file goes";
  fs::remove(file);
}

TEST_F(FolderTest, AMissingStartupFolderIsAnEmptyLocation) {
  const std::wstring file = PutShortcut(user.startup + L"Tray.lnk");
  const ItemRef item = LoadAndFind(UserFolder(), file);
  user.RemoveStartup();
  Settle(UserFolder());
  UserFolder().ReadItems();
  EXPECT_FALSE(item->IsListed());
  EXPECT_THAT(Names(UserFolder()), IsEmpty());
  EXPECT_FALSE(Exists(user.startup)) << "a load makes no folder";
  UserFolder().AddItem(L"New", Program());
  EXPECT_THAT(FilesIn(user.startup), ElementsAre(L"New.lnk"));
  PutShortcut(file);
  EXPECT_NE(LoadAndFind(UserFolder(), file), nullptr);
}

}  // namespace
}  // namespace smh::test
