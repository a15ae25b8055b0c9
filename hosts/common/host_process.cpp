#include "hosts/common/host_process.h"

#include <windows.h>

namespace smh {

void SetUpHostProcess() noexcept {
  SetDllDirectoryW(L"");
  SetErrorMode(SEM_FAILCRITICALERRORS);
}

}  // namespace smh
