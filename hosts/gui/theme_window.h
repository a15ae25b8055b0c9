// A top-level window and all its controls in the colours of the theme, which follows the user's settings. For
// the window's thread.
#pragma once

#include "hosts/gui/theme.h"

#include <functional>

namespace smh {

// Dresses the window with its menus and title, and every control that it has or gets, until it is gone. When
// the user's settings change, all of it is dressed anew, and `onChange` is called before it is drawn: what is
// made with the colours, such as pictures, is made anew there. Called once for a window, best when its
// controls are there.
void ThemeWindow(HWND window, std::function<void()> onChange = {});
// The same for a dialog; called when it begins (WM_INITDIALOG).
void ThemeDialog(HWND dialog);
// A text control stands on that background, in light too; else it stands on the window's.
void SetThemeRoles(HWND control, Role text, Role back);

}  // namespace smh
