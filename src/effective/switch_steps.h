// Changes of the system's switches: one that is put off or on, and those that go along when an entry comes,
// goes or is moved. For the thread of a change, in its checkpoint when it is recorded; see EffectiveStates.
#pragma once

#include "effective/windows_release.h"
#include "model/effective_states.h"

namespace smh {

// Both answer null when there is nothing to do: of a Windows without switches always. They read anew what
// stands in the registry; raise EOSError when that cannot be told, EChangeRefused as EffectiveStates says.
std::unique_ptr<SwitchSteps> PlanCarriedSwitch(const WindowsRelease& release, const SwitchOwner* from,
                                               const SwitchOwner* to, bool recorded);
std::unique_ptr<SwitchSteps> PlanSetSwitch(const WindowsRelease& release, const SwitchOwner& entry, bool off,
                                           bool recorded);

}  // namespace smh
