// What the parts of the statistics log share.
#pragma once

#include "infra/log/log_file.h"

namespace smh {

// Holds the log's lock for a scope. Before start-up and after shut-down there is no log and nothing to hold.
class [[nodiscard]] LogScope {
 public:
  LogScope() noexcept;
  ~LogScope();
  LogScope(const LogScope&) = delete;
  LogScope& operator=(const LogScope&) = delete;
};

void ClearLogLines();
// Keeps the names that a save at process exit uses.
void FixLogFileNames();
void LogSeparator();

}  // namespace smh
