#include "core/boundary_fixture.h"

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

// Ends in the middle of reading, when so many items are listed, or, with "complete", while the reader waits
// for changes.
SMH_CHILD(ExitWhileReading) {
  const LoadedLibrary& library = *new LoadedLibrary;
  const RawCollection items = library.Manager().Items();
  if (items.Refresh() != S_OK) return kBad;
  if (arguments.at(0) != L"complete") {
    const int listed = std::stoi(arguments.at(0));
    if (!WaitUntil([&] { return items.GetCount() >= listed; })) return kBad;
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

  const SampleProgram sample;
};

// Wine's own file opening may fail at the end of a process one of whose threads was opening a file or a
// folder. So the files are missing, the folders have been read by the time the first item is listed, and
// there are many items more than that before the log is saved.
TEST_F(LifeTest, ProcessMayEndAnywhereInReading) {
  for (int i = 0; i < 1000; ++i) SetUserRun(L"Entry " + std::to_wstring(i), kMissingProgram);
  for (const wchar_t* listed : {L"1", L"50", L"150", L"300", L"500"}) {
    ExpectEnd(RunChild(L"ExitWhileReading", {listed}), 7);
  }
}

TEST_F(LifeTest, ProcessEndWritesTheLog) {
  ExpectEnd(RunChild(L"ExitWithoutReading"), 7);
  EXPECT_EQ(ReadUtf16Lines(LogFile()).front(), std::wstring(80, L'-'));
  DeleteFileW(LogFile().c_str());

  ExpectEnd(RunChild(L"ExitWhileReading", {L"complete"}), 7);
  const std::vector<std::wstring> lines = ReadUtf16Lines(LogFile());
  EXPECT_EQ(lines.front(), std::wstring(80, L'-'));
  EXPECT_EQ(std::ranges::count(lines, L"Add item \"" + OwnViewPrefix() + L"HKEY_CURRENT_USER\\" + kRunKey +
                                          L"\\Entry 19\" in location \"sulRegistryUserRun\"."),
            1);
}

TEST_F(LifeTest, FreeingAfterStopWritesTheLogAndLeavesNoThread) {
  ExpectEnd(RunChild(L"StopThenFree"), kGood);
  EXPECT_EQ(ReadUtf16Lines(LogFile()).front(), std::wstring(80, L'-'));
}

TEST_F(LifeTest, UnloadFaultsOnceWhenTheManagerWasNotAskedForItsCollection) {
  ExpectEnd(RunChild(L"FreeWithoutAskingForTheCollection", {kManagerId}), 1);
  DeleteFileW(LogFile().c_str());
  // Without a manager there is nothing to release.
  ExpectEnd(RunChild(L"FreeWithoutAskingForTheCollection", {L"{E8C7F189-6EBA-407B-A55E-97C824EC0209}"}), 0);
  EXPECT_EQ(GetFileAttributesW(LogFile().c_str()), INVALID_FILE_ATTRIBUTES);
}

}  // namespace
}  // namespace smh::test
