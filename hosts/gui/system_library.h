// Libraries of Windows that are loaded when they are first needed. Any thread.
#pragma once

#include "infra/runtime/handle.h"

namespace smh {

// From the system's own folder, whatever lies beside the program; null when this Windows has none.
ScopedModule LoadSystemLibrary(const wchar_t* file);

}  // namespace smh
