#include "core/boundary_fixture.h"

#include "support/child_process.h"
#include "support/test_main.h"

#include <tlhelp32.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>

namespace smh::test {
namespace {

constexpr int kGood = 0;
constexpr int kBad = 1;

DWORD HandleCount() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return count;
}

int ThreadCount() {
  const ScopedHandle threads(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof(entry);
  int count = 0;
  for (BOOL more = Thread32First(threads.Get(), &entry); more; more = Thread32Next(threads.Get(), &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  return count;
}

bool IsLoaded() {
  return GetModuleHandleW(L"StartupManagerHelper.dll") != nullptr;
}

// The reader is caught in whatever it does at that time: starting, listing, reading files, waiting.
SMH_CHILD(FreeWhileReading) {
  const int rounds = std::stoi(arguments.at(0));
  constexpr int kWarmUp = 10;
  // What a lazily loaded system module may still add.
  constexpr DWORD kSlack = 8;
  DWORD warmHandles = 0;
  DWORD longest = 0;
  for (int round = 0; round < rounds; ++round) {
    LoadedLibrary library;
    if (library.Manager().Items().Refresh() != S_OK) return kBad;
    Sleep(static_cast<DWORD>(round % 10 == 9 ? 300 : round * 7 % 60));
    const DWORD begin = GetTickCount();
    library.Free();
    longest = std::max(longest, GetTickCount() - begin);
    if (round == kWarmUp) warmHandles = HandleCount();
  }
  std::printf("handles %lu -> %lu, threads %d, longest %lu ms, loaded %d\n", warmHandles, HandleCount(),
              ThreadCount(), longest, IsLoaded());
  return HandleCount() <= warmHandles + kSlack && longest < 4000 && !IsLoaded() ? kGood : kBad;
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

TEST_F(LifeTest, FreeingWhileReadingIsCleanAndLeaksNothing) {
  ExpectCleanEnd(RunChild(L"FreeWhileReading", {L"50"}, 120'000), kGood);
}

TEST_F(LifeTest, ProcessMayEndAnywhereInReading) {
  for (const wchar_t* milliseconds : {L"0", L"3", L"10", L"30", L"100"}) {
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

// The lines from the first one that equals `begin` up to the next empty one.
std::vector<std::wstring> Block(const std::vector<std::wstring>& lines, const std::wstring& begin) {
  const auto first = std::ranges::find(lines, begin);
  return {first, std::find(first, lines.end(), L"")};
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

  for (const std::wstring& view : {std::wstring(L"(x32)"), OwnViewPrefix()}) {
    const std::wstring key = view + L"HKEY_CURRENT_USER\\" + kRunKey + L"\\";
    EXPECT_EQ(Block(lines, key),
              (std::vector<std::wstring>{key, L"Text (REG_SZ) = \"C:\\a \"b\".exe\"",
                                         L"Expand (REG_SZ) = \"%windir%\\x.exe\"",
                                         L"Number (REG_DWORD) = \"4000000000\"",
                                         L"List (REG_MULTISZ) = \"one, two, \"", L"Blob () = \"\""}));
    const std::wstring side = view + L"HKEY_CURRENT_USER\\" + kDisabledKey + L"\\";
    EXPECT_EQ(Block(lines, side), (std::vector<std::wstring>{side, L"Parked (REG_SZ) = \"C:\\parked.exe\""}));
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
