// Making, ending and leaving behind collections of default programs in every state of their readers.
#include "core/boundary_favorite_fixture.h"
#include "support/process_counts.h"
#include "support/test_main.h"

#include <commctrl.h>

#include <atomic>
#include <cstdio>
#include <thread>

namespace smh::test {
namespace {

constexpr int kGood = 0;
constexpr int kBad = 1;
constexpr wchar_t kMissingProgram[] = L"C:\\no such folder\\gone.exe";

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
  // What the C++ runtime leaves behind with every instance of the module, and with each of its four threads
  // that was ended parked. A collection has five handles of its own.
  constexpr int kLeftByRuntime = 6 + 4 * 2;
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
    if (time > (files ? 7000u : 2000u)) return kBad;
    if (!files && round >= kWarmUp && leftHandles > kLeftByRuntime) return kBad;
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
