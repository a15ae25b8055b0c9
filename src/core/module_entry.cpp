#include "core/contracts/boundary_call.h"
#include "core/contracts/service_entry.h"
#include "core/module_start.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/ascii_text.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  return smh::RunModuleEntry(reason, reserved, smh::ModuleSteps(), smh::SaveLogAtProcessExit);
}

// The export; see GetInstanceFunction. No table of services: the one there is is made on first use.
extern "C" IUnknown* STDMETHODCALLTYPE GetInstance(const wchar_t* iid, DWORD /*reserved*/) {
  using namespace smh;
  return BoundaryValue(static_cast<IUnknown*>(nullptr), [&]() -> IUnknown* {
    return SameAsciiText(TextArgument(iid), IStartupManager::kId) ? Manager() : nullptr;
  });
}
