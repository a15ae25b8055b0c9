#include "fake_location.h"

#include "model/reader_control.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

namespace smh::test {

namespace {

using namespace std::chrono_literals;

template <typename Condition>
bool Within(std::chrono::milliseconds limit, Condition&& condition) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(5ms);
  }
  return true;
}

bool IsComplete() {
  return CurrentReadState() == kReadStateComplete;
}

}  // namespace

class ReaderTest : public ModuleTest {
 protected:
  ReaderTest() {
    for (FakeLocation* location : {&UsualLocation(), &RareLocation(), &FixedLocation()}) {
      location->SetEntries({});
      location->onRead = nullptr;
      location->changed = false;
      location->reads = 0;
    }
    SetShowAllLocations(false);
  }
  ~ReaderTest() override { StopReading(); }
};

TEST_F(ReaderTest, ReadsTheUsualLocationsAndAllOfThemFromTheNextStartOn) {
  UsualLocation().SetEntries({{L"u", L"C:\\windows\\notepad.exe"}});
  RareLocation().SetEntries({{L"r", L"r.exe"}});
  StartReading();
  ASSERT_TRUE(Within(10s, IsComplete));
  ASSERT_NE(UsualLocation().Listed(L"u"), nullptr);
  EXPECT_FALSE(UsualLocation().Listed(L"u")->NeedsExtendedInfo());
  EXPECT_EQ(RareLocation().reads, 0);

  SetShowAllLocations(true);
  RareLocation().changed = true;
  EXPECT_FALSE(Within(1500ms, [] { return RareLocation().reads > 0; }))
      << "the switch waits for the next start";
  StartReading();
  ASSERT_TRUE(Within(10s, IsComplete));
  EXPECT_NE(RareLocation().Listed(L"r"), nullptr);
}

TEST_F(ReaderTest, NoticesAChangeWithinAboutASecondAndReadsOnlyThatLocation) {
  SetShowAllLocations(true);
  StartReading();
  ASSERT_TRUE(Within(10s, IsComplete));
  const int others = RareLocation().reads;
  UsualLocation().SetEntries({{L"new", L"C:\\windows\\notepad.exe"}});
  UsualLocation().changed = true;
  ASSERT_TRUE(Within(2s, [] {
    const ItemRef item = UsualLocation().Listed(L"new");
    return item != nullptr && !item->NeedsExtendedInfo();
  }));
  EXPECT_EQ(RareLocation().reads, others);
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
    if (round % 3 == 0) Within(2s, IsComplete);
    const auto start = std::chrono::steady_clock::now();
    StopReading();
    ASSERT_LT(std::chrono::steady_clock::now() - start, 900ms) << "round " << round;
  }
}

TEST_F(ReaderTest, RefusesAThreadThatHoldsTheList) {
  ScopedLock lock(Items().Lock());
  EXPECT_THROW(StartReading(), EAssertionFailed);
  EXPECT_THROW(StopReading(), EAssertionFailed);
}

TEST_F(ReaderTest, SurvivesALocationThatFails) {
  UsualLocation().onRead = [] { throw EOSError(ERROR_GEN_FAILURE); };
  StartReading();
  EXPECT_TRUE(Within(10s, IsComplete));
  EXPECT_TRUE(LogHas(L"Error class   : EOSError"));
}

TEST_F(ReaderTest, RoundsLeaveNoHandleBehind) {
  const auto handles = [] {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
  };
  StartReading();
  ASSERT_TRUE(Within(10s, IsComplete));
  StopReading();
  const DWORD before = handles();
  for (int round = 0; round < 50; ++round) {
    StartReading();
    StopReading();
  }
  EXPECT_LE(handles(), before + 2);
}

TEST_F(ReaderTest, AHostMayWalkAndWaitWhileTheReaderReads) {
  std::vector<FakeLocation::Entry> entries;
  for (int i = 0; i < 300; ++i) entries.push_back({L"e" + std::to_wstring(i), L"C:\\windows\\notepad.exe"});
  UsualLocation().SetEntries(entries);
  StartReading();
  std::size_t walked = 0;
  while (!IsComplete()) {
    ScopedLock lock(Items().Lock());
    for (int i = 0; i < Items().Count(); ++i) walked += Items().At(i)->Details().Command.size();
    if (Items().Count() > 100) UsualLocation().SetEntries({{L"e0", L"C:\\windows\\notepad.exe"}});
    UsualLocation().changed = true;
  }
  EXPECT_GT(walked, 0u);
  EXPECT_TRUE(Within(5s, [] { return UsualLocation().Listed().size() == 1; }));
}

}  // namespace smh::test
