// Where the modules of this process lie. No state: any thread, DllMain included.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// The full path of a loaded module, null for the program; empty when the platform does not tell. Raises
// std::bad_alloc.
std::wstring ModuleFileName(HMODULE module);
// The module that this code is linked into; borrowed, its count stays as it is.
HMODULE ThisModule() noexcept;

}  // namespace smh
