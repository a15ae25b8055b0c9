#include "core/boundary_fixture.h"

#include <atomic>
#include <set>
#include <thread>

namespace smh::test {
namespace {

class ReadingTest : public BoundaryTest {
 protected:
  const SampleProgram sample;
};

TEST_F(ReadingTest, StateRisesFromZeroToTwo) {
  SetUserRun(L"Sample", sample.Path());
  Read();
  ASSERT_EQ(items.GetReadState(), 2);
  ASSERT_EQ(items.Stop(), S_OK);
  // While somebody holds the list, a new reader gets no further than its first location.
  std::atomic<bool> held{false};
  std::atomic<bool> letGo{false};
  std::thread holder([&] {
    items.Lock();
    held = true;
    while (!letGo) Sleep(5);
    items.Unlock();
  });
  while (!held) Sleep(1);
  EXPECT_EQ(items.Refresh(), S_OK);
  EXPECT_EQ(items.GetReadState(), 0);
  Sleep(50);
  EXPECT_EQ(items.GetReadState(), 0);
  letGo = true;
  holder.join();
  std::int32_t last = 0;
  EXPECT_TRUE(WaitUntil([&] {
    const std::int32_t state = items.GetReadState();
    EXPECT_GE(state, last);
    last = state;
    return state == 2;
  }));
  EXPECT_TRUE(FindUserRun(L"Sample"));
}

TEST_F(ReadingTest, NothingIsReadBeforeRefresh) {
  SetUserRun(L"Early", sample.Path());
  Sleep(1200);
  EXPECT_FALSE(FindUserRun(L"Early"));
  Read();
  EXPECT_TRUE(FindUserRun(L"Early"));
}

TEST_F(ReadingTest, ChangesShowWithinTwoSeconds) {
  constexpr DWORD kLimit = 2000;
  const std::wstring other = sample.Folder().File(L"other.exe");
  ASSERT_TRUE(CopyFileW(sample.Path().c_str(), other.c_str(), TRUE));
  SetUserRun(L"Sample", sample.Path());
  Read();
  const RawItem item = FindUserRun(L"Sample");
  ASSERT_TRUE(item);
  EXPECT_EQ(item.ReadChanged(), 1u);
  EXPECT_EQ(item.ReadChanged(), 0u);

  SetUserRun(L"Sample", other + L" /new");
  EXPECT_TRUE(WaitUntil([&] { return item.ReadChanged() == 1; }, kLimit));
  EXPECT_EQ(item.PropertyText(4), other + L" /new");
  EXPECT_EQ(FindUserRun(L"Sample").GetIndex(), item.GetIndex());

  SetUserRun(L"Late", L"C:\\late.exe");
  EXPECT_TRUE(WaitUntil([&] { return static_cast<bool>(FindUserRun(L"Late")); }, kLimit));
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Sample");
  EXPECT_TRUE(WaitUntil([&] { return item.GetIndex() == -1; }, kLimit));
  EXPECT_TRUE(FindUserRun(L"Late"));
}

TEST_F(ReadingTest, ShowAllSwitchTakesEffectAtRefresh) {
  SetValue(HKEY_LOCAL_MACHINE, kRunServicesKey, L"Service", Sz(sample.Path()), OwnView());
  ASSERT_EQ(items.SetShowAllLocations(0), S_OK);
  Read();
  EXPECT_FALSE(Find(kRunServices, L"Service"));
  ASSERT_EQ(items.SetShowAllLocations(1), S_OK);
  Sleep(1200);
  EXPECT_FALSE(Find(kRunServices, L"Service"));
  Read();
  EXPECT_TRUE(Find(kRunServices, L"Service"));

  RemoveValue(HKEY_LOCAL_MACHINE, kRunServicesKey, L"Service", OwnView());
  Read();
  EXPECT_FALSE(Find(kRunServices, L"Service"));
  EXPECT_EQ(items.SetShowAllLocations(0), S_OK);
}

TEST_F(ReadingTest, StopKeepsTheListAsItIs) {
  SetUserRun(L"Kept", sample.Path());
  Read();
  ASSERT_EQ(items.Stop(), S_OK);
  SetUserRun(L"Later", sample.Path());
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Kept");
  Sleep(1200);
  EXPECT_TRUE(FindUserRun(L"Kept"));
  EXPECT_FALSE(FindUserRun(L"Later"));
  Read();
  EXPECT_FALSE(FindUserRun(L"Kept"));
  EXPECT_TRUE(FindUserRun(L"Later"));
}

// One walk under the lock; the faults that it met.
int Walk(const RawCollection& items) {
  int faults = 0;
  std::set<std::wstring> names;
  items.Lock();
  const std::int32_t count = items.GetCount();
  for (std::int32_t i = 0; i < count; ++i) {
    const RawItem item = items.Item(i);
    const bool good = item.GetIndex() == i && item.GetLocation() != 0 && names.insert(item.Name()).second &&
                      item.CanDo(7) == 1 && !item.PropertyText(3).empty() && item.GetImageIndex() >= 3;
    if (!good) ++faults;
  }
  if (items.GetCount() != count) ++faults;
  items.Unlock();
  return faults;
}

TEST_F(ReadingTest, WalksUnderTheLockAreConsistentWhileReading) {
  for (int i = 0; i < 40; ++i) SetUserRun(L"Entry " + std::to_wstring(i), sample.Path());
  std::atomic<bool> end{false};
  std::atomic<int> faults{0};
  std::atomic<int> walks{0};
  const auto walker = [&] {
    while (!end) {
      faults += Walk(items);
      ++walks;
      Sleep(1);
    }
  };
  std::thread one(walker);
  std::thread two(walker);
  const DWORD begin = GetTickCount();
  for (int round = 0; GetTickCount() - begin < 3000; ++round) {
    EXPECT_EQ(items.Refresh(), S_OK);
    const std::wstring name = L"Entry " + std::to_wstring(round % 40);
    if (round % 2 == 0) RemoveValue(HKEY_CURRENT_USER, kRunKey, name);
    SetUserRun(name, round % 3 == 0 ? L"C:\\gone.exe" : sample.Path());
    Sleep(static_cast<DWORD>(round * 13 % 90));
  }
  end = true;
  one.join();
  two.join();
  EXPECT_EQ(faults, 0);
  EXPECT_GT(walks, 20);
  Read();
  EXPECT_EQ(Walk(items), 0);
  EXPECT_TRUE(FindUserRun(L"Entry 39"));
}

}  // namespace
}  // namespace smh::test
