#include "infra/runtime/text.h"
#include "model/basic_info.h"
#include "model/extended_info.h"
#include "model/item_list.h"
#include "model/started_through.h"
#include "tests/support/import_patch.h"
#include "tests/support/module_fixture.h"

#include <gmock/gmock.h>

#include <set>
#include <thread>

namespace smh::test {

namespace {

const std::wstring kProgram = L"C:\\windows\\explorer.exe";

ItemRef MakeItem(const std::wstring& command, const std::wstring& caption = L"caption",
                 TTypeStartupLocation location = sulRegistryUserRun) {
  FoundEntry entry;
  entry.name = SharedText(L"name");
  entry.caption = SharedText(caption);
  entry.command = SharedText(command);
  const auto item = std::make_shared<TStartupItem>(location, std::move(entry));
  item->FillBasicInfo();
  return item;
}

}  // namespace

class ItemRecordTest : public ModuleTest {};

TEST_F(ItemRecordTest, TargetKindsAndMissingFiles) {
  const TemporaryFolder folder;
  // In the current folder, where nobody else looks.
  const std::wstring here = WriteFileBytes(*FullPathOf(L"smh-here.exe"), "x");
  struct Row {
    std::wstring command;
    TargetKind kind;
    bool found;
    std::wstring entryName;
  };
  const Row rows[] = {
      {folder.Write(L"text.txt", "x"), TargetKind::kOther, true, L"text"},
      {folder.Write(L"run.CMD", "x"), TargetKind::kExecutable, true, L"run"},
      {folder.File(L"gone.exe"), TargetKind::kExecutable, false, L"gone"},
      {folder.MakeFolder(L"sub"), TargetKind::kOther, true, L"sub"},
      {folder.File(L"gone.LNK"), TargetKind::kShortcut, false, L"gone"},
      {L"", TargetKind::kOther, false, L""},
      {L"\"", TargetKind::kOther, false, L""},
      {std::wstring(32'000, L'x'), TargetKind::kOther, false, std::wstring(32'000, L'x')},
      {L"Q:\\no drive\\a.exe", TargetKind::kExecutable, false, L"a"},
      {L"C:\\windows\\notepad /x", TargetKind::kExecutable, true, L"notepad"},
      {L"nul.exe", TargetKind::kExecutable, false, L"nul"},
      {std::wstring(FileNamePart(here)), TargetKind::kExecutable, false, L"smh-here"},
  };
  for (const Row& row : rows) {
    const ItemDetails details = MakeItem(row.command)->State().details;
    EXPECT_EQ(details.Kind, row.kind) << row.command.substr(0, 80);
    EXPECT_EQ(details.FileFound, row.found) << row.command.substr(0, 80);
    EXPECT_TRUE(SameText(details.EntryName, row.entryName)) << row.command.substr(0, 80);
  }
  DeleteFileW(here.c_str());
}

TEST_F(ItemRecordTest, CaptionsAreCompletedFromFileAndDescription) {
  const std::wstring description(MakeItem(kProgram)->State().details.Version->FileDescription);
  ASSERT_FALSE(description.empty());
  EXPECT_EQ(MakeItem(kProgram, L"")->State().details.Caption, description);
  EXPECT_EQ(MakeItem(kProgram, L"EXPLORER.exe")->State().details.Caption,
            L"EXPLORER.exe (" + description + L")");
  EXPECT_EQ(MakeItem(L"C:\\no such.exe", L"")->State().details.Caption, L"no such");
  EXPECT_EQ(MakeItem(kProgram, L"EXPLORER.exe")->GivenText(), L"EXPLORER.exe");
}

TEST_F(ItemRecordTest, RundllShowsTheLibraryItStarts) {
  const TemporaryFolder folder;
  const std::wstring library = folder.Write(L"my lib.dll", "x");
  const ItemDetails details = MakeItem(L"rundll32.exe \"" + library + L"\",Start")->State().details;
  EXPECT_TRUE(SameText(details.FilePath, library)) << std::wstring(details.FilePath);
  EXPECT_EQ(details.EntryName, L"rundll32");
  EXPECT_TRUE(
      EndsText(L"\\rundll32.exe", MakeItem(L"rundll32.exe gone.dll,Start")->State().details.FilePath));
}

// Only what certainly runs is told, else somebody's program passes for the system's.
TEST_F(ItemRecordTest, WhatIsStartedThroughAnotherProgram) {
  const TemporaryFolder folder;
  const std::wstring lib = folder.Write(L"a lib.dll", "x");
  const std::wstring script = folder.Write(L"a script.cmd", "x");
  const std::wstring bare = folder.Write(L"bare.bat", "x");
  const std::wstring q = L"\"" + script + L"\"";
  const std::wstring none;
  const std::wstring joined = folder.Write(L"a&b.cmd", "x");
  const std::wstring impostor = folder.Write(L"rundll32.exe", "x");
  const std::pair<std::wstring, std::wstring> rows[] = {
      {L"rundll32 \"" + lib + L"\",Start " + script, lib},
      {L"rundll32.exe shell32.dll,Control_RunDLL " + q, script},
      {L"rundll32 shell32.dll,ShellExec_RunDLL " + q, none},
      {L"rundll32 advpack.dll,LaunchINFSection " + q, none},
      {L"cmd /c " + q + L" a", script},
      {L"cmd /c " + bare, bare},
      {L"wscript " + bare + L" /a", bare},
      {L"%ComSpec% /d/q /C \"" + q + L" \"a\"\"", script},
      {L"cmd /k start \"title\" /min " + q, script},
      {L"cmd.exe /c @call " + q, script},
      {L"cmd /c cmd /r " + q, script},
      {L"cmd /c " + q + L" & " + lib, none},
      {L"cmd /c echo " + q, none},
      {L"cmd /c \"" + joined + L"\"", none},
      {L"cmd /s /c " + q, none},
      {L"cmd " + q, none},
      {L"powershell -NoProfile -ExecutionPolicy Bypass -File " + q + L" -x", script},
      {L"powershell -w hidden -f " + q, script},
      {L"powershell " + q, script},
      {L"powershell " + q + L"; & b", none},
      {L"powershell -enc " + q, none},
      {L"powershell -Command " + q, none},
      {L"wscript //B //T:9 " + q + L" //x", script},
      {L"cscript gone.vbs", none},
      {L"msiexec /i " + q + L" /qn", script},
      {L"msiexec /I" + q, script},
      {L"msiexec /i " + q + L" TRANSFORMS=" + lib, none},
      {L"msiexec /yC:\\a.dll " + q, none},
      {L"msiexec /i http://a/x.msi /l*v " + q, none},
      {L"msiexec /i http://a/x.msi " + q, none},
      {L"msiexec /i " + q + L" /p " + lib, none},
      {L"mshta " + q, none},
      {impostor + L" \"" + lib + L"\",Start", none},
      {L"cmd /c " + impostor + L" \"" + lib + L"\",Start", none},
  };
  for (const auto& [command, file] : rows) {
    const ItemDetails details = MakeItem(command)->State().details;
    EXPECT_EQ(details.ServedFile, file) << command;
    EXPECT_FALSE(details.StartedThrough.empty()) << command;
  }
  for (const std::wstring& itself : std::vector<std::wstring>{L"cmd", L"explorer.exe", script + L" cmd /c"})
    EXPECT_TRUE(MakeItem(itself)->State().details.StartedThrough.empty()) << itself;

  const ItemRef item = MakeItem(L"cmd /c " + q);
  EXPECT_TRUE(StandsAsSeen(item->State().details));
  folder.Write(L"a script.cmd", "another");
  EXPECT_FALSE(StandsAsSeen(item->State().details));
}

TEST_F(ItemRecordTest, ItemsOfOneFileShareWhatIsKnownOfIt) {
  const TemporaryFolder folder;
  const std::wstring file = folder.Write(L"shared.exe", "x");
  const ItemRef first = MakeItem(file);
  const ItemRef second = MakeItem(L"\"" + file + L"\" /again");
  EXPECT_EQ(first->State().details.Version, second->State().details.Version);
  folder.Write(L"shared.exe", "changed");
  EXPECT_NE(first->State().details.Version, MakeItem(file)->State().details.Version);

  ExtendedPass pass;
  first->ReadExtendedInfo(pass);
  const std::size_t asked = module.Rater().Asked().size();
  second->ReadExtendedInfo(pass);
  EXPECT_EQ(module.Rater().Asked().size(), asked);
  EXPECT_EQ(second->State().details.FileSize, 7);
  EXPECT_FALSE(second->NeedsExtendedInfo());
}

TEST_F(ItemRecordTest, RatingAsksForTheCompanyFirstAndThenForTheFile) {
  const TemporaryFolder folder;
  const std::wstring plain = folder.Write(L"plain.exe", "x");
  module.Rater().Rate(L"plain.exe", kRatingTrusted);
  const ItemRef item = MakeItem(plain);
  item->ReadExtendedInfo();
  EXPECT_EQ(item->State().details.Rating, 0);
  EXPECT_EQ(module.Rater().Asked().back(), L"file plain.exe");

  const std::size_t asked = module.Rater().Asked().size();
  const ItemRef missing = MakeItem(folder.File(L"gone.exe"));
  missing->ReadExtendedInfo();
  EXPECT_EQ(missing->State().details.Rating, 1);
  EXPECT_EQ(missing->State().details.ImageIndex, 3);
  EXPECT_EQ(module.Rater().Asked().size(), asked) << "a missing file is not rated";
  EXPECT_FALSE(missing->NeedsExtendedInfo());
}

TEST_F(ItemRecordTest, FactsReadForAnOldCommandAreDropped) {
  const TemporaryFolder folder;
  const std::wstring first = folder.Write(L"first.exe", "12345");
  const std::wstring second = folder.Write(L"second.exe", "1");
  const ItemRef item = MakeItem(first);
  {
    ScopedLock lock(Items().Lock());
    Items().Append(item);
  }
  EXPECT_FALSE(item->UpdateCommand(second, Items().Lock(), [] { return false; })) << "overtaken by a change";
  EXPECT_EQ(item->State().details.Command, first);

  // The reader is at work on the first command when the second one comes.
  std::thread reader;
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(item->UpdateCommand(first + std::wstring(static_cast<std::size_t>(i) + 1, L' '),
                                    Items().Lock(), [] { return true; }));
    reader = std::thread([&] { item->ReadExtendedInfo(); });
    item->UpdateCommand(second + std::wstring(static_cast<std::size_t>(i) + 1, L' '), Items().Lock(),
                        [] { return true; });
    reader.join();
    const ItemDetails details = item->State().details;
    EXPECT_TRUE(details.FileSize <= 1) << "the first file's size on the second file's command";
  }
}

ItemRef relocating;

HANDLE WINAPI RelocateAndFind(const wchar_t* path, WIN32_FIND_DATAW* data) {
  FoundEntry entry;
  entry.name = SharedText(kProgram);
  {
    ScopedLock lock(Items().Lock());
    Items().Relocate(*relocating, entry);
  }
  return RealFunction<decltype(FindFirstFileW)>(L"kernel32.dll", "FindFirstFileW")(path, data);
}

TEST_F(ItemRecordTest, FactsReadBeforeAFileWasCarriedElsewhereDoNotBringTheOldPathBack) {
  const TemporaryFolder folder;
  FoundEntry entry;
  entry.name = entry.command = SharedText(folder.Write(L"before.exe", "x"));
  relocating = std::make_shared<TStartupItem>(sulFolderUser, entry);
  relocating->FillBasicInfo();
  {
    const ImportPatch patch("FindFirstFileW", RelocateAndFind);
    relocating->ReadExtendedInfo();
  }
  EXPECT_EQ(relocating->State().details.FilePath, kProgram);
  EXPECT_TRUE(relocating->NeedsExtendedInfo());
  relocating = nullptr;
}

TEST_F(ItemRecordTest, TheTypeNameOfAFolderIsThatOfFolders) {
  const TemporaryFolder folder;
  const auto typeName = [](const std::wstring& path) {
    const ItemRef item = MakeItem(path);
    item->ReadExtendedInfo();
    return std::wstring(item->State().details.FileTypeName);
  };
  EXPECT_EQ(typeName(folder.MakeFolder(L"sub")), typeName(L"C:\\windows"));
  EXPECT_NE(typeName(folder.MakeFolder(L"sub.txt")), typeName(folder.Write(L"text.txt", "x")));
}

TEST(RundllRule, TheLastExistingFileBehindTheLibraryAndItsEntryPoint) {
  const std::set<std::wstring, std::less<>> files = {L"a.dll", L"b.cpl", L"c:\\my files\\c.dll", L"Entry"};
  const auto existing = [&](std::wstring_view element) {
    return files.contains(element) ? std::wstring(element) : std::wstring();
  };
  struct Row {
    const wchar_t* command;
    const wchar_t* target;
  };
  const Row rows[] = {
      {L"rundll32 a.dll,Control_RunDLL b.cpl", L"b.cpl"},
      {L"rundll32.exe a.dll,Start", L"a.dll"},
      {L"rundll32 a.dll,Start gone.cpl", L"a.dll"},
      {L"rundll32 a.dll,Entry", L"a.dll"},
      {L"\"C:\\windows\\rundll32.exe\" \"c:\\my files\\c.dll\",Start x", L"c:\\my files\\c.dll"},
      {L"rundll32   a.dll   ,  Start", L"a.dll"},
      {L"rundll32 a.dll", L"a.dll"},
      {L"rundll32 gone.dll,Start", L""},
      {L"rundll32", L""},
      {L"", L""},
      {L"rundll32 \"a.dll", L"a.dll"},
      {L"rundll32 a.dll,Start b.cpl,1", L"a.dll"},
  };
  for (const Row& row : rows) EXPECT_EQ(RundllTarget(row.command, existing), row.target) << row.command;

  EXPECT_TRUE(IsRundll(L"RunDLL32"));
  EXPECT_TRUE(IsRundll(L"rundll"));
  EXPECT_FALSE(IsRundll(L"rundll64"));
}

}  // namespace smh::test
