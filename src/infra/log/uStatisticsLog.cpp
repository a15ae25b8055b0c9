#include "infra/log/uStatisticsLog.h"

#include "core/contracts/boundary_string.h"
#include "core/contracts/uDllGlobals.h"
#include "infra/log/crash_report.h"
#include "infra/log/log_file.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/text.h"

#include <cstring>

namespace smh {

struct StatisticsLog {
  // Serialises every write and every save, the file's writing included. Entered under the model's locks;
  // under it come the siblings' lock and what that takes, and no other.
  CriticalSection lock;
  LogText text SMH_GUARDED_BY(lock);
  // The line that is being put together; keeps its memory from line to line.
  std::wstring line SMH_GUARDED_BY(lock);
  // Empty until the first block was written.
  LogFileNames exitNames SMH_GUARDED_BY(lock);
};

constinit ModuleGlobal<StatisticsLog> g_statisticsLog(L"uStatisticsLog");

namespace {

LogFileNames CurrentLogFileNames() {
  LogFileNames names{LogFilePath(), {}};
  names.unfinished = names.file + L".new";
  return names;
}

std::wstring WidenAscii(const char* text) {
  return std::wstring(text, text + std::strlen(text));
}

}  // namespace

LogScope::LogScope() noexcept SMH_UNCHECKED_LOCKS {  // only while there is a log
  if (g_statisticsLog.IsStarted()) g_statisticsLog->lock.Enter();
}

LogScope::~LogScope() SMH_UNCHECKED_LOCKS {  // as the constructor
  if (g_statisticsLog.IsStarted()) g_statisticsLog->lock.Leave();
}

void ClearLogLines() {
  if (!g_statisticsLog.IsStarted()) return;
  const ScopedLock held(g_statisticsLog->lock);
  g_statisticsLog->text.Clear();
}

void FixLogFileNames() {
  if (!g_statisticsLog.IsStarted()) return;
  const ScopedLock held(g_statisticsLog->lock);
  g_statisticsLog->exitNames = CurrentLogFileNames();
}

void LogSeparator() {
  LogLine(std::wstring(80, L'-'));
}

void LogLine(std::wstring_view text) {
  if (!g_statisticsLog.IsStarted()) return;
  const ScopedLock held(g_statisticsLog->lock);
  g_statisticsLog->text.AddLine(text);
}

void LogFormatList(std::wstring_view format, std::initializer_list<FormatArgument> arguments) {
  if (!g_statisticsLog.IsStarted()) return;
  const ScopedLock held(g_statisticsLog->lock);
  g_statisticsLog->line.clear();
  AppendFormatList(g_statisticsLog->line, format, arguments);
  g_statisticsLog->text.AddLine(g_statisticsLog->line);
}

void LogError(const Exception& exception) {
  const LogScope scope;
  LogSeparator();
  LogFormat(L"Error class   : %s", exception.ClassName());
  LogFormat(L"Error message : %s", exception.Message());
  const std::wstring trace = CrashStackTrace();
  if (!trace.empty()) {
    LogLine({});
    LogLine(trace);
  }
  LogSeparator();
}

void LogCurrentException() {
  try {
    throw;
  } catch (const EAbort&) {
    // Quiet: not an error.
  } catch (const Exception& exception) {
    LogError(exception);
  } catch (const std::exception& exception) {
    LogError(Exception(WidenAscii(exception.what())));
  } catch (...) {
    LogError(Exception(L"Unknown exception"));
  }
}

std::wstring LogFilePath() {
  IHelper& helper = DLLGlobals::Helper();
  IGlobals& globals = DLLGlobals::Globals();
  std::wstring path =
      WithTrailingBackslash(TakeText([&](BoundaryText* text) { return helper.GetBaseFolder(text); }));
  path += WithTrailingBackslash(TakeText([&](BoundaryText* text) { return globals.GetVendorName(text); }));
  path += WithTrailingBackslash(TakeText([&](BoundaryText* text) { return globals.GetProductName(text); }));
  return path.append(L"Logs\\StartupManager.log");
}

void SaveLog() noexcept {
  if (!g_statisticsLog.IsStarted()) return;
  const ScopedLock held(g_statisticsLog->lock);
  // A failure is swallowed: the log must not stop what it reports on, and the next save writes all lines.
  try {
    LogFileNames names = CurrentLogFileNames();
    WriteLogFile(names, g_statisticsLog->text);
  } catch (const std::exception&) {
  }
}

void SaveLogAtProcessExit() noexcept {
  if (!g_statisticsLog.IsStarted() || !g_statisticsLog->lock.TryEnter()) return;
  if (!g_statisticsLog->exitNames.file.empty())
    WriteLogFile(g_statisticsLog->exitNames, g_statisticsLog->text);
  g_statisticsLog->lock.Leave();
}

}  // namespace smh
