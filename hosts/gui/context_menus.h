// The menus that the views show beside what is selected. For the window's thread.
#pragma once

#include <windows.h>

namespace smh {

// Shows the menu of a control by its number (IDC_ in resource.h) and returns when it has closed; the commands
// go to `window`. `point` is on the screen; (-1, -1), for the keyboard, stands for what has the focus in the
// control. A node of a tree below the point is selected first. False when the control has no menu.
bool ShowContextMenu(HWND window, HWND control, POINT point);

}  // namespace smh
