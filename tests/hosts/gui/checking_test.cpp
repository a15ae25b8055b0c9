// Who signed the files of very many entries, asked while the list is used.
#include "hosts/common/reading.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/trust_checker.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <utility>

namespace smh::test {
namespace {

constexpr std::size_t kEntries = 1'000;
constexpr double kLongestWait = 50;  // milliseconds

TEST(CheckingTest, AThousandFilesAreVerifiedWhileTheListAnswers) {
  const EmptiedKeys emptied({kRunKey});
  const TemporaryFolder folder;
  const std::string program = ReadFileBytes(ThisFolder() + L"..\\samples\\drive_c\\Samples\\plain.exe");
  for (std::size_t i = 0; i < kEntries; ++i) {
    const std::wstring name = L"many " + std::to_wstring(i);
    SetValue(HKEY_CURRENT_USER, kRunKey, name, Sz(folder.Write(name + L".exe", program)));
  }
  const Library library;
  ASSERT_EQ(ReadToEnd(library, ReadScope::kUsual), kReadStateComplete);
  std::vector<WatchEvent> events;
  for (ItemRecord& item : TakeSnapshot(library)) events.push_back({L"added", std::move(item)});
  EntryRows rows;
  rows.Apply(std::move(events));
  ASSERT_GE(rows.UncheckedCount(), kEntries);

  UiQueue queue;
  TrustChecker checker(queue);
  bool isChecking = false;
  std::size_t hashed = 0;
  const auto take = [&](const std::vector<ItemRecord>& checked) {
    isChecking = false;
    for (const ItemRecord& item : checked) hashed += item.trust->sha256.size() == 64;
    rows.TakeTrust(checked);
  };
  std::vector<double> late;
  const auto timed = [&](const auto& call) {
    if (const double taken = Milliseconds(call); taken > kLongestWait) late.push_back(taken);
  };
  std::int32_t next = 0;
  EXPECT_TRUE(WaitUntil(
      [&] {
        timed([&] { queue.RunAll(); });
        if (rows.UncheckedCount() == 0) return true;
        if (!std::exchange(isChecking, true)) {
          std::vector<ItemRecord> items = rows.Unchecked(0, 30, kEntries / 4);
          timed([&] { checker.Check(std::move(items), take); });
        }
        for (int i = 0; i < 50; ++i, next = (next + 1) % static_cast<std::int32_t>(kEntries))
          timed([&] { ReadItemRecord(*library.ItemAt(next)); });
        return false;
      },
      180'000));
  EXPECT_GE(hashed, kEntries);
  // A busy machine may stop any thread for once.
  EXPECT_LE(late.size(), 2u) << testing::PrintToString(late);
}

}  // namespace
}  // namespace smh::test
