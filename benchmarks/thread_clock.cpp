#include "benchmarks/thread_clock.h"

#include <windows.h>

namespace smh::bench {

ThreadClock::time_point ThreadClock::now() noexcept {
  FILETIME times[4];
  GetThreadTimes(GetCurrentThread(), &times[0], &times[1], &times[2], &times[3]);
  const auto ticks = [](const FILETIME& time) {
    return static_cast<long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  };
  return time_point(duration(ticks(times[2]) + ticks(times[3])));
}

}  // namespace smh::bench
