// Whether Windows would start an entry, by what was read of its rules. Pure but for the item's lock.
#pragma once

#include "effective/windows_release.h"
#include "model/effective_states.h"

namespace smh {

// What the system says, as it was read at one time. Constant once it is shared.
struct SystemRules {
  WindowsRelease release;
};

// Any thread; takes the item's lock, allocates nothing.
EffectiveState Judge(const SystemRules& rules, const TStartupItem& item);

}  // namespace smh
