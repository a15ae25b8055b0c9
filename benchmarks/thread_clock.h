// Processor time, for what must not depend on what else the machine does.
#pragma once

#include "benchmarks/bench.h"

namespace smh::bench {

// The calling thread's processor time, in ticks of ten milliseconds under Wine; what other programs do does
// not count.
struct ThreadClock {
  using duration = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<ThreadClock>;
  static constexpr bool is_steady = true;
  static time_point now() noexcept;
};

// Processor time of one run, in microseconds, by as many runs as half a second takes.
template <typename Run>
double ProcessorMicroseconds(Run&& run) {
  int runs = 0;
  const auto timing = Catch::Benchmark::Detail::measure<ThreadClock>([&] {
    const auto end = ThreadClock::now() + std::chrono::milliseconds(500);
    for (; ThreadClock::now() < end; ++runs) run();
  });
  return std::chrono::duration<double, std::micro>(timing.elapsed).count() / runs;
}

}  // namespace smh::bench
