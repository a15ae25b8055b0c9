// The entry point of a sibling that has state: its DllMain is one call of RunModuleEntry.
#pragma once

#include "infra/runtime/module_steps.h"

#include <windows.h>

namespace smh {

// Starts the steps on attach; false when one fails, and the module does not load. On FreeLibrary the steps
// are stopped; at process exit nothing is touched, because the other threads are gone and may have left locks
// held.
BOOL RunModuleEntry(DWORD reason, const void* reserved, std::span<const ModuleStep> steps) noexcept;

}  // namespace smh
