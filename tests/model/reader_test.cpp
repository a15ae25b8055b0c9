#include "infra/runtime/scoped_com.h"
#include "locations/folders/shortcut_writer.h"
#include "model/change_lock.h"
#include "model/reader_state.h"
#include "model/reading.h"
#include "tests/model/fake_location.h"
#include "tests/support/import_patch.h"
#include "tests/support/probe_window.h"
#include "tests/support/process_counts.h"
#include "tests/support/waiting.h"

#include <chrono>
#include <future>
#include <thread>

namespace smh::test {

namespace {

using namespace std::chrono_literals;

bool IsComplete() {
  return CurrentReadState() == kReadStateComplete;
}

}  // namespace

class ReaderTest : public FakeLocationTest {
 protected:
  ReaderTest() { SetShowAllLocations(false); }
  ~ReaderTest() override { StopReading(); }
};

TEST_F(ReaderTest, ReadsTheUsualLocationsAndAllOfThemFromTheNextStartOn) {
  UsualLocation().SetEntries({{L"u", L"C:\\windows\\notepad.exe"}});
  RareLocation().SetEntries({{L"r", L"r.exe"}});
  StartReading();
  ASSERT_TRUE(WaitUntil(IsComplete, 10'000));
  ASSERT_NE(UsualLocation().Listed(L"u"), nullptr);
  EXPECT_FALSE(UsualLocation().Listed(L"u")->NeedsExtendedInfo());
  EXPECT_EQ(RareLocation().reads, 0);

  SetShowAllLocations(true);
  RareLocation().changed = true;
  EXPECT_FALSE(WaitUntil([] { return RareLocation().reads > 0; }, 1500))
      << "the switch waits for the next start";
  StartReading();
  ASSERT_TRUE(WaitUntil(IsComplete, 10'000));
  const ItemRef rare = RareLocation().Listed(L"r");
  ASSERT_NE(rare, nullptr);

  SetShowAllLocations(false);
  EXPECT_TRUE(rare->IsListed()) << "until the next start";
  StartReading();
  ASSERT_TRUE(WaitUntil(IsComplete, 10'000));
  EXPECT_FALSE(rare->IsListed());
  EXPECT_NE(UsualLocation().Listed(L"u"), nullptr);
}

TEST_F(ReaderTest, NoticesAChangeWithinAboutASecondAndReadsOnlyThatLocation) {
  SetShowAllLocations(true);
  StartReading();
  ASSERT_TRUE(WaitUntil(IsComplete, 10'000));
  const int others = RareLocation().reads;
  UsualLocation().SetEntries({{L"new", L"C:\\windows\\notepad.exe"}});
  UsualLocation().changed = true;
  const auto isRead = [] {
    const ItemRef item = UsualLocation().Listed(L"new");
    return item != nullptr && !item->NeedsExtendedInfo();
  };
  ASSERT_TRUE(WaitUntil(isRead, 2'000));
  EXPECT_EQ(RareLocation().reads, others);
}

TEST_F(ReaderTest, ALocationThatChangesWithoutEndIsReadOnceAPollAndHoldsUpNoOther) {
  SetShowAllLocations(true);
  StartReading();
  ASSERT_TRUE(WaitUntil(IsComplete, 10'000));
  const int first = UsualLocation().reads;
  RareLocation().SetEntries({{L"r", L"r.exe"}});
  UsualLocation().changesAlways = RareLocation().changed = true;
  EXPECT_TRUE(WaitUntil([] { return RareLocation().Listed(L"r") != nullptr; }, 3'000));
  Sleep(1'000);
  EXPECT_LE(UsualLocation().reads, first + 5);
}

TEST_F(ReaderTest, StopsAtOnceWhereverTheReaderIs) {
  std::promise<void> inside;
  std::atomic<bool> told{false};
  UsualLocation().onRead = [&] {
    if (!told.exchange(true)) inside.set_value();
    // A load that never ends by itself.
    for (;;) {
      CheckTerminated();
      std::this_thread::sleep_for(1ms);
    }
  };
  StartReading();
  inside.get_future().wait();
  EXPECT_EQ(CurrentReadState(), kReadStateReading);
  const auto begin = std::chrono::steady_clock::now();
  StopReading();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
  EXPECT_NO_THROW(CheckTerminated()) << "the request went with the reader";

  // A stop may come at any moment of the wait, its reset included.
  UsualLocation().onRead = nullptr;
  for (int round = 0; round < 100; ++round) {
    StartReading();
    if (round % 3 == 0) WaitUntil(IsComplete, 2'000);
    const auto start = std::chrono::steady_clock::now();
    StopReading();
    ASSERT_LT(std::chrono::steady_clock::now() - start, 900ms) << "round " << round;
  }
}

// A file that answers nothing until the reader is stopped, whose calls are cancelled then.
enum class SlowCall { kNone, kLook, kFind };
std::atomic<SlowCall> slowCall{SlowCall::kNone};
ScopedHandle slowCallBegan(CreateEventW(nullptr, FALSE, FALSE, nullptr));

bool IsCancelled(SlowCall call, const wchar_t* path) {
  if (call != slowCall || !std::wstring_view(path).ends_with(L"\\slow.exe")) return false;
  SetEvent(slowCallBegan.Get());
  WaitUntil([] { return g_reader->thread.IsAskedToEnd(); }, 10'000);
  SetLastError(ERROR_OPERATION_ABORTED);
  return true;
}

BOOL WINAPI LookSlowly(const wchar_t* path, GET_FILEEX_INFO_LEVELS level, void* data) {
  return !IsCancelled(SlowCall::kLook, path) &&
         RealFunction<decltype(GetFileAttributesExW)>(L"kernel32.dll", "GetFileAttributesExW")(path, level,
                                                                                               data);
}
HANDLE WINAPI FindSlowly(const wchar_t* path, WIN32_FIND_DATAW* data) {
  return IsCancelled(SlowCall::kFind, path)
             ? INVALID_HANDLE_VALUE
             : RealFunction<decltype(FindFirstFileW)>(L"kernel32.dll", "FindFirstFileW")(path, data);
}

TEST_F(ReaderTest, WhatAStopHasCancelledIsNoAnswer) {
  const TemporaryFolder folder;
  const std::wstring slow = folder.Write(L"slow.exe", "12345");
  const ImportPatch look("GetFileAttributesExW", LookSlowly);
  const ImportPatch find("FindFirstFileW", FindSlowly);
  const auto stopIn = [](SlowCall call) {
    ResetEvent(slowCallBegan.Get());
    slowCall = call;
    StartReading();
    EXPECT_EQ(WaitForSingleObject(slowCallBegan.Get(), 10'000), WAIT_OBJECT_0);
    StopReading();
    slowCall = SlowCall::kNone;
  };
  UsualLocation().SetEntries({{L"new", slow}});
  stopIn(SlowCall::kLook);
  EXPECT_EQ(UsualLocation().Listed(L"new"), nullptr);

  UsualLocation().SetEntries({{L"old", L"C:\\gone.exe"}});
  UsualLocation().ReadItems();
  const ItemRef old = UsualLocation().Listed(L"old");
  UsualLocation().SetEntries({{L"old", slow}});
  stopIn(SlowCall::kLook);
  EXPECT_EQ(old->State().details.Command, L"C:\\gone.exe");
  stopIn(SlowCall::kFind);
  EXPECT_TRUE(old->State().details.FileFound);
  EXPECT_TRUE(old->NeedsExtendedInfo());
}

TEST_F(ReaderTest, ARefreshLooksAtTheFilesAgainAndAPollDoesNot) {
  const TemporaryFolder folder;
  const std::wstring late = folder.File(L"late.exe");
  const std::wstring swapped = folder.Write(L"swapped.exe", "1");
  const std::wstring link = folder.Write(L"locked.lnk", "");
  ShortcutFields fields;
  fields.target = swapped;
  WriteShortcut(fields, link);
  ScopedHandle holder(CreateFileW(link.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  std::vector<FakeLocation::Entry> entries = {{L"late", late, true}, {L"swapped", swapped}, {L"link", link}};
  UsualLocation().SetEntries(entries);
  UsualLocation().ReadItems();
  const auto details = [](const wchar_t* name) { return UsualLocation().Listed(name)->State().details; };
  const ItemRef item = UsualLocation().Listed(L"late");
  EXPECT_FALSE(details(L"late").FileFound);
  EXPECT_EQ(details(L"link").FilePath, link);

  folder.Write(L"late.exe", "12345");
  folder.Write(L"swapped.exe", "12345");
  holder.Reset();
  entries[0].isProtected = false;
  UsualLocation().SetEntries(entries);
  UsualLocation().ReadItems();
  EXPECT_FALSE(details(L"late").FileFound);
  EXPECT_TRUE(item->IsProtected());
  const auto refresh = [] {
    StartReading();
    EXPECT_TRUE(WaitUntil(IsComplete, 10'000));
  };
  refresh();
  EXPECT_EQ(UsualLocation().Listed(L"late"), item);
  EXPECT_FALSE(item->IsProtected());
  EXPECT_EQ(details(L"late").FileSize, 5);
  EXPECT_EQ(details(L"swapped").FileSize, 5);
  EXPECT_EQ(details(L"link").FilePath, swapped);

  ASSERT_TRUE(DeleteFileW(swapped.c_str()));
  item->TakeChangedMark();
  refresh();
  EXPECT_FALSE(details(L"swapped").FileFound);
  EXPECT_EQ(details(L"link").FilePath, link) << "of a shortcut without its program";
  EXPECT_FALSE(item->TakeChangedMark()) << "what stands as it was seen is left alone";
}

TEST_F(ReaderTest, RefusesAThreadThatHoldsTheList) {
  ScopedLock lock(Items().Lock());
  EXPECT_THROW(StartReading(), EAssertionFailed);
  EXPECT_THROW(StopReading(), EAssertionFailed);
}

TEST_F(ReaderTest, AStopThatIsWaitedForDispatchesMessagesAndRefusesWhatTheyCall) {
  const ScopedHandle release(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  std::promise<void> inside;
  std::atomic<bool> told{false};
  UsualLocation().onRead = [&] {
    if (!told.exchange(true)) inside.set_value();
    // A file access that cannot be cancelled.
    WaitForSingleObject(release.Get(), INFINITE);
  };
  StartReading();
  inside.get_future().wait();
  std::thread stopping(StopReading);
  while (g_reader->control.TryEnter()) {
    g_reader->control.Leave();
    Sleep(1);
  }
  int refusals = 0;
  std::thread([&] {
    const ScopedCom com(COINIT_APARTMENTTHREADED);
    const ProbeWindow window([&] {
      EXPECT_THROW(StopReading(), EReentered);
      EXPECT_THROW(StartReading(), EReentered);
      EXPECT_THROW(ScopedChange(), EReentered);
      ++refusals;
      SetEvent(release.Get());
    });
    window.Post();
    StopReading();
    EXPECT_NO_THROW(StopReading()) << "of the same thread, one after the other";
  }).join();
  EXPECT_EQ(refusals, 1);
  stopping.join();
}

TEST_F(ReaderTest, IsNeitherStartedNorStoppedInTheMidstOfAChange) {
  {
    const ScopedChange change;
    EXPECT_THROW(StartReading(), EReentered);
    EXPECT_THROW(StopReading(), EReentered);
    // Of another thread it is, at once.
    std::thread([] {
      StartReading();
      StopReading();
    }).join();
  }
  EXPECT_NO_THROW(StopReading());
}

// Nothing signals that what made a load fail has passed.
TEST_F(ReaderTest, SurvivesALocationThatFailsAndReadsItAgainLessAndLessOften) {
  UsualLocation().SetEntries({{L"a", L"a.exe"}});
  UsualLocation().onRead = [] {
    if (UsualLocation().reads < 3) throw EOSError(ERROR_GEN_FAILURE);
  };
  const ULONGLONG begin = GetTickCount64();
  StartReading();
  EXPECT_TRUE(WaitUntil(IsComplete, 10'000));
  EXPECT_TRUE(LogHas(L"Error class   : EOSError"));
  EXPECT_TRUE(WaitUntil([] { return UsualLocation().Listed(L"a") != nullptr; }, 10'000));
  EXPECT_GE(GetTickCount64() - begin, 2'500u);
  Sleep(1'500);
  EXPECT_EQ(UsualLocation().reads, 3);
}

TEST_F(ReaderTest, RoundsLeaveNoHandleBehind) {
  StartReading();
  ASSERT_TRUE(WaitUntil(IsComplete, 10'000));
  StopReading();
  const int before = HandleCount();
  for (int round = 0; round < 50; ++round) {
    StartReading();
    StopReading();
  }
  EXPECT_LE(HandleCount(), before + 2);
}

}  // namespace smh::test
