// Who signed the files of very many entries, asked while the list is used.
#include "hosts/common/reading.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/trust_checker.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>

namespace smh::test {
namespace {

constexpr std::size_t kEntries = 1'000;
constexpr int kStepsAtOnce = 50;
constexpr double kLongestWait = 50;  // milliseconds

// Calls that took longer than anybody should wait, in milliseconds.
class LateCalls {
 public:
  template <typename Call>
  void Time(const Call& call) {
    if (const double taken = Milliseconds(call); taken > kLongestWait) late_.push_back(taken);
  }
  const std::vector<double>& All() const noexcept { return late_; }

 private:
  std::vector<double> late_;
};

// A thread with as many steps and pauses as the list's, which waits for nobody: what is late there is the
// machine's doing.
class Control {
 public:
  std::size_t CountOfLate() {
    isDone_ = true;
    thread_.join();
    return late_.All().size();
  }

 private:
  void Run() {
    WaitUntil(
        [this] {
          for (int i = 0; i < kStepsAtOnce; ++i)
            late_.Time([this] { sum_ += std::hash<std::string>()(bytes_); });
          return isDone_.load();
        },
        INFINITE);
  }

  const std::string bytes_ = std::string(1 << 18, 'x');
  std::size_t sum_ = 0;
  LateCalls late_;
  std::atomic<bool> isDone_ = false;
  std::thread thread_{[this] { Run(); }};
};

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
  LateCalls late;
  Control control;
  std::int32_t next = 0;
  EXPECT_TRUE(WaitUntil(
      [&] {
        late.Time([&] { queue.RunAll(); });
        if (rows.UncheckedCount() == 0) return true;
        if (!std::exchange(isChecking, true)) {
          std::vector<ItemRecord> items = rows.Unchecked(0, 30, kEntries / 10);
          late.Time([&] { checker.Check(std::move(items), take); });
        }
        for (int i = 0; i < kStepsAtOnce; ++i, next = (next + 1) % static_cast<std::int32_t>(kEntries))
          late.Time([&] { ReadItemRecord(*library.ItemAt(next)); });
        return false;
      },
      180'000));
  EXPECT_GE(hashed, kEntries);
  // A busy machine stops any thread at times.
  EXPECT_LE(late.All().size(), 2 + 2 * control.CountOfLate()) << testing::PrintToString(late.All());
}

}  // namespace
}  // namespace smh::test
