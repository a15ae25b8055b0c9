#include "tests/proofs/change_trace.h"

#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/registry_place.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace smh::test {

namespace {

std::mutex g_lock;
std::vector<TracedCall> g_calls;

// Of this thread; null outside of a change.
thread_local TracedChange* t_change = nullptr;

// This source's own imports are patched too: the platform's functions are called past them.
template <typename Function>
Function* System(const char* name) {
  return RealFunction<Function>(L"advapi32.dll", name);
}

std::wstring ReadContent(HKEY key, const wchar_t* name) {
  BYTE bytes[1024];
  DWORD size = sizeof(bytes);
  const LSTATUS status =
      System<decltype(RegQueryValueExW)>("RegQueryValueExW")(key, name, nullptr, nullptr, bytes, &size);
  return status == ERROR_SUCCESS ? ContentOf(bytes, size) : std::wstring();
}

template <typename Call>
LSTATUS Trace(HKEY key, const wchar_t* name, std::wstring written, Call&& call) {
  if (t_change == nullptr) return call();
  TracedCall traced;
  traced.change = t_change->number;
  traced.place = ValuePlace(key, name);
  traced.written = std::move(written);
  traced.seen = t_change->seen[traced.place];
  traced.isLastLook = t_change->lookedAt == traced.place;
  traced.begin = Now();
  traced.stood = ReadContent(key, name);
  const LSTATUS status = call();
  traced.end = Now();
  if (status == ERROR_SUCCESS) {
    const std::lock_guard lock(g_lock);
    g_calls.push_back(std::move(traced));
  }
  return status;
}

LSTATUS WINAPI TraceSet(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                        DWORD size) {
  return Trace(key, name, ContentOf(data, size), [&] {
    return System<decltype(RegSetValueExW)>("RegSetValueExW")(key, name, reserved, type, data, size);
  });
}

LSTATUS WINAPI TraceDelete(HKEY key, const wchar_t* name) {
  return Trace(key, name, {},
               [&] { return System<decltype(RegDeleteValueW)>("RegDeleteValueW")(key, name); });
}

LSTATUS WINAPI TraceQuery(HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* data,
                          DWORD* size) {
  const LSTATUS status =
      System<decltype(RegQueryValueExW)>("RegQueryValueExW")(key, name, reserved, type, data, size);
  if (t_change == nullptr) return status;
  const bool isRead = status == ERROR_SUCCESS && data != nullptr;
  if (!isRead && status != ERROR_FILE_NOT_FOUND) return status;
  t_change->lookedAt = ValuePlace(key, name);
  t_change->seen[t_change->lookedAt] = isRead ? ContentOf(data, *size) : std::wstring();
  return status;
}

}  // namespace

std::wstring ContentOf(const void* bytes, DWORD size) {
  const std::wstring units(static_cast<const wchar_t*>(bytes), size / sizeof(wchar_t));
  return units.substr(0, units.find(L'\0'));
}

std::wstring ValuePlace(HKEY key, const wchar_t* name) {
  std::wstring place;
  try {
    place = PlaceOf(key) + L'\\' + (name == nullptr ? L"" : name);
  } catch (const Exception&) {
    // Of a root where no entry lies.
    return {};
  }
  std::ranges::transform(place, place.begin(), [](wchar_t unit) { return towlower(unit); });
  return place;
}

long long Now() {
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return now.QuadPart;
}

ChangeTrace::ChangeTrace(std::initializer_list<HMODULE> modules) {
  Take();
  for (const HMODULE module : modules) {
    patches_.push_back(std::make_unique<ImportPatch>("RegSetValueExW", TraceSet, module));
    patches_.push_back(std::make_unique<ImportPatch>("RegDeleteValueW", TraceDelete, module));
    patches_.push_back(std::make_unique<ImportPatch>("RegQueryValueExW", TraceQuery, module));
  }
}

ChangeTrace::~ChangeTrace() = default;

TracedChange::TracedChange(int theNumber) : number(theNumber) {
  t_change = this;
}

TracedChange::~TracedChange() {
  t_change = nullptr;
}

std::vector<TracedCall> ChangeTrace::Take() {
  const std::lock_guard lock(g_lock);
  return std::exchange(g_calls, {});
}

}  // namespace smh::test
