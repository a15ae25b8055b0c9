// The tool bar, the status bar and bars of progress in the colours of the theme. For the window's thread.
#pragma once

#include <windows.h>
#include <commctrl.h>

namespace smh {

// Give the control what it needs to be drawn in the current appearance; called again for every appearance.
void DressStatusBar(HWND bar);
void DressProgressBar(HWND bar);

// Answers a tool bar's question how it is drawn, in dark.
LRESULT DrawToolBar(const NMTBCUSTOMDRAW& draw);

}  // namespace smh
