// The entry point and the one export of tracekit.dll.

#include "siblings/common/module_entry.h"
#include "core/contracts/service_table.h"
#include "siblings/tracekit/debug_log.h"

namespace smh {

namespace {

constinit DebugLog debugLog;

constinit const ServiceRow kServices[] = {{IDebugLog::kId, &debugLog}};

constexpr ModuleStep kSteps[] = {{L"trace", StartTrace, [](StopMode&) noexcept { StopTrace(); }}};

}  // namespace

}  // namespace smh

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  return smh::RunModuleEntry(reason, reserved, smh::kSteps);
}

extern "C" void* __stdcall GetInstance(const wchar_t* id, DWORD /*param*/) {
  return smh::FindService(smh::kServices, id);
}
