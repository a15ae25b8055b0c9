// The product's message box.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// A message box above all windows, captioned with the vendor's and the product's name; `flags` are those of
// MessageBoxW besides. The pressed button, 0 when it cannot be shown. On any thread, which waits meanwhile
// and should hold no lock: the window takes messages of other windows of the thread. Raises std::bad_alloc.
int ShowMessageBox(const std::wstring& text, UINT flags);
// The same before `owner`, which takes no input meanwhile; null is no owner.
int ShowMessageBoxOwned(HWND owner, const std::wstring& text, UINT flags);

}  // namespace smh
