// How a dialog of this program begins. For the window's thread.
#pragma once

#include <windows.h>

namespace smh {

// Gives the dialog of the template `id` its texts, dresses it as the theme asks, and puts it in the middle of
// its owner, as far as the screen has room; in the middle of the screen without an owner that is seen. Called
// when the dialog begins (WM_INITDIALOG) and has its size.
void BeginDialog(HWND dialog, int id);

}  // namespace smh
