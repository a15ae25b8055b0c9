// Where the modules of this process lie.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// The full path of a loaded module, null for the program; empty when the platform does not tell.
std::wstring ModuleFileName(HMODULE module);
// The module that this code is linked into.
HMODULE ThisModule() noexcept;

}  // namespace smh
