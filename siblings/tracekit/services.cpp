#include "core/contracts/boundary_call.h"
#include "core/contracts/com_object.h"
#include "core/contracts/intf_DebugLog.h"
#include "infra/files/own_file.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/thread_slot.h"
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

constexpr std::uint64_t kMostBytes = std::uint64_t{16} << 20;
constexpr DWORD kKeptBytes = DWORD{8} << 20;
constexpr wchar_t kNote[] = L"(Older lines are not kept.)\r\n";
constexpr std::size_t kLongestLine = 16'384;
constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::uint64_t SizeOf(HANDLE file) noexcept {
  LARGE_INTEGER size = {};
  GetFileSizeEx(file, &size);
  return static_cast<std::uint64_t>(size.QuadPart);
}

// Leaves the newest lines of a file that has no room for so many bytes. Lines that other processes write in
// that moment may go, too.
void MakeRoom(const std::wstring& path, std::size_t bytes) {
  const ScopedHandle file = OpenOwnFile(path, GENERIC_READ | GENERIC_WRITE, kSharing, OPEN_EXISTING);
  const std::uint64_t size = file ? SizeOf(file.Get()) : 0;
  if (size + bytes <= kMostBytes) return;
  std::wstring kept(kKeptBytes / sizeof(wchar_t), L'\0');
  DWORD read = 0;
  LARGE_INTEGER from;
  from.QuadPart = static_cast<LONGLONG>((size - kKeptBytes) & ~std::uint64_t{1});
  SetFilePointerEx(file.Get(), from, nullptr, FILE_BEGIN);
  if (ReadFile(file.Get(), kept.data(), kKeptBytes, &read, nullptr) == FALSE) RaiseLastOSError();
  kept.resize(read / sizeof(wchar_t));
  // From a whole line on; without any, nothing.
  kept.erase(0, std::min(kept.find(L'\n'), kept.size() - 1) + 1);
  SetFilePointer(file.Get(), 0, nullptr, FILE_BEGIN);
  Write(file.Get(), std::wstring(1, kByteOrderMark).append(kNote).append(kept));
  SetEndOfFile(file.Get());
}

ScopedHandle OpenTraceFile(std::size_t bytes) {
  std::wstring path = DataFolder();
  if (path.empty()) RaiseOSError(ERROR_PATH_NOT_FOUND);
  const std::size_t base = path.size() - kVendorName.size() - kProductName.size() - 2;
  path += L"Logs\\debug.log";
  const HeldFolders folders(path, base);
  if (!folders.AreHeld()) RaiseOSError(ERROR_CANT_ACCESS_FILE);
  MakeRoom(path, bytes);
  ScopedHandle file = OpenOwnFile(path, FILE_APPEND_DATA, kSharing, OPEN_ALWAYS);
  const DWORD opened = GetLastError();
  if (!file) RaiseOSError(opened);
  if (SizeOf(file.Get()) + bytes > kMostBytes) RaiseOSError(ERROR_FILE_TOO_LARGE);
  if (opened != ERROR_ALREADY_EXISTS) Write(file.Get(), {&kByteOrderMark, 1});
  return file;
}

// The trace file "debug.log" in the "Logs" folder of the data folder: UTF-16LE with a byte-order mark and
// CRLF line ends, of at most 16 MB: then the older half goes, and a first line says so. Any thread may call
// it; lines of several processes do not mix.
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
  const std::wstring text = std::wstring(line.substr(0, kLongestLine)).append(L"\r\n");
  const std::size_t bytes = text.size() * sizeof(wchar_t);
  const ScopedLock guard(lock_);
  if (file_ && SizeOf(file_.Get()) + bytes > kMostBytes) file_.Reset();
  if (!file_) file_ = OpenTraceFile(bytes);
  Write(file_.Get(), text);
}

// Counts the methods that a thread has entered, in the slot's pointer itself.
class ThreadDepth {
 public:
  std::size_t Get() const noexcept { return reinterpret_cast<std::size_t>(slot_.Get()); }
  void Set(std::size_t depth) const noexcept { slot_.TrySet(reinterpret_cast<void*>(depth)); }

 private:
  const ThreadSlot<void> slot_;
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
