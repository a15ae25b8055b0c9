// The statistics log "StartupManager.log": lines kept in memory for the module's life and saved as one
// UTF-16LE file. Any thread may call. Every call takes the log's lock, which may be entered under any of the
// model's: under it come only the siblings' lock and what a service takes. Before start-up and after
// shut-down nothing is logged.
#pragma once

#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/module_global.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace smh {

// Holds the log's lock, which is recursive, for a scope of one thread, so that lines stay together. Before
// start-up and after shut-down there is no log and nothing to hold.
class [[nodiscard]] LogScope {
 public:
  LogScope() noexcept;
  ~LogScope();
  LogScope(const LogScope&) = delete;
  LogScope& operator=(const LogScope&) = delete;
};

// Appends one line, given without its end. Raises std::bad_alloc.
void LogLine(std::wstring_view text);

// One line, put together from a format and its arguments; see FormatList, whose failures pass. Of a text
// among the arguments at most kLongestLogText code units are written, then how many it has; control
// characters and line ends in it stand as "\u{d}", so that no text makes a line of its own.
inline constexpr std::size_t kLongestLogText = 4096;
void LogFormatList(std::wstring_view format, std::initializer_list<FormatArgument> arguments);
template <typename... Arguments>
void LogFormat(std::wstring_view format, const Arguments&... arguments) {
  LogFormatList(format, {ToFormatArgument(arguments)...});
}

// One error record: class and message, and a stack trace when the crash reporter has one.
void LogError(const Exception& exception);
// As above for any exception in flight; call it inside a catch handler. An EAbort is not logged.
void LogCurrentException();
// A line of eighty "-".
void LogSeparator();
// Drops the lines collected so far; the file stays as it is until the next save.
void ClearLogLines();
// Keeps the names that a save at process exit uses; asks the services of basekit for them, and raises what
// they raise.
void FixLogFileNames();
// Replaces the file by all lines collected so far. A failure is swallowed; without a data folder there is no
// file.
void SaveLog() noexcept;
// The full path of the file, below the user's application data, empty when the user has none; asks the
// services of basekit.
std::wstring LogFilePath();

// The lock and the lines. While it is started a missing sibling is named in it.
struct StatisticsLog;
extern ModuleGlobal<StatisticsLog> g_statisticsLog;
// Process exit: other threads are gone and may have left the lock held. When it can be entered, the lines are
// written to the names kept by FixLogFileNames with kernel32 alone; nothing is allocated or freed.
void SaveLogAtProcessExit() noexcept;

}  // namespace smh
