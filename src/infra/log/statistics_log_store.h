// What the parts of the statistics log share.
#pragma once

#include "infra/log/log_file.h"

namespace smh {

// Holds the log's lock, which is recursive, for a scope of one thread. Before start-up and after shut-down
// there is no log and nothing to hold.
class [[nodiscard]] LogScope {
 public:
  LogScope() noexcept;
  ~LogScope();
  LogScope(const LogScope&) = delete;
  LogScope& operator=(const LogScope&) = delete;
};

// Each takes the lock itself.
void ClearLogLines();
// Keeps the names that a save at process exit uses; asks the services for them.
void FixLogFileNames();
// A line of eighty "-".
void LogSeparator();

}  // namespace smh
