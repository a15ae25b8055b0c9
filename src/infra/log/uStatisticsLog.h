// The statistics log "StartupManager.log": lines kept in memory for the module's life and saved as one
// UTF-16LE file. Any thread may call. Every call takes the log's lock, which may be entered under any of the
// model's: under it come only the siblings' lock and what a service takes. Before start-up and after
// shut-down nothing is logged.
#pragma once

#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/module_global.h"

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

// Appends one line, given without its end. Raises std::bad_alloc.
void LogLine(std::wstring_view text);

// One line, put together from a format and its arguments; see FormatList, whose failures pass.
void LogFormatList(std::wstring_view format, std::initializer_list<FormatArgument> arguments);
template <typename... Arguments>
void LogFormat(std::wstring_view format, const Arguments&... arguments) {
  LogFormatList(format, {ToFormatArgument(arguments)...});
}

// One error record: class and message, and a stack trace when the crash reporter has one.
void LogError(const Exception& exception);
// As above for any exception in flight; call it inside a catch handler. An EAbort is not logged.
void LogCurrentException();
// Empties the log and writes the machine, user and version block and the Run keys, while the lock is held.
// Also fixes the path that a save at process exit uses. Initialises COM for the time of the call.
void LogSystemInfo();
// Dumps the values of a key, with `recurse` those of the keys below it too, but for links. `view` is 0 or
// KEY_WOW64_64KEY, `root` a predefined key. Nothing for a key that cannot be opened; raises EOSError when it
// cannot be read to its end.
void LogRegistryKey(REGSAM view, HKEY root, bool recurse, const std::wstring& key);
// Replaces the file by all lines collected so far. A failure is swallowed.
void SaveLog() noexcept;
// The full path of the file, below the user's application data; asks the services of basekit.
std::wstring LogFilePath();

// The lock and the lines.
struct StatisticsLog;
extern ModuleGlobal<StatisticsLog> g_statisticsLog;
// Process exit: other threads are gone and may have left the lock held. When it can be entered, the lines are
// written to the path fixed by LogSystemInfo with kernel32 alone; nothing is allocated or freed.
void SaveLogAtProcessExit() noexcept;

}  // namespace smh
