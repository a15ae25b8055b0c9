#include "infra/log/uStatisticsLog.h"

#include "core/contracts/boundary_string.h"
#include "core/contracts/uDllGlobals.h"
#include "infra/log/crash_report.h"
#include "infra/log/log_file.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/text.h"
#include "infra/siblings/missing_sibling.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>

namespace smh {

namespace {

void ReportMissingSibling(const std::wstring& text) noexcept;

}  // namespace

struct StatisticsLog {
  StatisticsLog() noexcept { SetMissingSiblingReport(ReportMissingSibling); }
  ~StatisticsLog() { SetMissingSiblingReport(nullptr); }
  StatisticsLog(const StatisticsLog&) = delete;
  StatisticsLog& operator=(const StatisticsLog&) = delete;

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

// Empty without a data folder: the path would begin at the root of the current drive.
LogFileNames CurrentLogFileNames() {
  IGlobals& globals = DLLGlobals::Globals();
  LogFileNames names;
  names.file = TakeText([](BoundaryText* text) { return DLLGlobals::Helper().GetBaseFolder(text); });
  if (names.file.empty()) return names;
  names.file = WithTrailingBackslash(names.file);
  names.base = names.file.size();
  names.file +=
      WithTrailingBackslash(TakeText([&](BoundaryText* text) { return globals.GetVendorName(text); }));
  names.file +=
      WithTrailingBackslash(TakeText([&](BoundaryText* text) { return globals.GetProductName(text); }));
  names.file += L"Logs\\StartupManager.log";
  names.unfinished = names.file + L".new";
  return names;
}

// Whether it would end a line, or show as something else than itself.
bool IsControl(wchar_t unit) noexcept {
  return unit < L' ' || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

void InsertLogText(std::wstring& line, std::wstring_view text) {
  std::wstring_view shown = text.substr(0, kLongestLogText);
  // Both halves of a pair, or none.
  if (shown.size() < text.size() && IS_HIGH_SURROGATE(shown.back())) shown.remove_suffix(1);
  for (auto next = shown.begin(); next != shown.end();) {
    const auto end = std::find_if(next, shown.end(), IsControl);
    line.append(next, end);
    next = end;
    if (end == shown.end()) break;
    wchar_t escape[16];
    std::swprintf(escape, std::size(escape), L"\\u{%x}", static_cast<unsigned>(*next++));
    line += escape;
  }
  if (shown.size() < text.size())
    line.append(L"... (").append(std::to_wstring(text.size())).append(L" units)");
}

// The siblings' lock is held, which others take under this one.
void ReportMissingSibling(const std::wstring& text) noexcept {
  if (!g_statisticsLog->lock.TryEnter()) return;
  try {
    LogFormat(L"%s", text);
  } catch (const std::exception&) {
    // Standard error has it.
  }
  g_statisticsLog->lock.Leave();
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
  AppendFormatList(g_statisticsLog->line, format, arguments, InsertLogText);
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
  return CurrentLogFileNames().file;
}

void SaveLog() noexcept {
  if (!g_statisticsLog.IsStarted()) return;
  const ScopedLock held(g_statisticsLog->lock);
  // A failure is swallowed: the log must not stop what it reports on, and the next save writes all lines.
  try {
    LogFileNames names = CurrentLogFileNames();
    if (!names.file.empty()) WriteLogFile(names, g_statisticsLog->text);
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
