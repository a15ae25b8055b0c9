#include "sysutil/version/system_library.h"

#include "infra/runtime/handle.h"

namespace smh {

HMODULE SystemLibrary::Loaded() {
  if (const HMODULE module = module_.load()) return module;
  ScopedModule module(LoadLibraryW(file_));
  if (!module) RaiseLastOSError();
  HMODULE present = nullptr;
  // Another thread may have been faster: its reference stays, this one goes.
  return module_.compare_exchange_strong(present, module.Get()) ? module.Release() : present;
}

void SystemLibrary::Free() noexcept {
  if (const HMODULE module = module_.exchange(nullptr)) FreeLibrary(module);
}

}  // namespace smh
