// The module's start-up and shut-down.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "infra/runtime/module_steps.h"

#include <span>

namespace smh {

// In the order of starting; shut-down runs backwards. The table is constant and valid for ever; DllMain alone
// runs it.
std::span<const ModuleStep> ModuleSteps() noexcept;

// The process's one manager, made on first use and borrowed by the caller; released when the module stops.
// The first call is expected from one thread, outside DllMain: it opens the log session. Raises what that
// raises.
IStartupManager* Manager();

}  // namespace smh
