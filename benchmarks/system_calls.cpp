#include "benchmarks/system_calls.h"

#include "tests/support/import_patch.h"

#include <shellapi.h>

#include <cstring>
#include <numeric>
#include <stdexcept>

namespace smh::bench {

namespace {

constexpr const char* kNames[] = {
#define SMH_CALL(name) #name,
    SMH_SYSTEM_CALLS(SMH_CALL)
#undef SMH_CALL
};

// Not the address that the compiler knows: it may be a jump through the import that is patched.
FARPROC RealFunction(const char* name) {
  for (const wchar_t* const library :
       {L"advapi32.dll", L"kernel32.dll", L"version.dll", L"shell32.dll", L"ntdll.dll"}) {
    if (const FARPROC function = GetProcAddress(GetModuleHandleW(library), name)) return function;
  }
  throw std::runtime_error(std::string("unknown function: ").append(name));
}

template <typename Gate>
void Patch(const char* name, HMODULE module) {
  if (Gate::real == nullptr) {
    const FARPROC function = RealFunction(name);
    std::memcpy(&Gate::real, &function, sizeof(function));
    Gate::next = Gate::real;
  }
  try {
    // Kept on purpose: imports stay patched until the process ends.
    new test::ImportPatch(name, &Gate::Enter, module);
  } catch (const std::runtime_error&) {
    // Not every module imports every function.
  }
}

void PatchModule(HMODULE module) {
#define SMH_CALL(name) Patch<SMH_GATE(name)>(#name, module);
  SMH_SYSTEM_CALLS(SMH_CALL)
#undef SMH_CALL
}

}  // namespace

void CountSystemCalls(const std::vector<const wchar_t*>& modules) {
  PatchModule(nullptr);
  for (const wchar_t* const name : modules) {
    const HMODULE module = GetModuleHandleW(name);
    if (module == nullptr) throw std::runtime_error("a module whose calls are counted is not loaded");
    PatchModule(module);
  }
}

void ResetSystemCalls() noexcept {
  systemCallCounts.fill(0);
}

int TotalSystemCalls() noexcept {
  return std::accumulate(systemCallCounts.begin(), systemCallCounts.end(), 0);
}

int CountOf(SystemCall call) noexcept {
  return systemCallCounts[static_cast<std::size_t>(call)];
}

std::string SystemCallList() {
  std::string list;
  for (std::size_t i = 0; i < kSystemCallCount; ++i) {
    if (systemCallCounts[i] == 0) continue;
    if (!list.empty()) list += ", ";
    list.append(kNames[i]).append(1, ' ').append(std::to_string(systemCallCounts[i]));
  }
  return list;
}

}  // namespace smh::bench
