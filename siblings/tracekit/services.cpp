#include "core/contracts/boundary_call.h"
#include "core/contracts/com_object.h"
#include "core/contracts/intf_DebugLog.h"
#include "infra/files/folder_access.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/module_global.h"
#include "siblings/common/module.h"
#include "siblings/common/product.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cwchar>
#include <string>
#include <string_view>

namespace smh {

namespace {

constexpr wchar_t kByteOrderMark = L'\xFEFF';

// One write at the file's end: the lines of several processes do not mix.
void Write(HANDLE file, std::wstring_view text) {
  const DWORD size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  DWORD written = 0;
  if (WriteFile(file, text.data(), size, &written, nullptr) == FALSE) RaiseLastOSError();
}

ScopedHandle OpenTraceFile() {
  const std::wstring dataFolder = DataFolder();
  if (dataFolder.empty()) RaiseOSError(ERROR_PATH_NOT_FOUND);
  std::wstring folder = dataFolder + L"Logs\\";
  MakeFolders(folder);
  const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  ScopedHandle file(CreateFileW((folder + L"debug.log").c_str(), FILE_APPEND_DATA, sharing, nullptr,
                                OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  const DWORD opened = GetLastError();
  if (!file) RaiseOSError(opened);
  if (opened != ERROR_ALREADY_EXISTS) Write(file.Get(), {&kByteOrderMark, 1});
  return file;
}

// The trace file "debug.log" in the "Logs" folder of the data folder: UTF-16LE with a byte-order mark and
// CRLF line ends, only ever appended to. Any thread may call it; lines of several processes do not mix.
class TraceFile {
 public:
  // Appends one line, which holds no line end, and makes folders and file with the first one. Raises
  // EOSError: a file that could not be opened is tried again with the next line, one that could not be
  // written to stays open.
  void Append(std::wstring_view line);

 private:
  // A leaf, held while a line is written.
  CriticalSection lock_;
  ScopedHandle file_ SMH_GUARDED_BY(lock_);
};

void TraceFile::Append(std::wstring_view line) {
  const std::wstring text = std::wstring(line).append(L"\r\n");
  const ScopedLock guard(lock_);
  if (!file_) file_ = OpenTraceFile();
  Write(file_.Get(), text);
}

// A slot of thread local storage that counts the methods a thread has entered.
class ThreadDepth {
 public:
  ThreadDepth() : slot_(TlsAlloc()) {
    if (slot_ == TLS_OUT_OF_INDEXES) RaiseLastOSError();
  }
  ~ThreadDepth() { TlsFree(slot_); }
  ThreadDepth(const ThreadDepth&) = delete;
  ThreadDepth& operator=(const ThreadDepth&) = delete;

  std::size_t Get() const noexcept { return reinterpret_cast<std::size_t>(TlsGetValue(slot_)); }
  void Set(std::size_t depth) const noexcept { TlsSetValue(slot_, reinterpret_cast<void*>(depth)); }

 private:
  DWORD slot_;
};

// The trace's file, switch and nesting, which live from the module's start to its stop.
struct Trace {
  TraceFile file;
  ThreadDepth depth;
  std::atomic<bool> enabled{true};
};

constinit ModuleGlobal<Trace> g_trace(L"tracekit");

// A runaway recursion stays readable.
constexpr std::size_t kDeepestIndent = 40;

std::wstring LinePrefix(std::size_t depth) {
  SYSTEMTIME now;
  GetLocalTime(&now);
  wchar_t text[48];
  std::swprintf(text, std::size(text), L"%04u-%02u-%02u %02u:%02u:%02u.%03u %08lx ", now.wYear, now.wMonth,
                now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds, GetCurrentThreadId());
  return std::wstring(text).append(2 * std::min(depth, kDeepestIndent), L' ');
}

std::wstring ContextText(const void* context) {
  wchar_t text[16];
  std::swprintf(text, std::size(text), L" [%08lx]",
                static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(context)));
  return text;
}

std::wstring ArgumentList(const wchar_t* const* args, std::int32_t count) {
  std::wstring list(1, L'(');
  for (std::int32_t i = 0; args != nullptr && i < count; ++i) {
    if (i > 0) list += L", ";
    list += TextArgument(args[i]);
  }
  return list.append(1, L')');
}

void WriteLine(std::size_t depth, std::wstring_view text) {
  std::wstring line = LinePrefix(depth).append(text);
  const auto isControl = [](wchar_t unit) { return unit < L' '; };
  std::ranges::replace_if(line, isControl, L' ');
  g_trace->file.Append(line);
}

// The object behind tracekit's service. Output is on from the start: the library is loaded only when debug
// mode is on, and whoever loaded it then just traces; SetEnabled switches it off and on again.
//
// Any thread may call. One line per call: local time, thread, two blanks per method that the thread has
// entered (forty at most), and "> name(args) [context]", "< [context]" or the message. Line ends and other
// control characters become blanks. A line that cannot be written is the failure of its call.
class DebugLog final : public ServiceObject<IDebugLog> {
 public:
  HRESULT STDMETHODCALLTYPE EnterMethod(const void* context, const wchar_t* name, const wchar_t* const* args,
                                        std::int32_t count) override;
  HRESULT STDMETHODCALLTYPE ExitMethod(const void* context) override;
  HRESULT STDMETHODCALLTYPE Message(const wchar_t* text) override;
  HRESULT STDMETHODCALLTYPE SetEnabled(std::int32_t enabled) override;
};

// The nesting is counted while the output is off too, so that switching it on does not shift the indentation.
HRESULT DebugLog::EnterMethod(const void* context, const wchar_t* name, const wchar_t* const* args,
                              std::int32_t count) {
  return GuardedResult([&] {
    const std::size_t depth = g_trace->depth.Get();
    g_trace->depth.Set(depth + 1);
    if (!g_trace->enabled) return;
    std::wstring text = L"> ";
    text.append(TextArgument(name)).append(ArgumentList(args, count)).append(ContextText(context));
    WriteLine(depth, text);
  });
}

// An exit without its entry stays at the left margin.
HRESULT DebugLog::ExitMethod(const void* context) {
  return GuardedResult([&] {
    const std::size_t depth = std::max<std::size_t>(g_trace->depth.Get(), 1) - 1;
    g_trace->depth.Set(depth);
    if (g_trace->enabled) WriteLine(depth, std::wstring(1, L'<').append(ContextText(context)));
  });
}

HRESULT DebugLog::Message(const wchar_t* text) {
  return GuardedResult([&] {
    if (g_trace->enabled) WriteLine(g_trace->depth.Get(), TextArgument(text));
  });
}

HRESULT DebugLog::SetEnabled(std::int32_t enabled) {
  return GuardedResult([&] { g_trace->enabled = enabled != 0; });
}

constinit DebugLog debugLog;

constinit const ServiceRow kServices[] = {{IDebugLog::kId, &debugLog}};

constexpr ModuleStep kSteps[] = {StepOf<g_trace>(L"trace")};

}  // namespace

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return kSteps;
}

}  // namespace smh
