// Loading and freeing the library, making and ending its collections, and ending the process, at every point
// of their reading.

#include "tests/core/boundary_favorite_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/process_counts.h"
#include "tests/support/test_main.h"

#include <commctrl.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>

namespace smh::test {
namespace {

constexpr int kGood = 0;
constexpr int kBad = 1;
constexpr wchar_t kMissingProgram[] = L"C:\\no such folder\\gone.exe";

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
  if (GetModuleHandleW(L"StartupManagerHelper.dll") != nullptr || ThreadCount() > threads) return kBad;
  ExitProcess(kGood);
}

// A thread that stays inside a call, or ends there, holding what it holds.
bool g_isToEnd = false;
const ScopedHandle g_isInside(CreateEventW(nullptr, TRUE, FALSE, nullptr));

void StayInside() {
  SetEvent(g_isInside.Get());
  if (g_isToEnd) ExitThread(0);
  Sleep(INFINITE);
}

DWORD WINAPI StayInResume(HANDLE) {
  StayInside();
  return 0;
}

LSTATUS WINAPI StayInWriting(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
  StayInside();
  return 0;
}

struct Holder {
  const RawCollection& items;
  const RawFavorites& favorites;
  const std::wstring& lock;

  static DWORD WINAPI Hold(void* self) {
    const auto& [items, favorites, lock] = *static_cast<const Holder*>(self);
    if (lock == L"list") items.Lock();
    if (lock == L"favorites") favorites.Lock();
    if (lock == L"control") items.Refresh();
    if (lock == L"change") items.AddItem(kUserRun, L"Never", kMissingProgram);
    StayInside();
    return 0;
  }
};

// Frees the library while another thread has a lock of it.
SMH_CHILD(FreeWhileALockIsHeld) {
  LoadedLibrary library;
  const RawManager manager = library.Manager();
  const RawCollection items = manager.Items();
  const RawFavorites favorites = manager.Favorites();
  if (items.Refresh() != S_OK || !WaitUntilComplete(items) || !WaitUntilComplete(favorites)) return kBad;
  if (arguments.at(2) == L"stopped") items.Stop();
  // None but the library's own: its end destroys the manager.
  manager.Release();
  // Never taken back: the library goes before.
  new ImportPatch("ResumeThread", StayInResume, library.Module());
  const HMODULE guardkit = LoadLibraryW((ThisFolder() + L"guardkit.dll").c_str());
  for (const HMODULE module : {library.Module(), guardkit}) {
    new ImportPatch("RegSetValueExW", StayInWriting, module);
  }
  g_isToEnd = arguments.at(1) == L"died";
  Holder holder{items, favorites, arguments.at(0)};
  const ScopedHandle thread(CreateThread(nullptr, 0, Holder::Hold, &holder, 0, nullptr));
  WaitForSingleObject(g_isInside.Get(), INFINITE);
  if (g_isToEnd) WaitForSingleObject(thread.Get(), INFINITE);
  const DWORD begin = GetTickCount();
  library.Free();
  const DWORD took = GetTickCount() - begin;
  // The process goes on, and no thread of the library is left.
  Sleep(300);
  const int threads = ThreadCount();
  std::printf("%lu ms, %d threads\n", took, threads);
  const bool isGone = GetModuleHandleW(L"StartupManagerHelper.dll") == nullptr;
  // A holder that lives may still leave.
  const bool isInTime = took < 9'000 && (g_isToEnd || took > 4'500);
  ExitProcess(isGone && isInTime && threads == (g_isToEnd ? 1 : 2) ? kGood : kBad);
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

// As an interpreter or a service would: its program lies elsewhere, and nobody sees a box of its.
SMH_CHILD(ReadInAForeignHost) {
  SetProcessWindowStation(CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr));
  LoadedLibrary library(arguments.at(0));
  const RawCollection items = library.Manager().Items();
  return items.Refresh() == S_OK && WaitUntilComplete(items) && items.GetCount() >= 20 && items.Stop() == S_OK
             ? kGood
             : kBad;
}

TEST_F(LifeTest, SiblingsComeFromTheLibrarysFolderAndAMissingOneEndsTheHost) {
  const TemporaryFolder folder;
  const std::wstring host = folder.File(L"interpreter.exe");
  ASSERT_TRUE(CopyFileW(ThisProgram().c_str(), host.c_str(), TRUE));
  folder.Write(L"basekit.dll", "not the library's");
  const auto run = [&](const std::wstring& library) {
    return RunProgram(host, {L"--child=ReadInAForeignHost", library}, 30'000);
  };
  ExpectEnd(run(LoadedLibrary::File()), kGood);
  folder.MakeFolder(L"lib");
  for (const wchar_t* const file : {L"StartupManagerHelper.dll", L"basekit.dll", L"prefkit.dll"}) {
    ASSERT_TRUE(CopyFileW((ThisFolder() + file).c_str(), folder.File(L"lib\\").append(file).c_str(), TRUE));
  }
  const ChildResult ended = run(folder.File(L"lib\\StartupManagerHelper.dll"));
  EXPECT_FALSE(ended.timedOut);
  EXPECT_EQ(ended.exitCode, 1u);
  EXPECT_NE(ended.errors.find("loading library raterkit.dll::File Rater."), std::string::npos)
      << ended.errors;
  EXPECT_NE(ReadUtf16Lines(LogFile()).back().find(L"raterkit.dll::File Rater"), std::wstring::npos);
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

TEST_F(LifeTest, UnloadEndsWhoeverHoldsALock) {
  const std::vector<std::wstring> rows[] = {
      {L"list", L"lives", L"stopped"},  {L"list", L"died", L"reads"},     {L"list", L"died", L"stopped"},
      {L"control", L"lives", L"reads"}, {L"control", L"died", L"reads"},  {L"change", L"lives", L"reads"},
      {L"change", L"died", L"stopped"}, {L"favorites", L"died", L"reads"}};
  std::vector<std::unique_ptr<ChildProcess>> children;
  for (std::vector<std::wstring> row : rows) {
    row.insert(row.begin(), L"--child=FreeWhileALockIsHeld");
    children.push_back(std::make_unique<ChildProcess>(ThisProgram(), row));
  }
  for (std::size_t i = 0; i < children.size(); ++i) {
    SCOPED_TRACE(testing::PrintToString(rows[i]));
    ExpectEnd(children[i]->Finish(), kGood);
  }
}

// One round: made, met by its end at some point of its reading.
void MakeAndRelease(const RawManager& manager, int round) {
  RawFavorites favorites = manager.Favorites();
  if (round % 3 == 0) favorites.AddPath(kMissingProgram);
  if (round % 10 == 9) WaitUntilComplete(favorites);
  if (round % 10 == 5) Sleep(static_cast<DWORD>(round % 7));
  if (round % 4 == 3) favorites.Lock();
  if (round % 4 == 1) std::thread([&] { favorites.Reset(); }).join();
}

SMH_CHILD(MakeAndReleaseFavorites) {
  constexpr int kWarmUp = 60;
  // What the system's own caches and the log may gain.
  constexpr int kHandles = 4;
  constexpr std::ptrdiff_t kBytes = 64 * 1024;
  LoadedLibrary library;
  const RawManager manager = library.Manager();
  const RawCollection items = manager.Items();
  for (int round = 0; round < kWarmUp; ++round) MakeAndRelease(manager, round);
  const int handles = HandleCount();
  const auto bytes = static_cast<std::ptrdiff_t>(HeapBytes());
  const int rounds = std::stoi(arguments.at(0));
  for (int round = 0; round < rounds; ++round) MakeAndRelease(manager, round);
  const std::ptrdiff_t moreBytes = static_cast<std::ptrdiff_t>(HeapBytes()) - bytes;
  std::printf("%d handles, %d threads, %ld of %ld bytes more\n", HandleCount() - handles, ThreadCount() - 1,
              static_cast<long>(moreBytes), static_cast<long>(bytes));
  const bool clean = HandleCount() - handles <= kHandles && ThreadCount() == 1 && moreBytes <= kBytes;
  return clean ? kGood : kBad;
}

// Frees the library while several collections are at different points and the items' reader runs. One that
// reads a file may need the loader's lock, which an unload holds: with "files" they may be ended at the
// unload's limit.
SMH_CHILD(FreeWhileFavoritesRead) {
  constexpr int kWarmUp = 10;
  // What the system's own caches may gain. A collection has five handles of its own.
  constexpr int kLeftBySystem = 1;
  const int rounds = std::stoi(arguments.at(0));
  const bool files = arguments.at(1) == L"files";
  for (int round = 0; round < rounds; ++round) {
    const int handles = HandleCount();
    DWORD time = 0;
    {
      LoadedLibrary library;
      library.Manager().Items().Refresh();
      // The host's references die with the library.
      void* left[3] = {};
      library.Manager().GetFavoriteItems(&left[0]);
      if (round % 5 == 0) Sleep(300);
      library.Manager().GetFavoriteItems(&left[1]);
      Sleep(static_cast<DWORD>(round * 7 % 60));
      library.Manager().GetFavoriteItems(&left[2]);
      const DWORD begin = GetTickCount();
      library.Free();
      time = GetTickCount() - begin;
    }
    const int leftHandles = HandleCount() - handles;
    std::printf("round %d: %lu ms, %d handles left\n", round, time, leftHandles);
    if (GetModuleHandleW(L"StartupManagerHelper.dll") != nullptr || ThreadCount() > 1) return kBad;
    // A reader that did not park would cost the five seconds of the unload's limit.
    if (time > (files ? 7000u : 4500u)) return kBad;
    if (!files && round >= kWarmUp && leftHandles > kLeftBySystem) return kBad;
  }
  return kGood;
}

// Runs when the process ends, its other threads gone: nothing may be destroyed then.
void WINAPI ReleaseAtExit(void* pointer) {
  RawFavorites favorites;
  *favorites.Put() = pointer;
  auto* const images = static_cast<HIMAGELIST>(favorites.GetSmallImageList());
  favorites.Reset();
  TerminateProcess(GetCurrentProcess(), ImageList_GetImageCount(images) > 0 ? 7 : kBad);
}

SMH_CHILD(ReleaseFavoritesAtProcessExit) {
  void* favorites = nullptr;
  if ((*new LoadedLibrary).Manager().GetFavoriteItems(&favorites) != S_OK) return kBad;
  Sleep(static_cast<DWORD>(std::stoi(arguments.at(0))));
  FlsSetValue(FlsAlloc(ReleaseAtExit), favorites);
  ExitProcess(8);
}

class FavoriteLifeTest : public RunKeysTest {
 protected:
  // Of the items' reader, which is at work too.
  static void SetItems(const std::wstring& command) {
    for (int i = 0; i < 20; ++i) SetUserRun(L"Entry " + std::to_wstring(i), command);
  }

  const ClientKeys keys;
  const SampleProgram sample;
};

TEST_F(FavoriteLifeTest, AThousandCollectionsLeaveNothingBehind) {
  const std::wstring key = keys.Add(1, L"Mailer", sample.Path());
  keys.Set(key, L"LocalizedString", L"@" + TextsLibrary() + L",-101");
  keys.Set(key + L"\\DefaultIcon", L"", TextsLibrary() + L",1");
  keys.Add(2, L"Player", kMissingProgram);
  const ChildResult result = RunChild(L"MakeAndReleaseFavorites", {L"1000"}, 120'000);
  ExpectEnd(result, kGood);
  std::printf("%s", result.output.c_str());
}

TEST_F(FavoriteLifeTest, FreeingTheLibraryEndsEveryReader) {
  keys.AddMany(15, kMissingProgram);
  SetItems(kMissingProgram);
  ExpectEnd(RunChild(L"FreeWhileFavoritesRead", {L"40", L"missing"}), kGood);
  SetItems(sample.Path());
  for (int kind = 1; kind <= 7; ++kind) {
    keys.Set(keys.Add(kind, L"Real", sample.Path()), L"LocalizedString", L"@" + TextsLibrary() + L",-101");
  }
  ExpectEnd(RunChild(L"FreeWhileFavoritesRead", {L"6", L"files"}), kGood);
}

TEST_F(FavoriteLifeTest, ProcessMayEndWithLivingCollections) {
  keys.AddMany(15, kMissingProgram);
  for (const wchar_t* milliseconds : {L"0", L"3", L"20", L"500"}) {
    ExpectEnd(RunChild(L"ReleaseFavoritesAtProcessExit", {milliseconds}), 7);
  }
}

class FavoriteWakeTest : public FavoriteTest {};

// The pauses let an addition meet the reader before, in and after its decision to wait.
TEST_F(FavoriteWakeTest, NoAddedPathIsLost) {
  const RawFavorites favorites = manager.Favorites();
  for (int round = 0; round < 400; ++round) {
    const std::int32_t index = favorites.GetCount();
    ASSERT_EQ(favorites.AddPath(kMissingProgram), S_OK);
    for (std::atomic<int> pause = 0; pause < round * 20; ++pause) {
    }
    ASSERT_EQ(favorites.AddPath(kMissingProgram), S_OK);
    for (const std::int32_t added : {index, index + 1}) {
      const RawFavorite item = favorites.Item(added);
      ASSERT_TRUE(WaitUntil([&] { return item.ReadChanged() == 1; }, 5000)) << round;
    }
  }
}

TEST_F(FavoriteWakeTest, HostMayWalkLockedWhileTheReaderReads) {
  keys.AddMany(10, sample.Path());
  const RawFavorites favorites = manager.Favorites();
  while (favorites.GetReadState() != 2) {
    ASSERT_EQ(favorites.Lock(), S_OK);
    const std::int32_t count = favorites.GetCount();
    std::vector<std::wstring> before;
    for (int i = 0; i < count; ++i) before.push_back(favorites.Item(i).PropertyText(18));
    Sleep(1);
    for (int i = 0; i < count; ++i) EXPECT_EQ(favorites.Item(i).PropertyText(18), before[i]);
    EXPECT_EQ(favorites.GetCount(), count);
    ASSERT_EQ(favorites.Unlock(), S_OK);
    Sleep(1);
  }
  EXPECT_EQ(favorites.GetCount(), 70);
}

}  // namespace
}  // namespace smh::test
