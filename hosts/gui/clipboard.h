// Texts for other programs. For the window's thread.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// Replaces what is in the clipboard; waits a little for a program that looks at it. False when that was not
// possible.
bool CopyToClipboard(HWND window, const std::wstring& text) noexcept;

}  // namespace smh
