// Tells that classes were registered, deleted or given another server: what is listed by its class may be
// another file then, or none, or come to be listed.
#pragma once

#include "infra/runtime/module_global.h"

#include <cstdint>

namespace smh {

// Grows with changes in the registrations of classes, of all users' and of this one's, in every view. One
// call of the system as long as there is none. The first call begins to count. A rule of KeyWatch holds: only
// one thread at a time may ask. Raises EOSError when an event cannot be made.
std::uint64_t ClassChanges();

struct ClassWatch;
extern ModuleGlobal<ClassWatch> g_classWatch;

}  // namespace smh
