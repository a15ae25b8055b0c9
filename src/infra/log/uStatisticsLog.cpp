#include "infra/log/uStatisticsLog.h"

#include "core/contracts/uDllGlobals.h"
#include "core/contracts/boundary_string.h"
#include "infra/log/crash_report.h"
#include "infra/runtime/critical_section.h"
#include "infra/log/statistics_log_store.h"
#include "infra/runtime/text.h"

#include <cstring>

namespace smh {

namespace {

struct Log {
  // Serialises every write and every save, the file's writing included. Entered under the model's locks;
  // under it come the service cache's lock and what that takes, and no other.
  CriticalSection lock;
  LogText text;
  // The line that is being put together; keeps its memory from line to line.
  std::wstring line;
  // Empty until the first block was written.
  LogFileNames exitNames;
};

Log* g_log = nullptr;

LogFileNames CurrentLogFileNames() {
  LogFileNames names{LogFilePath(), {}};
  names.unfinished = names.file + L".new";
  return names;
}

std::wstring WidenAscii(const char* text) {
  return std::wstring(text, text + std::strlen(text));
}

}  // namespace

LogScope::LogScope() noexcept {
  if (g_log != nullptr) g_log->lock.Enter();
}

LogScope::~LogScope() {
  if (g_log != nullptr) g_log->lock.Leave();
}

void ClearLogLines() {
  const LogScope scope;
  if (g_log != nullptr) g_log->text.Clear();
}

void FixLogFileNames() {
  const LogScope scope;
  if (g_log != nullptr) g_log->exitNames = CurrentLogFileNames();
}

void LogSeparator() {
  LogLine(std::wstring(80, L'-'));
}

void LogLine(std::wstring_view text) {
  const LogScope scope;
  if (g_log != nullptr) g_log->text.AddLine(text);
}

void LogFormatList(std::wstring_view format, std::initializer_list<FormatArgument> arguments) {
  const LogScope scope;
  if (g_log == nullptr) return;
  g_log->line.clear();
  AppendFormatList(g_log->line, format, arguments);
  g_log->text.AddLine(g_log->line);
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
  const LogScope scope;
  if (g_log == nullptr) return;
  // A failure is swallowed: the log must not stop what it reports on, and the next save writes all lines.
  try {
    LogFileNames names = CurrentLogFileNames();
    WriteLogFile(names, g_log->text);
  } catch (const std::exception&) {
  }
}

void StartStatisticsLog() {
  g_log = new Log;
}

void StopStatisticsLog() noexcept {
  delete g_log;
  g_log = nullptr;
}

void SaveLogAtProcessExit() noexcept {
  if (g_log == nullptr || !g_log->lock.TryEnter()) return;
  if (!g_log->exitNames.file.empty()) WriteLogFile(g_log->exitNames, g_log->text);
  g_log->lock.Leave();
}

}  // namespace smh
