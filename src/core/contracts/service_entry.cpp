#include "core/contracts/service_entry.h"

#include "core/contracts/boundary_call.h"
#include "infra/runtime/ascii_text.h"

#include <algorithm>

namespace smh {

namespace {

// A detach also follows an attach that failed.
constinit bool g_started = false;

void Detach(bool processEnds, std::span<const ModuleStep> steps, void (*atProcessExit)() noexcept) noexcept {
  if (!g_started) return;
  if (!processEnds) {
    g_started = false;
    StopModule(steps);
  } else if (atProcessExit != nullptr) {
    atProcessExit();
  }
}

}  // namespace

IUnknown* FindService(std::span<const ServiceRow> services, const wchar_t* id) noexcept {
  if (id == nullptr) return nullptr;
  const auto row = std::ranges::find_if(
      services, [&](const ServiceRow& candidate) { return SameAsciiText(candidate.id, id); });
  return row == services.end() ? nullptr : row->service;
}

BOOL RunModuleEntry(DWORD reason, const void* reserved, std::span<const ModuleStep> steps,
                    void (*atProcessExit)() noexcept) noexcept {
  if (reason == DLL_PROCESS_ATTACH) g_started = SUCCEEDED(GuardedResult([&] { StartModule(steps); }));
  if (reason == DLL_PROCESS_DETACH) Detach(reserved != nullptr, steps, atProcessExit);
  return reason != DLL_PROCESS_ATTACH || g_started ? TRUE : FALSE;
}

}  // namespace smh
