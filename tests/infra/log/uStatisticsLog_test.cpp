#include "core/contracts/intf_general.h"
#include "infra/log/log_file.h"
#include "infra/log/system_info_block.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/registry/uRegistryUtils.h"
#include "infra/siblings/uInterfacesRoutines.h"
#include "sysutil/version/uWinVersionInfo.h"
#include "tests/support/child_process.h"
#include "tests/support/fake_siblings.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/test_main.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <regex>
#include <thread>

namespace smh::test {
namespace {

using Lines = std::vector<std::wstring>;

constexpr wchar_t kTree[] = L"Software\\Quillmark Tests\\Log";
const std::wstring kSeparator(80, L'-');
constexpr wchar_t kLogPath[] = L"Quillmark\\Startup Manager\\Logs\\StartupManager.log";

// What the log asks of the general helpers. Its fields are set before use; the other operations are
// E_NOTIMPL.
class FakeHelper : public ComObject<IHelper> {
 public:
  std::wstring baseFolder;
  std::wstring userText;
  bool userIsAdmin = false;
  // By name of the version string, for any file.
  std::map<std::wstring, std::wstring> versionStrings;

  HRESULT STDMETHODCALLTYPE GetWindowsFolder(BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetSystemFolder(BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetFileNameWithoutExt(const wchar_t*, BoundaryText*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CanonicalizePath(const wchar_t*, BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetExecutableExtensions(BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetBaseFolder(BoundaryText* folder) override { return Give(baseFolder, folder); }
  HRESULT STDMETHODCALLTYPE GetVersionString(const wchar_t*, const wchar_t* name,
                                             BoundaryText* text) override {
    return Give(versionStrings[name], text);
  }
  HRESULT STDMETHODCALLTYPE GetVersionNumber(const wchar_t*, BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FileTimeToDateTime(const FILETIME*, double*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SplitIndirectString(const wchar_t*, BoundaryText*, std::int32_t*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ExpandEnvironment(const wchar_t*, BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetCurrentUserText(BoundaryText* text) override { return Give(userText, text); }
  BOOL STDMETHODCALLTYPE IsUserAdmin() override { return userIsAdmin; }
  HRESULT STDMETHODCALLTYPE GetVersionStrings(const wchar_t*, const wchar_t* const*, std::uint32_t,
                                              BoundaryText*) override {
    return E_NOTIMPL;
  }

 private:
  static HRESULT Give(std::wstring_view from, BoundaryText* to) {
    *to = MakeBoundaryText(from);
    return S_OK;
  }
};

// Started with a stand-in for what the log asks; a scope may leave it running.
struct LogServices {
  explicit LogServices(const std::wstring& baseFolder) {
    helper->baseFolder = baseFolder;
    helper->userText = L"J\x00F6rg";
    helper->userIsAdmin = true;
    helper->versionStrings[L"FileVersion"] = L"9.8.7.6";
    InstallFakeSibling(L"basekit.dll", IHelper::kId, helper.Get());
    g_siblings.Start();
    g_statisticsLog.Start();
  }

  const ComPtr<FakeHelper> helper = MakeComObject<FakeHelper>();
};

class StatisticsLogTest : public testing::Test {
 protected:
  ~StatisticsLogTest() override {
    g_statisticsLog.Stop();
    ForgetWinVersionInfo();
    g_siblings.Stop();
    InstallFakeSibling(L"basekit.dll", IHelper::kId, nullptr);
  }

  std::wstring File() const { return folder_.File(kLogPath); }
  Lines Saved() const {
    SaveLog();
    return ReadUtf16Lines(File());
  }

  const TemporaryFolder folder_;
  const LogServices services_{folder_.Path()};
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
  ScopedHandle reader(
      CreateFileW(File().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(reader);
  EXPECT_EQ(Saved(), Lines{L"one"});
  reader.Reset();
  // The second name is taken: the file itself is written over.
  folder_.MakeFolder(std::wstring(kLogPath) + L".new");
  EXPECT_EQ(Saved(), (Lines{L"one", L"two"}));
}

// Neither what the second name leads to nor, while that is taken, what the first one does.
TEST_F(StatisticsLogTest, LinksAreReplacedAndNeverFollowed) {
  const std::wstring other = folder_.Write(L"other", "somebody's");
  const std::wstring second = std::wstring(kLogPath) + L".new";
  folder_.MakeFolder(L"Quillmark\\Startup Manager\\Logs");
  ASSERT_TRUE(CreateHardLinkW(folder_.File(second).c_str(), other.c_str(), nullptr));
  LogLine(L"one");
  EXPECT_EQ(Saved(), Lines{L"one"});
  EXPECT_EQ(ReadFileBytes(other), "somebody's");
  folder_.MakeFolder(second);
  ASSERT_TRUE(DeleteFileW(File().c_str()));
  ASSERT_TRUE(CreateHardLinkW(File().c_str(), other.c_str(), nullptr));
  SaveLog();
  EXPECT_EQ(ReadFileBytes(other), "somebody's");
}

TEST_F(StatisticsLogTest, WithoutADataFolderNothingIsSaved) {
  services_.helper->baseFolder.clear();
  LogLine(L"x");
  SaveLog();
  EXPECT_EQ(LogFilePath(), L"");
  EXPECT_EQ(GetFileAttributesW(L"\\Quillmark"), INVALID_FILE_ATTRIBUTES);
}

TEST_F(StatisticsLogTest, InsertedTextsStayInTheirLineAndAreCut) {
  LogFormat(L"%s|%s", std::wstring(L"a\r\nforged\0\t\x85\x2028", 13), L"b");
  LogFormat(L"%s|%d", std::wstring(4095, L'x') + L"\xD83D\xDE00" + std::wstring(1'000'000, L'y'), 7);
  EXPECT_EQ(Saved(), (Lines{L"a\\u{d}\\u{a}forged\\u{0}\\u{9}\\u{85}\\u{2028}|b",
                            std::wstring(4095, L'x') + L"... (1004097 units)|7"}));
}

TEST_F(StatisticsLogTest, TheOldestLinesGo) {
  constexpr int kWritten = 5'000;
  for (int i = 0; i < kWritten; ++i) LogFormat(L"%d%s", i, std::wstring(4000, L'x'));
  const Lines lines = Saved();
  const std::size_t bytes = ReadFileBytes(File()).size();
  EXPECT_LE(bytes, LogText::kMostBytes);
  EXPECT_GE(bytes, LogText::kMostBytes - 100'000);
  const auto kept = static_cast<int>(lines.size()) - 1;
  EXPECT_EQ(lines[0], L"(" + std::to_wstring(kWritten - kept) + L" older lines are not kept.)");
  EXPECT_EQ(lines[1], std::to_wstring(kWritten - kept) + std::wstring(4000, L'x'));
  EXPECT_TRUE(lines.back().starts_with(std::to_wstring(kWritten - 1)));
}

std::atomic<int> g_cancelled{0};

// As while somebody stops the thread.
BOOL WINAPI CancelSome(HANDLE file, const void* bytes, DWORD size, DWORD* written, OVERLAPPED* place) {
  static const auto real = RealFunction<decltype(WriteFile)>(L"kernel32.dll", "WriteFile");
  if (g_cancelled.fetch_sub(1) <= 0) return real(file, bytes, size, written, place);
  SetLastError(ERROR_OPERATION_ABORTED);
  return FALSE;
}

TEST_F(StatisticsLogTest, AStopDoesNotCutItsSaveShort) {
  LogLine(L"one");
  EXPECT_EQ(Saved(), Lines{L"one"});
  const ImportPatch patch("WriteFile", &CancelSome);
  LogLine(L"two");
  g_cancelled = 1000;
  EXPECT_EQ(Saved(), Lines{L"one"}) << "a disk that does not answer is given up";
  EXPECT_GT(g_cancelled, 900);
  g_cancelled = 3;
  EXPECT_EQ(Saved(), (Lines{L"one", L"two"}));
}

TEST_F(StatisticsLogTest, AFolderThatCannotBeMadeIsSwallowed) {
  folder_.Write(L"Quillmark", "a file where the folder should be");
  LogLine(L"x");
  EXPECT_NO_THROW(SaveLog());
  EXPECT_EQ(ReadFileBytes(folder_.File(L"Quillmark")), "a file where the folder should be");
}

TEST_F(StatisticsLogTest, ErrorRecords) {
  const auto log = [](auto&& exception) {
    try {
      throw exception;
    } catch (...) {
      LogCurrentException();
    }
  };
  LogError(EOSError(ERROR_FILE_NOT_FOUND));
  log(EAbort());
  log(std::runtime_error("plain"));
  log(42);
  EXPECT_EQ(
      Saved(),
      (Lines{kSeparator, L"Error class   : EOSError",
             L"Error message : System Error.  Code: 2.\\u{d}\\u{a}" + SystemErrorText(ERROR_FILE_NOT_FOUND),
             kSeparator, kSeparator, L"Error class   : Exception", L"Error message : plain", kSeparator,
             kSeparator, L"Error class   : Exception", L"Error message : Unknown exception", kSeparator}));
}

TEST_F(StatisticsLogTest, DumpsEveryKindOfValue) {
  const RegistryTree tree(kTree);
  using namespace std::string_view_literals;
  tree.Set(L"", L"", Sz(L"default"));
  tree.Set(L"", L"binary", Binary("abc"));
  tree.Set(L"", L"dword", Dword(0xFFFFFFFF));
  tree.Set(L"", L"expand", ExpandSz(L"%windir%\\x.exe"));
  tree.Set(L"", L"list", MultiSz({L"a", L"b"}));
  tree.Set(L"", L"open", {REG_SZ, UnitBytes(L"no end"sv)});
  tree.Set(L"one", L"v", Sz(L"1"));
  tree.Key(L"two\\deep");
  MakeLink(HKEY_CURRENT_USER, tree.PathOf(L"two\\loop"), tree.Key().Get());
  LogRegistryKey(0, HKEY_CURRENT_USER, true, kTree);
  Lines lines = Saved();
  const std::wstring top = std::wstring(L"(x32)HKEY_CURRENT_USER\\") + kTree + L"\\";
  ASSERT_GE(lines.size(), 7u);
  EXPECT_EQ(lines.front(), top);
  std::sort(lines.begin() + 1, lines.begin() + 7);
  EXPECT_EQ(lines,
            (Lines{top, L" (REG_SZ) = \"default\"", L"binary () = \"\"",
                   L"dword (REG_DWORD) = \"4294967295\"", L"expand (REG_SZ) = \"%windir%\\x.exe\"",
                   L"list (REG_MULTISZ) = \"a, b, \"", L"open (REG_SZ) = \"no end\"", L"", top + L"one\\",
                   L"v (REG_SZ) = \"1\"", L"", top + L"two\\", L"", top + L"two\\deep\\", L""}));
}

TEST_F(StatisticsLogTest, DumpOfAClosedOrMissingKeyWritesNothing) {
  const RegistryTree tree(kTree);
  const LimitedKey closed(HKEY_CURRENT_USER, tree.PathOf(L"closed"), LimitedKey::Rights::kNone);
  LogRegistryKey(0, HKEY_CURRENT_USER, true, tree.PathOf(L"closed"));
  LogRegistryKey(0, HKEY_CURRENT_USER, true, tree.PathOf(L"missing"));
  LogRegistryKey(KEY_WOW64_64KEY, HKEY_CURRENT_USER, false, kTree);
  EXPECT_EQ(Saved(), (Lines{std::wstring(L"(x64)HKEY_CURRENT_USER\\") + kTree + L"\\", L""}));
}

// The Run keys follow in order: each once, and on a 64-bit Windows a second time in the other view.
TEST_F(StatisticsLogTest, SystemInfoBlock) {
  const SavedKey saved(HKEY_CURRENT_USER, kRunKey);
  const std::wstring runOnce = kRunKey + L"Once";
  Lines keys;
  for (const std::wstring& key : {kRunKey, runOnce}) {
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      MakeKey(root, key, 0);
      keys.push_back(BuildFullValuePath(0, root, key, L""));
      if (!HasTwoViews()) continue;
      MakeKey(root, key, KEY_WOW64_64KEY);
      keys.push_back(BuildFullValuePath(KEY_WOW64_64KEY, root, key, L""));
    }
  }
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Probe", Sz(L"probe.exe"));
  LogLine(L"forgotten");
  LogSystemInfo();
  LogLine(L"kept");
  const Lines lines = Saved();
  const std::wstring expected[] = {
      kSeparator,
      L"System info at \\d{4}\\.\\d\\d\\.\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\.",
      kSeparator,
      L"Version:        .+",
      L"Architecture:   .+",
      L"Service Pack:   .*",
      L"Edition:        .*",
      L"shlwapi.dll: \\d+\\.\\d+",
      L"shell32.dll: \\d+\\.\\d+",
      L"comctl32.dll: \\d+\\.\\d+",
      std::wstring(L"IsWow64Process: ") + (HasTwoViews() ? L"True" : L"False"),
      kSeparator,
      L"User name       : J\x00F6rg",
      L"User is admin   : True",
      L"Product version : \\d+\\.\\d+\\.\\d+\\.\\d+",
      L"Program version : 9\\.8\\.7\\.6",
      kSeparator,
  };
  ASSERT_GT(lines.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_TRUE(std::regex_match(lines[i], std::wregex(expected[i]))) << lines[i];
  }
  EXPECT_EQ(lines[lines.size() - 2], kSeparator);
  EXPECT_EQ(lines.back(), L"kept");
  Lines found;
  std::ranges::copy_if(lines, std::back_inserter(found),
                       [&](const std::wstring& line) { return std::ranges::find(keys, line) != keys.end(); });
  EXPECT_EQ(found, keys);
  EXPECT_EQ(std::ranges::count(lines, L"Probe (REG_SZ) = \"probe.exe\""), HasTwoViews() ? 2 : 1);
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

void WINAPI SaveAndExit(UINT) {
  SaveLogAtProcessExit();
  TerminateProcess(GetCurrentProcess(), 0);
}

// Ends like a process that leaves with the library loaded. Arguments: the base folder, and when to leave.
SMH_CHILD(ExitWithLog) {
  LogLine(L"lost before the start");
  const LogServices services(arguments.at(0));
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
  services.helper->baseFolder = L"C:\\elsewhere";
  if (arguments.at(1) == L"for want of a sibling") {
    const ImportPatch exit("ExitProcess", &SaveAndExit);
    SetProcessWindowStation(CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr));
    CheckInterface(nullptr, L"this one");
  }
  SaveLogAtProcessExit();
  return 0;
}

TEST(StatisticsLogLifeTest, ProcessExitSavesToThePathOfTheBlockUnlessTheLockIsOrphaned) {
  for (const wchar_t* const when :
       {L"", L"before the first block", L"while the lock is orphaned", L"for want of a sibling"}) {
    const TemporaryFolder folder;
    const ChildResult result = RunChild(L"ExitWithLog", {folder.Path(), when}, 20'000);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.exitCode, 0u) << result.output;
    const bool isWanting = std::wstring_view(when).starts_with(L"for");
    if (*when == L'\0' || isWanting) {
      const Lines lines = ReadUtf16Lines(folder.File(kLogPath));
      EXPECT_EQ(lines.front(), kSeparator);
      EXPECT_EQ(lines.back().starts_with(isWanting ? L"An error" : L"the last line"), true);
    } else {
      EXPECT_EQ(GetFileAttributesW(folder.File(L"Quillmark").c_str()), INVALID_FILE_ATTRIBUTES) << when;
    }
  }
}

}  // namespace
}  // namespace smh::test
