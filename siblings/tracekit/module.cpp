// The entry point and the one export of tracekit.dll.

#include "common/module_entry.h"
#include "common/service_table.h"
#include "tracekit/debug_log.h"

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
