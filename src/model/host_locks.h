// The end of the module while the host's threads may still be inside.
#pragma once

#include "infra/runtime/module_steps.h"

namespace smh {

// At unload, with the loader's lock held, when no reader runs any more: waits until no change is under way
// and nobody has the list. A thread of the host that keeps, or died with, one of these locks beyond the time
// limit breaks the mode: what follows would wait for it, or take away what it uses. What the caller itself
// holds of the list is given up: it cannot come back to do that.
void AwaitHostsAtUnload(StopMode& mode) noexcept;

}  // namespace smh
