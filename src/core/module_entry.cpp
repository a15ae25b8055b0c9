#include "core/contracts/boundary_call.h"
#include "core/module_start.h"
#include "infra/runtime/ascii_text.h"
#include "infra/log/uStatisticsLog.h"

#include <windows.h>

// The export; see GetInstanceFunction.
extern "C" IUnknown* STDMETHODCALLTYPE GetInstance(const wchar_t* iid, DWORD) {
  using namespace smh;
  return BoundaryValue(static_cast<IUnknown*>(nullptr), [&]() -> IUnknown* {
    return SameAsciiText(TextArgument(iid), IStartupManager::kId) ? Manager() : nullptr;
  });
}

namespace {

// A detach also follows an attach that failed.
bool g_started = false;

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  using namespace smh;
  try {
    if (reason == DLL_PROCESS_ATTACH) {
      StartModule(ModuleSteps());
      g_started = true;
    }
  } catch (...) {
    return FALSE;
  }
  if (reason == DLL_PROCESS_DETACH && g_started) {
    // At process exit the other threads are gone, wherever they were: nothing is destroyed or freed.
    if (reserved != nullptr) {
      SaveLogAtProcessExit();
    } else {
      StopModule(ModuleSteps());
    }
  }
  return TRUE;
}
