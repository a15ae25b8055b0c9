#include "siblings/tracekit/debug_log.h"

#include "core/contracts/boundary_call.h"
#include "infra/runtime/exceptions.h"
#include "siblings/tracekit/trace_file.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cwchar>
#include <string>

namespace smh {

namespace {

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

}  // namespace

struct Trace {
  TraceFile file;
  ThreadDepth depth;
  std::atomic<bool> enabled{true};
};

constinit ModuleGlobal<Trace> g_trace(L"debug_log");

namespace {

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

}  // namespace

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

}  // namespace smh
