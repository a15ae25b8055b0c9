// What another program shows on the screen.
#pragma once

#include "infra/runtime/handle.h"

#include <windows.h>

#include <cstdint>
#include <vector>

namespace smh::test {

// A top-level window of the process that is visible and of that class; null when there is none.
HWND FindWindowOf(DWORD process, const wchar_t* className);

// A part of the screen as it is now, as a bitmap of the screen's format, and as pixels (0x00RRGGBB), line by
// line from the top.
ScopedBitmap CopyOfScreen(const RECT& area);
std::vector<std::uint32_t> PixelsOf(const RECT& area);

}  // namespace smh::test
