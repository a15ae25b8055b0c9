#include "siblings/common/module_entry.h"

#include "core/contracts/guard.h"

namespace smh {

BOOL RunModuleEntry(DWORD reason, const void* reserved, std::span<const ModuleStep> steps) noexcept {
  if (reason == DLL_PROCESS_ATTACH) return SUCCEEDED(Guarded([&] { StartModule(steps); })) ? TRUE : FALSE;
  if (reason == DLL_PROCESS_DETACH && reserved == nullptr) StopModule(steps);
  return TRUE;
}

}  // namespace smh
