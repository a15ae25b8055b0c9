#include "effective/windows_release.h"

#include "infra/runtime/import_function.h"

namespace smh {

WindowsRelease CurrentRelease() noexcept {
  using Query = LONG(WINAPI*)(OSVERSIONINFOW*);
  const auto query = ImportFunction<Query>(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion");
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof(version);
  if (query == nullptr || query(&version) != 0) return {};
  return {version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber};
}

}  // namespace smh
