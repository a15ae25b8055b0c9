// Changes made by startupctl in the Startup folders, looked up in the files.
#include "infra/files/file_facts.h"
#include "tests/hosts/cli/startupctl_fixture.h"
#include "tests/support/startup_folders.h"

#include <filesystem>

namespace smh::test {

namespace {

namespace fs = std::filesystem;

class StartupctlFolders : public StartupctlTest, public testing::WithParamInterface<bool> {
 protected:
  StartupctlFolders() { UseCheckpoints(GetParam()); }

  void Add(const wchar_t* location, const std::wstring& name, const std::wstring& arguments) const {
    Run({L"add", L"--location", location, L"--name", name, L"--command", Command(arguments)});
  }
  // The command that the entry of a file shows; empty when it is not listed in that state.
  static std::wstring Shown(const std::wstring& file, bool enabled) {
    for (const Json& item : List()) {
      if (item["name"] == ToUtf8(file) && item["enabled"] == enabled)
        return FromUtf8(item["command"].get<std::string>());
    }
    return {};
  }

  const StartupPlaces user{StartupPlaces::Whose::kUser};
};
INSTANTIATE_TEST_SUITE_P(Checkpoints, StartupctlFolders, testing::Bool(),
                         [](const auto& parameter) { return parameter.param ? "On" : "Off"; });

TEST_P(StartupctlFolders, AShortcutThatTheShellWouldFaultOnIsListed) {
  WriteFileBytes(user.startup + L"ctl faulty.lnk", FaultyIconBytes());
  EXPECT_EQ(Find("ctl faulty.lnk")[0]["enabled"], true);
}

TEST_P(StartupctlFolders, EntryFromAddToDelete) {
  const std::wstring on = user.startup + L"ctl trip.lnk";
  const std::wstring off = user.disabled + L"ctl trip.lnk";
  Add(L"FolderUser", L"ctl trip", L"one");
  EXPECT_EQ(Shown(on, true), Command(L"one"));
  const Json item = Find("ctl trip")[0];
  EXPECT_EQ(item["company"], "Northlight Audio Ltd.");
  EXPECT_EQ(item["file"], ToUtf8(Program()));
  const std::string bytes = ReadFileBytes(on);

  Run({L"disable", L"ctl trip"});
  EXPECT_FALSE(fs::exists(on));
  EXPECT_EQ(ReadFileBytes(off), bytes);
  // Another way to write the same command is no change, other arguments are.
  EXPECT_NE(Run({L"change", L"ctl trip", L"--command", Command(L"  one ")}).errors.find("already"),
            std::string::npos);
  Run({L"change", L"ctl trip", L"--command", Command(L"two")});
  EXPECT_EQ(Shown(off, false), Command(L"two"));
  Run({L"change", L"ctl trip", L"--command", L'"' + Program() + L'"'});
  EXPECT_EQ(Shown(off, false), L'"' + Program() + L'"');
  Run({L"change", L"ctl trip", L"--command", L"notepad.exe a.txt"});
  EXPECT_NE(Shown(off, false).find(L"notepad.exe a.txt"), std::wstring::npos);

  WriteFileBytes(user.startup + L"ctl trip.lnk", "another");
  Run({L"enable", off});
  EXPECT_EQ(ReadFileBytes(on), "another");
  EXPECT_NE(Shown(user.startup + L"ctl trip (1).lnk", true), L"");
  Run({L"delete", L"ctl trip (1)"});
  EXPECT_FALSE(fs::exists(user.startup + L"ctl trip (1).lnk"));
  EXPECT_EQ(ReadFileBytes(on), "another");
}

// Quotes that a shortcut does not keep are no difference.
TEST_P(StartupctlFolders, AMoveFromARunKeyMayLoseItsQuotes) {
  SetRun(HKEY_CURRENT_USER, L"ctl quoted", L"\"C:\\windows\\notepad.exe\" a.txt");
  Run({L"move", L"ctl quoted", L"--to", L"FolderUser"});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"ctl quoted"), std::nullopt);
  EXPECT_EQ(Shown(user.startup + L"notepad.lnk", true), L"C:\\windows\\notepad.exe a.txt");
  Run({L"move", L"notepad", L"--to", L"UserRun"});
  EXPECT_EQ(TextInBothViews(HKEY_CURRENT_USER, kRunKey, L"notepad"), L"C:\\windows\\notepad.exe a.txt");
}

// Nobody has to find the program, and it may be said in many ways.
TEST_P(StartupctlFolders, AProgramThatIsMissingIsAddedOnceAndMayGetMoreArguments) {
  const std::wstring commands[] = {L"C:\\none\\gone.exe /a", L"\"C:\\no ne\\gone\" /a",
                                   L"C:\\no ne\\gone two  blanks",
                                   L"\"C:\\none\\gone.exe\" C:\\none\\gone.exe"};
  for (const std::wstring& command : commands) {
    const std::vector<std::wstring> add = {L"add",     L"--location", L"FolderUser", L"--name",
                                           L"ctl 1.2", L"--command",  command};
    EXPECT_TRUE(Run(add).errors.starts_with("startupctl: Added ")) << ToUtf8(command);
    EXPECT_NE(Run(add).errors.find("already"), std::string::npos) << ToUtf8(command);
    Run({L"change", L"ctl 1", L"--command", command + L" more"});
    EXPECT_TRUE(Shown(user.startup + L"ctl 1.lnk", true).ends_with(L" more"));
    Run({L"delete", L"ctl 1"});
  }
  Add(L"FolderUser", L"ctl more", L"");
  Run({L"change", L"ctl more", L"--command", Command(L"/more")});
  EXPECT_EQ(Shown(user.startup + L"ctl more.lnk", true), Command(L"/more"));
}

// Whatever lies there: a program itself, and what only looks like a shortcut.
TEST_P(StartupctlFolders, AnyFileGoesToTheOtherFolder) {
  const StartupPlaces common(StartupPlaces::Whose::kCommon);
  for (const wchar_t* const name : {L"ctl program.exe", L"ctl damaged.lnk"}) {
    WriteFileBytes(user.startup + name, name[4] == L'p' ? ReadFileBytes(Program()) : "no shortcut");
    Run({L"move", user.startup + name, L"--to", L"FolderCommon"});
    EXPECT_FALSE(fs::exists(user.startup + name));
    EXPECT_TRUE(fs::exists(common.startup + name));
  }
}

// What a file is besides its bytes.
struct FileFacts {
  DWORD attributes = 0;
  std::uint64_t made = 0;
  std::uint64_t written = 0;
  bool operator==(const FileFacts&) const = default;
};

std::pair<FileFacts, std::uint64_t> FactsAndIndex(const std::wstring& file) {
  const ScopedHandle handle(
      CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  BY_HANDLE_FILE_INFORMATION info = {};
  EXPECT_TRUE(GetFileInformationByHandle(handle.Get(), &info));
  return {{info.dwFileAttributes, NumberOf(info.ftCreationTime), NumberOf(info.ftLastWriteTime)},
          JoinHalves(info.nFileIndexHigh, info.nFileIndexLow)};
}

// Hidden ones and system files among them; a refused one is not even replaced by a copy.
TEST_P(StartupctlFolders, ANewCommandLeavesTheFilesAttributesAndTimes) {
  for (const DWORD attributes : {FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM, FILE_ATTRIBUTE_HIDDEN,
                                 FILE_ATTRIBUTE_ARCHIVE, FILE_ATTRIBUTE_NORMAL}) {
    Add(L"FolderUser", L"ctl old", L"one");
    const std::wstring file = user.startup + L"ctl old.lnk";
    {
      const ScopedHandle handle(
          CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
      const FILETIME made = FileTimeOf(0x01C0'0000'0000'0000);
      const FILETIME written = FileTimeOf(0x01C8'0000'0000'0000);
      ASSERT_TRUE(SetFileTime(handle.Get(), &made, nullptr, &written));
    }
    ASSERT_TRUE(SetFileAttributesW(file.c_str(), attributes));
    const auto before = FactsAndIndex(file);
    const std::string bytes = ReadFileBytes(file);
    Run({L"change", L"ctl old", L"--command", L"http://example.org/x"}, 1);
    EXPECT_EQ(FactsAndIndex(file), before);
    EXPECT_EQ(ReadFileBytes(file), bytes);

    Run({L"change", L"ctl old", L"--command", Command(L"two")});
    EXPECT_EQ(FactsAndIndex(file).first, before.first) << attributes;
    EXPECT_EQ(Shown(file, true), Command(L"two"));
    if (GetParam()) {
      Run({L"undo"});
      EXPECT_EQ(FactsAndIndex(file).first, before.first) << "undone: " << attributes;
      EXPECT_EQ(ReadFileBytes(file), bytes);
    }
    Run({L"delete", L"ctl old"});
  }
}

}  // namespace
}  // namespace smh::test
