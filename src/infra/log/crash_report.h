// The seam to a crash reporter. None is linked: the defaults do nothing.
#pragma once

#include <string>

namespace smh {

// At module start and stop.
void RegisterCrashHandler();
void UnregisterCrashHandler() noexcept;
// The stack trace of the exception being handled; empty without a reporter.
std::wstring CrashStackTrace();

}  // namespace smh
