#include "infra/log/leak_report.h"
#include "infra/runtime/handle.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace smh::test {
namespace {

TEST(LeakReportTest, CountsBlocksAndHandlesThatLive) {
  constexpr int kBlocks = 500;
  constexpr int kHandles = 40;
  // Above what heaps keep in groups: not every Windows shows the small blocks of a group one by one.
  constexpr std::size_t kBlockSize = 0x10000;
  // The lists themselves are there before.
  std::vector<std::unique_ptr<char[]>> blocks(kBlocks);
  std::vector<ScopedHandle> events(kHandles);
  const LiveCounts before = CountLive();
  EXPECT_GT(before.blocks, 0);
  for (std::unique_ptr<char[]>& block : blocks) block = std::make_unique<char[]>(kBlockSize);
  for (ScopedHandle& event : events) event.Reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  const LiveCounts during = CountLive();
  EXPECT_NEAR(during.blocks - before.blocks, kBlocks, kBlocks / 10);
  // Not every Windows counts them.
  const int counted = before.handles == 0 ? 0 : kHandles;
  EXPECT_NEAR(during.handles - before.handles, counted, kHandles / 10);
  blocks.clear();
  events.clear();
  const LiveCounts after = CountLive();
  EXPECT_NEAR(after.blocks - before.blocks, 0, kBlocks / 10);
  EXPECT_NEAR(after.handles - before.handles, 0, kHandles / 10);
  EXPECT_EQ(LeakReport({1, 2}, {3, 4}),
            L"Live at start-up: 1 blocks, 2 handles. Live at shut-down: 3 blocks, 4 handles.");
}

}  // namespace
}  // namespace smh::test
