#include "infra/log/crash_report.h"

namespace smh {

void RegisterCrashHandler() {}

void UnregisterCrashHandler() noexcept {}

std::wstring CrashStackTrace() {
  return {};
}

}  // namespace smh
