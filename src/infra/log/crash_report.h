// The seam to a crash reporter. None is linked: nothing is registered, and no trace is taken.
#pragma once

#include <string>

namespace smh {

// At module start and stop, by the start-up table, with the loader's lock held. A reporter that cannot be
// registered raises; then nothing is to be unregistered.
inline void RegisterCrashHandler() {}
inline void UnregisterCrashHandler() noexcept {}

// The stack trace of the exception being handled, for the statistics log, whose lock may be held; empty
// without a reporter. Any thread. Raises std::bad_alloc.
inline std::wstring CrashStackTrace() {
  return {};
}

}  // namespace smh
