// Whether Windows would start an entry, by what was read of its rules. Pure but for the item's lock.
#pragma once

#include "effective/extension_rules.h"
#include "effective/run_policies.h"
#include "effective/switch_lists.h"
#include "effective/windows_release.h"
#include "model/effective_states.h"

namespace smh {

// What the system says, as it was read at one time. Constant once it is shared.
struct SystemRules {
  // Nothing is known before.
  bool isRead = false;
  WindowsRelease release;
  // A 64-bit Windows.
  bool hasViews = false;
  SwitchLists switches;
  RunPolicies policies;
  // Empty unless extensions are read.
  ExtensionRules extensions;
};

// Unknown by rules that are not read. Any thread; takes the item's lock, allocates nothing.
EffectiveState Judge(const SystemRules& rules, const TStartupItem& item) noexcept;

// Whose switches an entry of that location has, and where it stands in the list.
LocationRoot SwitchRoot(TTypeStartupLocation location) noexcept;
std::wstring_view SwitchName(const SharedText& entryName, const SharedValueAddress& address) noexcept;

}  // namespace smh
