// The benchmark library as all benchmark programs use it, and the rows of the table that ./bench prints.
#pragma once

#define CATCH_CONFIG_ENABLE_BENCHMARKING
#include <catch2/catch.hpp>

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>

namespace smh::bench {

// A goal that is none: the row is there for information.
inline constexpr double kNoGoal = 0;

// One row: what ours takes, what the reference takes, and the ratio that is meant at most.
void AddRow(const std::string& metric, const char* unit, double ours, double reference, double goal);

// A line beside the table.
void AddNote(const std::string& text);

// How long one run takes, in microseconds.
template <typename Run>
double Microseconds(Run&& run) {
  const auto timing = Catch::Benchmark::Detail::measure<std::chrono::steady_clock>([&] { run(); });
  return std::chrono::duration<double, std::micro>(timing.elapsed).count();
}

struct Pair {
  double ours;
  double reference;
};

// The shortest of `rounds` times each, taken in turns: whatever else the machine does only adds time, and
// hits both alike. Both callables run once unmeasured, then answer microseconds.
template <typename Ours, typename Reference>
Pair Alternate(int rounds, Ours&& ours, Reference&& reference) {
  ours();
  reference();
  Pair best{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
  for (int i = 0; i < rounds; ++i) {
    best.ours = std::min(best.ours, static_cast<double>(ours()));
    best.reference = std::min(best.reference, static_cast<double>(reference()));
  }
  return best;
}

// The same for two callables that only run, `times` times per measured time; answers the time of one run.
template <typename Ours, typename Reference>
Pair AlternateRuns(int rounds, int times, Ours&& ours, Reference&& reference) {
  const auto timed = [times](auto& run) {
    return [times, &run] {
      return Microseconds([&] {
               for (int i = 0; i < times; ++i) run();
             }) /
             times;
    };
  };
  return Alternate(rounds, timed(ours), timed(reference));
}

}  // namespace smh::bench
