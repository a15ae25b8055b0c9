// The start-up table of the module, every row of which may fail.
#include "core/module_start.h"
#include "infra/runtime/exceptions.h"
#include "tests/support/child_process.h"
#include "tests/support/process_counts.h"
#include "tests/support/test_main.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <utility>
#include <vector>

namespace smh::test {
namespace {

constexpr std::size_t kMostRows = 32;

std::size_t failingRow = kMostRows;
// Row numbers from 1: as they were started, negative as they were stopped.
std::vector<int> trace;

template <std::size_t row>
void StartRow() {
  if (row == failingRow) throw Exception(L"no start");
  if (const auto start = ModuleSteps()[row].start) start();
  trace.push_back(static_cast<int>(row) + 1);
}

template <std::size_t row>
void StopRow(StopMode& mode) noexcept {
  if (const auto stop = ModuleSteps()[row].stop) stop(mode);
  trace.push_back(-static_cast<int>(row) - 1);
}

template <std::size_t... rows>
constexpr std::array<ModuleStep, sizeof...(rows)> TracedRows(std::index_sequence<rows...>) {
  return {ModuleStep{L"traced", StartRow<rows>, StopRow<rows>}...};
}

constexpr auto kTracedRows = TracedRows(std::make_index_sequence<kMostRows>());

// Whether the table starts as far as the failing row, and the rows so far are stopped in the reverse order.
bool StartsAndStops() {
  const auto steps = std::span(kTracedRows).first(ModuleSteps().size());
  trace.clear();
  try {
    StartModule(steps);
    StopModule(steps);
  } catch (const EAssertionFailed& failure) {
    std::printf("%ls\n", failure.Message().c_str());
    return false;
  } catch (const Exception&) {
    if (failingRow >= steps.size()) return false;
  }
  const std::size_t started = std::min(failingRow, steps.size());
  if (trace.size() != 2 * started) return false;
  for (std::size_t i = 0; i < started; ++i) {
    if (trace[i] != static_cast<int>(i) + 1 || trace[trace.size() - 1 - i] != -trace[i]) return false;
  }
  return true;
}

// A process of its own: no test may have started the module.
SMH_CHILD(StartEveryPartOfTheTable) {
  if (ModuleSteps().size() > kMostRows) return 1;
  trace.reserve(2 * kMostRows);
  for (failingRow = 0; failingRow <= ModuleSteps().size(); ++failingRow) {
    if (LeavesNothing(StartsAndStops)) continue;
    std::printf("row %u\n", static_cast<unsigned>(failingRow));
    return 2;
  }
  return 0;
}

TEST(ModuleStartTest, ARowThatFailsLeavesNothingOfThoseBeforeIt) {
  const ChildResult result = RunChild(L"StartEveryPartOfTheTable");
  EXPECT_EQ(result.exitCode, 0u) << result.output;
}

}  // namespace
}  // namespace smh::test
