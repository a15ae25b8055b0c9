#include "tests/core/boundary_fixture.h"

#include <atomic>
#include <set>
#include <thread>

namespace smh::test {
namespace {

class ReadingTest : public BoundaryTest {
 protected:
  const SampleProgram sample;
};

TEST_F(ReadingTest, NothingIsReadBeforeRefreshOrAfterStop) {
  SetUserRun(L"Early", sample.Path());
  Sleep(1200);
  EXPECT_FALSE(FindUserRun(L"Early"));
  Read();
  ASSERT_EQ(items.Stop(), S_OK);
  SetUserRun(L"Later", sample.Path());
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Early");
  Sleep(1200);
  EXPECT_TRUE(FindUserRun(L"Early"));
  EXPECT_FALSE(FindUserRun(L"Later"));
}

TEST_F(ReadingTest, AFileThatMakesTheShellFaultCostsItsIcon) {
  const std::wstring faulty = sample.Folder().Write(L"faulty.exe", FaultyIconBytes());
  SetUserRun(L"Faulty", faulty);
  SetUserRun(L"Sample", sample.Path());
  EXPECT_EQ(items.GetShowIcons(), 1u);
  Read();
  EXPECT_GT(FindUserRun(L"Sample").GetImageIndex(), 3);
  EXPECT_EQ(items.SetShowIcons(0), S_OK);
  // Read anew, because its file is another one.
  SetUserRun(L"Sample", sample.Folder().Write(L"other.exe", ReadFileBytes(sample.Path())));
  Read();
  EXPECT_EQ(FindUserRun(L"Sample").GetImageIndex(), 3);
  EXPECT_EQ(items.SetShowIcons(1), S_OK);
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
  std::thread walker([&] {
    for (; !end; Sleep(1), ++walks) faults += Walk(items);
  });
  const DWORD begin = GetTickCount();
  for (int round = 0; GetTickCount() - begin < 3000; ++round) {
    EXPECT_EQ(items.Refresh(), S_OK);
    const std::wstring name = L"Entry " + std::to_wstring(round % 40);
    if (round % 2 == 0) RemoveValue(HKEY_CURRENT_USER, kRunKey, name);
    SetUserRun(name, round % 3 == 0 ? L"C:\\gone.exe" : sample.Path());
    Sleep(static_cast<DWORD>(round * 13 % 90));
  }
  end = true;
  walker.join();
  EXPECT_EQ(faults, 0);
  EXPECT_GT(walks, 10);
  Read();
  EXPECT_EQ(Walk(items), 0);
  EXPECT_TRUE(FindUserRun(L"Entry 39"));
}

}  // namespace
}  // namespace smh::test
