#include "core/boundary_fixture.h"

#include "support/child_process.h"
#include "support/process_counts.h"
#include "support/test_main.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>

namespace smh::test {
namespace {

constexpr int kGood = 0;
constexpr int kBad = 1;
constexpr wchar_t kMissingProgram[] = L"C:\\no such folder\\gone.exe";

bool IsLoaded() {
  return GetModuleHandleW(L"StartupManagerHelper.dll") != nullptr;
}

// Loads, reads for so many milliseconds and frees; the time that freeing took, or none when it did not work.
std::optional<DWORD> FreeAfter(DWORD milliseconds) {
  LoadedLibrary library;
  if (library.Manager().Items().Refresh() != S_OK) return std::nullopt;
  Sleep(milliseconds);
  const DWORD begin = GetTickCount();
  library.Free();
  const DWORD time = GetTickCount() - begin;
  if (IsLoaded() || ThreadCount() > 1) return std::nullopt;
  return time;
}

// Catches the reader while it starts, lists and waits.
SMH_CHILD(FreeWhileReading) {
  constexpr int kWarmUp = 10;
  // What the C++ runtime leaves behind with every instance of the module.
  constexpr int kLeftByRuntime = 6;
  const int rounds = std::stoi(arguments.at(0));
  for (int round = 0; round < rounds; ++round) {
    const int handles = HandleCount();
    const std::optional<DWORD> time = FreeAfter(static_cast<DWORD>(round % 10 == 9 ? 300 : round * 7 % 60));
    const int left = HandleCount() - handles;
    std::printf("round %d: %ld ms, %d handles left\n", round, time ? static_cast<long>(*time) : -1, left);
    if (!time || *time > 2000 || (round >= kWarmUp && left > kLeftByRuntime)) return kBad;
  }
  return kGood;
}

// Catches the reader in the files of the entries, where it may need the loader's lock, which an unload holds:
// it is then ended at the unload's limit.
SMH_CHILD(FreeWhileReadingFiles) {
  constexpr DWORD kLimit = 5000;
  const std::optional<DWORD> time = FreeAfter(static_cast<DWORD>(std::stoi(arguments.at(0))));
  std::printf("%ld ms\n", time ? static_cast<long>(*time) : -1);
  return time && *time < kLimit + 2000 ? kGood : kBad;
}

// Ends in the middle of reading, or, with "complete", while the reader waits for changes.
SMH_CHILD(ExitWhileReading) {
  const LoadedLibrary& library = *new LoadedLibrary;
  const RawCollection items = library.Manager().Items();
  if (items.Refresh() != S_OK) return kBad;
  if (arguments.at(0) != L"complete") {
    Sleep(static_cast<DWORD>(std::stoi(arguments.at(0))));
  } else {
    if (!WaitUntilComplete(items)) return kBad;
    // The reader has saved the log by now and would not save it again.
    Sleep(200);
    if (!DeleteFileW(LogFile().c_str())) return kBad;
  }
  ExitProcess(7);
}

SMH_CHILD(ExitWithoutReading) {
  (*new LoadedLibrary).Manager();
  return 7;
}

std::atomic<int> g_violations{0};
std::atomic<int> g_others{0};

LONG CALLBACK CountViolation(EXCEPTION_POINTERS* exception) {
  ++(exception->ExceptionRecord->ExceptionCode == EXCEPTION_ACCESS_VIOLATION ? g_violations : g_others);
  return EXCEPTION_CONTINUE_SEARCH;
}

// The exit code is the number of access violations during FreeLibrary.
SMH_CHILD(FreeWithoutAskingForTheCollection) {
  LoadedLibrary library;
  void* const manager = library.GetInstance(arguments.at(0).c_str());
  if ((manager != nullptr) != (arguments.at(0) == kManagerId)) return 50;
  void* const handler = AddVectoredExceptionHandler(1, &CountViolation);
  library.Free();
  RemoveVectoredExceptionHandler(handler);
  if (g_others != 0) return 51;
  // The process goes on: threads, the heap and the loader work.
  std::wstring text;
  std::thread([&] { text.assign(10'000, L'x'); }).join();
  const ScopedModule other(LoadLibraryW(L"version.dll"));
  if (text.size() != 10'000 || !other) return 52;
  return g_violations;
}

SMH_CHILD(StopThenFree) {
  LoadedLibrary library;
  const RawManager manager = library.Manager();
  const int threads = ThreadCount();
  {
    RawManager last = library.Manager();
    const RawCollection items = last.Items();
    if (items.Refresh() != S_OK || !WaitUntilComplete(items)) return kBad;
    if (items.Stop() != S_OK || ThreadCount() > threads) {
      std::printf("threads %d -> %d\n", threads, ThreadCount());
      return kBad;
    }
  }
  manager.Release();
  // Freeing the library writes it anew.
  if (!DeleteFileW(LogFile().c_str())) return kBad;
  library.Free();
  if (IsLoaded() || ThreadCount() > threads) return kBad;
  ExitProcess(kGood);
}

class LifeTest : public RunKeysTest {
 protected:
  LifeTest() {
    DeleteFileW(LogFile().c_str());
    for (int i = 0; i < 20; ++i) SetUserRun(L"Entry " + std::to_wstring(i), sample.Path());
  }

  static void ExpectCleanEnd(const ChildResult& result, DWORD exitCode) {
    EXPECT_FALSE(result.timedOut) << result.output;
    EXPECT_EQ(result.exitCode, exitCode) << result.output;
  }

  const SampleProgram sample;
};

TEST_F(LifeTest, FreeingWhileReadingIsQuickAndLeaksNothing) {
  for (int i = 0; i < 20; ++i) SetUserRun(L"Entry " + std::to_wstring(i), kMissingProgram);
  ExpectCleanEnd(RunChild(L"FreeWhileReading", {L"50"}), kGood);
}

TEST_F(LifeTest, FreeingWhileFilesAreReadEndsWithinItsLimit) {
  for (int i = 0; i < 20; ++i) {
    const std::wstring file = sample.Folder().File(L"entry" + std::to_wstring(i) + L".exe");
    ASSERT_TRUE(CopyFileW(sample.Path().c_str(), file.c_str(), TRUE));
    SetUserRun(L"Entry " + std::to_wstring(i), file);
  }
  for (const wchar_t* milliseconds : {L"1", L"5", L"15", L"40"}) {
    ExpectCleanEnd(RunChild(L"FreeWhileReadingFiles", {milliseconds}), kGood);
  }
}

// Of files that are missing: Wine's own file opening may fail at the end of a process one of whose threads
// was opening a file.
TEST_F(LifeTest, ProcessMayEndAnywhereInReading) {
  for (int i = 0; i < 300; ++i) SetUserRun(L"Entry " + std::to_wstring(i), kMissingProgram);
  for (const wchar_t* milliseconds : {L"0", L"2", L"5", L"10", L"30"}) {
    ExpectCleanEnd(RunChild(L"ExitWhileReading", {milliseconds}), 7);
  }
}

TEST_F(LifeTest, ProcessEndWritesTheLog) {
  ExpectCleanEnd(RunChild(L"ExitWithoutReading"), 7);
  EXPECT_EQ(LogLines().front(), std::wstring(80, L'-'));
  DeleteFileW(LogFile().c_str());

  ExpectCleanEnd(RunChild(L"ExitWhileReading", {L"complete"}), 7);
  EXPECT_EQ(LogLines().front(), std::wstring(80, L'-'));
  EXPECT_TRUE(LogHasLine(L"Add item \"" + OwnViewPrefix() + L"HKEY_CURRENT_USER\\" + kRunKey +
                         L"\\Entry 19\" in location \"sulRegistryUserRun\"."));
}

TEST_F(LifeTest, FreeingAfterStopWritesTheLogAndLeavesNoThread) {
  ExpectCleanEnd(RunChild(L"StopThenFree"), kGood);
  EXPECT_EQ(LogLines().front(), std::wstring(80, L'-'));
}

TEST_F(LifeTest, ManagerThatWasNotAskedForItsCollectionFaultsOnceAtUnload) {
  ExpectCleanEnd(RunChild(L"FreeWithoutAskingForTheCollection", {kManagerId}), 1);
}

TEST_F(LifeTest, ALibraryThatGaveNoManagerHasNothingToRelease) {
  ExpectCleanEnd(RunChild(L"FreeWithoutAskingForTheCollection", {L"{E8C7F189-6EBA-407B-A55E-97C824EC0209}"}),
                 0);
  EXPECT_EQ(GetFileAttributesW(LogFile().c_str()), INVALID_FILE_ATTRIBUTES);
}

// The lines after the first one that equals `heading`, up to the next empty one.
std::vector<std::wstring> SortedBlock(const std::vector<std::wstring>& lines, const std::wstring& heading) {
  const auto found = std::ranges::find(lines, heading);
  if (found == lines.end()) return {};
  std::vector<std::wstring> block(found + 1, std::find(found, lines.end(), L""));
  std::ranges::sort(block);
  return block;
}

TEST_F(LifeTest, LogHoldsSystemRunKeysAndItems) {
  for (const std::wstring& name : Values(HKEY_CURRENT_USER, kRunKey))
    RemoveValue(HKEY_CURRENT_USER, kRunKey, name);
  SetUserRun(L"Text", L"C:\\a \"b\".exe");
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Expand", ExpandSz(L"%windir%\\x.exe"));
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Number", Dword(4'000'000'000));
  SetValue(HKEY_CURRENT_USER, kRunKey, L"List", MultiSz({L"one", L"two"}));
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Blob", Binary("abc"));
  SetValue(HKEY_CURRENT_USER, kDisabledKey, L"Parked", Sz(L"C:\\parked.exe"));
  ExpectCleanEnd(RunChild(L"StopThenFree"), kGood);
  const std::vector<std::wstring> lines = LogLines();

  const std::wstring separator(80, L'-');
  const std::wstring begins[] = {separator,
                                 L"System info at ",
                                 separator,
                                 L"Version:        ",
                                 L"Architecture:   ",
                                 L"Service Pack:   ",
                                 L"Edition:        ",
                                 L"shlwapi.dll: ",
                                 L"shell32.dll: ",
                                 L"comctl32.dll: ",
                                 L"IsWow64Process: ",
                                 separator,
                                 L"User name       : ",
                                 L"User is admin   : ",
                                 L"Product version : ",
                                 L"Program version : 1.0.0.0",
                                 separator};
  ASSERT_GT(lines.size(), std::size(begins));
  for (std::size_t i = 0; i < std::size(begins); ++i) {
    EXPECT_TRUE(lines[i].starts_with(begins[i]))
        << i << ": " << std::string(lines[i].begin(), lines[i].end());
  }
  EXPECT_EQ(lines[10], HasTwoViews() ? L"IsWow64Process: True" : L"IsWow64Process: False");

  // The order of the values is the registry's.
  std::vector<std::wstring> values = {
      L"Text (REG_SZ) = \"C:\\a \"b\".exe\"", L"Expand (REG_SZ) = \"%windir%\\x.exe\"",
      L"Number (REG_DWORD) = \"4000000000\"", L"List (REG_MULTISZ) = \"one, two, \"", L"Blob () = \"\""};
  std::ranges::sort(values);
  for (const std::wstring& view : {std::wstring(L"(x32)"), OwnViewPrefix()}) {
    const std::wstring key = view + L"HKEY_CURRENT_USER\\" + kRunKey + L"\\";
    EXPECT_EQ(SortedBlock(lines, key), values);
    const std::wstring side = view + L"HKEY_CURRENT_USER\\" + kDisabledKey + L"\\";
    EXPECT_EQ(SortedBlock(lines, side), std::vector<std::wstring>{L"Parked (REG_SZ) = \"C:\\parked.exe\""});
    EXPECT_EQ(std::ranges::count(lines, key), 1);
  }
  const std::wstring path = OwnViewPrefix() + L"HKEY_CURRENT_USER\\" + kRunKey + L"\\";
  for (const wchar_t* name :
       {L"Text", L"Expand", L"Number", L"List", L"Blob", L"Disabled (Startup Manager)\\Parked"}) {
    EXPECT_EQ(
        std::ranges::count(lines, L"Add item \"" + path + name + L"\" in location \"sulRegistryUserRun\"."),
        1);
  }
}

}  // namespace
}  // namespace smh::test
