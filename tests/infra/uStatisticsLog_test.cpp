#include "infra/uStatisticsLog.h"

#include "core/uDllGlobals.h"
#include "infra/statistics_log_store.h"
#include "infra/uInterfacesRoutines.h"
#include "support/child_process.h"
#include "support/fake_basekit.h"
#include "support/fake_siblings.h"
#include "support/file_fixture.h"
#include "support/registry_fixture.h"
#include "support/test_main.h"
#include "sysutil/uWinVersionInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <thread>

namespace smh {
namespace {

using Lines = std::vector<std::wstring>;

constexpr wchar_t kRun[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t kTree[] = L"Software\\Quillmark Tests\\Log";
const std::wstring kSeparator(80, L'-');

// A saved log without its byte-order mark; fails the test when the file is not UTF-16LE with CRLF line ends.
Lines SavedLines(const std::wstring& file) {
  const std::string bytes = test::ReadFileBytes(file);
  EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFE");
  EXPECT_EQ(bytes.size() % 2, 0u);
  std::wstring text(bytes.size() / 2, L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * 2);
  Lines lines;
  for (std::size_t at = 1; at < text.size();) {
    const std::size_t end = text.find(L"\r\n", at);
    if (end == std::wstring::npos) {
      ADD_FAILURE() << "the last line has no end";
      break;
    }
    lines.push_back(text.substr(at, end - at));
    at = end + 2;
  }
  return lines;
}

class StatisticsLogTest : public testing::Test {
 protected:
  StatisticsLogTest() {
    helper_->baseFolder = folder_.Path();
    helper_->userText = L"J\x00F6rg";
    helper_->userIsAdmin = true;
    helper_->versionStrings[L"FileVersion"] = L"9.8.7.6";
    test::InstallFakeSibling(L"basekit.dll", IHelper::kId, helper_.Get());
    test::InstallFakeSibling(L"basekit.dll", IGlobals::kId, globals_.Get());
    StartLibraryList();
    StartDllGlobals();
    StartWinVersionInfo();
    StartStatisticsLog();
  }
  ~StatisticsLogTest() override {
    StopStatisticsLog();
    StopWinVersionInfo();
    StopDllGlobals();
    StopLibraryList();
    test::InstallFakeSibling(L"basekit.dll", IHelper::kId, nullptr);
    test::InstallFakeSibling(L"basekit.dll", IGlobals::kId, nullptr);
  }

  std::wstring File() const { return folder_.File(L"Quillmark\\Startup Manager\\Logs\\StartupManager.log"); }
  Lines Saved() const {
    SaveLog();
    return SavedLines(File());
  }

  const ComPtr<test::FakeHelper> helper_ = MakeComObject<test::FakeHelper>();
  const ComPtr<test::FakeGlobals> globals_ = MakeComObject<test::FakeGlobals>();
  const test::TemporaryFolder folder_;
};

TEST_F(StatisticsLogTest, SavesAllLinesUnderTheProductsFolder) {
  EXPECT_EQ(LogFilePath(), File());
  LogLine(L"first \xD800 lone, \x4E2D");
  LogFormat(L"item \"%s\" in \"%s\", %d", L"n", L"sulRegistryUserRun", 3);
  EXPECT_EQ(Saved(), (Lines{L"first \xD800 lone, \x4E2D", L"item \"n\" in \"sulRegistryUserRun\", 3"}));
  LogLine(std::wstring(10'000, L'x'));
  EXPECT_EQ(Saved().back(), std::wstring(10'000, L'x'));
  EXPECT_EQ(GetFileAttributesW((File() + L".new").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(StatisticsLogTest, ABlockedFileIsLeftAloneAndSavedLater) {
  LogLine(L"one");
  ASSERT_EQ(Saved(), Lines{L"one"});
  LogLine(L"two");
  {
    const ScopedHandle reader(
        CreateFileW(File().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);
    EXPECT_EQ(Saved(), Lines{L"one"});
  }
  EXPECT_EQ(Saved(), (Lines{L"one", L"two"}));
}

TEST_F(StatisticsLogTest, AFolderThatCannotBeMadeIsSwallowed) {
  folder_.Write(L"Quillmark", "a file where the folder should be");
  LogLine(L"x");
  EXPECT_NO_THROW(SaveLog());
  EXPECT_EQ(test::ReadFileBytes(folder_.File(L"Quillmark")), "a file where the folder should be");
}

TEST_F(StatisticsLogTest, WritesOverTheFileWhenTheSecondNameIsTaken) {
  folder_.MakeFolder(L"Quillmark\\Startup Manager\\Logs\\StartupManager.log.new");
  LogLine(L"x");
  EXPECT_EQ(Saved(), Lines{L"x"});
}

TEST_F(StatisticsLogTest, ErrorRecords) {
  LogError(EOSError(ERROR_FILE_NOT_FOUND));
  const auto log = [](auto&& exception) {
    try {
      throw exception;
    } catch (...) {
      LogCurrentException();
    }
  };
  log(ERegistryException(L"reg"));
  log(EAbort());
  log(std::runtime_error("plain"));
  log(42);
  const auto record = [](std::wstring_view name, std::wstring_view message) {
    return Lines{kSeparator, L"Error class   : " + std::wstring(name),
                 L"Error message : " + std::wstring(message), kSeparator};
  };
  Lines expected;
  // The message holds a line end of its own.
  for (const Lines& part :
       {Lines{kSeparator, L"Error class   : EOSError", L"Error message : System Error.  Code: 2.",
              SystemErrorText(ERROR_FILE_NOT_FOUND), kSeparator},
        record(L"ERegistryException", L"reg"), record(L"Exception", L"plain"),
        record(L"Exception", L"Unknown exception")}) {
    expected.insert(expected.end(), part.begin(), part.end());
  }
  EXPECT_EQ(Saved(), expected);
}

TEST_F(StatisticsLogTest, DumpsEveryKindOfValue) {
  const test::RegistryTree tree(kTree);
  using namespace std::string_view_literals;
  tree.Set(L"", L"", test::Sz(L"default"));
  tree.Set(L"", L"binary", test::Binary("abc"));
  tree.Set(L"", L"dword", test::Dword(0xFFFFFFFF));
  tree.Set(L"", L"expand", test::ExpandSz(L"%windir%\\x.exe"));
  tree.Set(L"", L"list", test::MultiSz({L"a", L"b"}));
  tree.Set(L"", L"open", {REG_SZ, test::UnitBytes(L"no end"sv)});
  tree.Set(L"", L"short", {REG_DWORD, {std::byte{7}}});
  tree.Set(L"one", L"v", test::Sz(L"1"));
  tree.Key(L"two\\deep");
  test::MakeLink(HKEY_CURRENT_USER, tree.PathOf(L"two\\loop"), tree.Key().Get());
  LogRegistryKey(0, HKEY_CURRENT_USER, true, kTree);
  Lines lines = Saved();
  const std::wstring top = std::wstring(L"(x32)HKEY_CURRENT_USER\\") + kTree + L"\\";
  ASSERT_GE(lines.size(), 8u);
  EXPECT_EQ(lines.front(), top);
  std::sort(lines.begin() + 1, lines.begin() + 8);
  EXPECT_EQ(lines, (Lines{top, L" (REG_SZ) = \"default\"", L"binary () = \"\"",
                          L"dword (REG_DWORD) = \"4294967295\"", L"expand (REG_SZ) = \"%windir%\\x.exe\"",
                          L"list (REG_MULTISZ) = \"a, b, \"", L"open (REG_SZ) = \"no end\"",
                          L"short (REG_DWORD) = \"7\"", L"", top + L"one\\", L"v (REG_SZ) = \"1\"", L"",
                          top + L"two\\", L"", top + L"two\\deep\\", L""}));
}

TEST_F(StatisticsLogTest, DumpOfAClosedOrMissingKeyWritesNothing) {
  const test::RegistryTree tree(kTree);
  const test::LimitedKey closed(HKEY_CURRENT_USER, tree.PathOf(L"closed"), test::LimitedKey::Rights::kNone);
  LogRegistryKey(0, HKEY_CURRENT_USER, true, tree.PathOf(L"closed"));
  LogRegistryKey(0, HKEY_CURRENT_USER, true, tree.PathOf(L"missing"));
  LogRegistryKey(KEY_WOW64_64KEY, HKEY_CURRENT_USER, false, kTree);
  EXPECT_EQ(Saved(), (Lines{std::wstring(L"(x64)HKEY_CURRENT_USER\\") + kTree + L"\\", L""}));
}

TEST_F(StatisticsLogTest, SystemInfoBlock) {
  const test::SavedKey saved(HKEY_CURRENT_USER, kRun);
  test::SetValue(HKEY_CURRENT_USER, kRun, L"Probe", test::Sz(L"probe.exe"));
  LogLine(L"forgotten");
  LogSystemInfo();
  LogLine(L"kept");
  const Lines lines = Saved();
  const std::wstring yes = test::HasTwoViews() ? L"True" : L"False";
  const std::wregex expected[] = {
      std::wregex(kSeparator),
      std::wregex(L"System info at \\d{4}\\.\\d\\d\\.\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\."),
      std::wregex(kSeparator),
      std::wregex(L"Version:        .+"),
      std::wregex(L"Architecture:   .+"),
      std::wregex(L"Service Pack:   .*"),
      std::wregex(L"Edition:        .*"),
      std::wregex(L"shlwapi.dll: \\d+\\.\\d+"),
      std::wregex(L"shell32.dll: \\d+\\.\\d+"),
      std::wregex(L"comctl32.dll: \\d+\\.\\d+"),
      std::wregex(L"IsWow64Process: " + yes),
      std::wregex(kSeparator),
      std::wregex(L"User name       : J\x00F6rg"),
      std::wregex(L"User is admin   : True"),
      std::wregex(L"Product version : 1\\.2\\.3\\.4"),
      std::wregex(L"Program version : 9\\.8\\.7\\.6"),
      std::wregex(kSeparator),
  };
  ASSERT_GT(lines.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i)
    EXPECT_TRUE(std::regex_match(lines[i], expected[i])) << i;
  EXPECT_EQ(lines.back(), L"kept");
  EXPECT_EQ(lines[lines.size() - 2], kSeparator);
}

// The keys of the block in order: each once, and on a 64-bit Windows a second time in the other view.
TEST_F(StatisticsLogTest, RunKeysAreDumpedOncePerView) {
  const test::SavedKey saved(HKEY_CURRENT_USER, kRun);
  const wchar_t* const keys[] = {
      L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\",
      L"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\",
      L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\",
      L"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\",
  };
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    for (const REGSAM view : {0, KEY_WOW64_64KEY}) {
      test::MakeKey(root, kRun, view);
      test::MakeKey(root, std::wstring(kRun) + L"Once", view);
    }
  }
  test::SetValue(HKEY_CURRENT_USER, kRun, L"Probe", test::Sz(L"probe.exe"));
  LogSystemInfo();
  const Lines lines = Saved();
  Lines expected;
  for (const wchar_t* const key : keys) {
    expected.push_back(std::wstring(L"(x32)") + key);
    if (test::HasTwoViews()) expected.push_back(std::wstring(L"(x64)") + key);
  }
  Lines found;
  std::ranges::copy_if(lines, std::back_inserter(found), [&](const std::wstring& line) {
    return std::ranges::find(expected, line) != expected.end();
  });
  EXPECT_EQ(found, expected);
  EXPECT_EQ(std::ranges::count(lines, L"Probe (REG_SZ) = \"probe.exe\""), test::HasTwoViews() ? 2 : 1);
}

TEST_F(StatisticsLogTest, WritersDoNotTearEachOther) {
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 4; ++writer) {
    writers.emplace_back([writer] {
      for (int i = 0; i < 200; ++i) {
        LogFormat(L"%d", writer);
        if (i % 50 == 0) SaveLog();
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  const Lines lines = Saved();
  EXPECT_EQ(lines.size(), 800u);
  for (const wchar_t* const text : {L"0", L"1", L"2", L"3"}) EXPECT_EQ(std::ranges::count(lines, text), 200);
}

TEST(StatisticsLogLifeTest, CallsOutsideItsLifeDoNothing) {
  LogLine(L"lost");
  SaveLog();
  SaveLogAtProcessExit();
}

// Ends like a process that leaves with the library loaded. Arguments: the base folder, and when to leave.
SMH_CHILD(ExitWithLog) {
  const auto helper = MakeComObject<test::FakeHelper>();
  const auto globals = MakeComObject<test::FakeGlobals>();
  helper->baseFolder = arguments.at(0);
  test::InstallFakeSibling(L"basekit.dll", IHelper::kId, helper.Get());
  test::InstallFakeSibling(L"basekit.dll", IGlobals::kId, globals.Get());
  StartLibraryList();
  StartDllGlobals();
  StartWinVersionInfo();
  StartStatisticsLog();
  if (arguments.at(1) == L"before the first block") {
    SaveLogAtProcessExit();
    return 0;
  }
  LogSystemInfo();
  LogLine(L"the last line");
  if (arguments.at(1) == L"while the lock is orphaned") {
    // Never destroyed: the thread leaves with the lock held.
    std::thread([] { new LogScope; }).join();
  }
  // No service is asked any more: the path is the one of the block.
  helper->baseFolder = L"C:\\elsewhere";
  SaveLogAtProcessExit();
  return 0;
}

TEST(StatisticsLogLifeTest, ProcessExitSavesToThePathOfTheBlock) {
  const test::TemporaryFolder folder;
  const test::ChildResult result = test::RunChild(L"ExitWithLog", {folder.Path(), L""});
  ASSERT_EQ(result.exitCode, 0u) << result.output;
  const Lines lines = SavedLines(folder.File(L"Quillmark\\Startup Manager\\Logs\\StartupManager.log"));
  EXPECT_EQ(lines.front(), kSeparator);
  EXPECT_EQ(lines.back(), L"the last line");
}

TEST(StatisticsLogLifeTest, ProcessExitSavesNothingWithoutABlockOrTheLock) {
  for (const wchar_t* const when : {L"before the first block", L"while the lock is orphaned"}) {
    const test::TemporaryFolder folder;
    const test::ChildResult result = test::RunChild(L"ExitWithLog", {folder.Path(), when}, 20'000);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.exitCode, 0u) << result.output;
    EXPECT_EQ(GetFileAttributesW(folder.File(L"Quillmark").c_str()), INVALID_FILE_ATTRIBUTES);
  }
}

}  // namespace
}  // namespace smh
