// The product's message box.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// A message box above all windows, captioned with the vendor's and the product's name; the pressed button.
int ShowMessageBox(const std::wstring& text, UINT flags);
int ShowMessageBoxOwned(HWND owner, const std::wstring& text, UINT flags);

}  // namespace smh
