// The entry of a module: what its DllMain does, and what its export `GetInstance` looks into.
#pragma once

#include "infra/runtime/module_steps.h"

#include <unknwn.h>

#include <span>
#include <string_view>

namespace smh {

// A service of the module and the identifier that it is asked for by.
struct ServiceRow {
  std::wstring_view id;  // "{8-4-4-4-12}"
  IUnknown* service;
};

// The service, uncounted; null for an unknown or a null identifier. The case of ASCII letters does not
// matter. From any thread.
IUnknown* FindService(std::span<const ServiceRow> services, const wchar_t* id) noexcept;

// The whole of DllMain, whose arguments it takes; under the loader's lock. Starts the steps on attach; FALSE
// when one fails, and the module does not load. FreeLibrary stops the steps, if they were started. At process
// exit nothing is stopped, because the other threads are gone and may have left locks held: all that happens
// is `atProcessExit`.
BOOL RunModuleEntry(DWORD reason, const void* reserved, std::span<const ModuleStep> steps,
                    void (*atProcessExit)() noexcept = nullptr) noexcept;

}  // namespace smh
