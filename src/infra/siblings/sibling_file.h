// Where the sibling libraries lie: in the folder of the module that this code is linked into, else in that of
// the program. Nowhere else is looked for one, whatever the current folder or the search path hold. No state:
// any thread.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

// The full path of the product's file `name`; empty when neither folder holds it. Asks the disk; for DllMain,
// too. Raises std::bad_alloc.
std::wstring FindSibling(std::wstring_view name);
// Loads the library by its full path, from the first folder whose file can be loaded; null, with the thread's
// last error, when there is none. The caller owns the reference. Not from DllMain. Raises std::bad_alloc.
HMODULE LoadSibling(std::wstring_view name);

}  // namespace smh
