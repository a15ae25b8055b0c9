// The memory-leak report of debug mode: what lives when the module stops, beside what lived when it started.
#pragma once

#include <string>

namespace smh {

struct LiveCounts {
  // Blocks of the C runtime's heap, which the module shares with whoever uses the same runtime. A heap may
  // keep small blocks in groups and show a group as one.
  int blocks = 0;
  // Handles of the process; 0 where Windows cannot tell.
  int handles = 0;
};

// Walks the heap under its lock: costs time, and is for debug mode only. Any thread, the loader's lock
// included.
LiveCounts CountLive() noexcept;

// One line, for any thread; raises std::bad_alloc. A growth of both counts, life after life of the module, is
// a leak.
std::wstring LeakReport(const LiveCounts& atStart, const LiveCounts& atStop);

}  // namespace smh
