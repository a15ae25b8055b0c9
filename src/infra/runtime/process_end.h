// The end of the process.
#pragma once

#include "infra/runtime/import_function.h"

namespace smh {

// Whether the process is on its way out: its other threads are gone then, wherever they were, and may have
// left locks held. False on a Windows that does not tell. Any thread; takes no lock but the loader's.
inline bool IsProcessEnding() noexcept {
  using Function = BOOLEAN(WINAPI*)();
  const auto isEnding = ImportFunction<Function>(GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress");
  return isEnding != nullptr && isEnding() != FALSE;
}

}  // namespace smh
