#include "infra/crash_report.h"

namespace smh {

void RegisterCrashHandler() {}

void UnregisterCrashHandler() noexcept {}

std::wstring CrashStackTrace() {
  return {};
}

}  // namespace smh
