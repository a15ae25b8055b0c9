// Controls that are not mirrored with their window. For the window's thread.
#pragma once

#include <windows.h>

namespace smh {

// A field that holds a path or a command runs from left to right in every language, and a picture is not
// turned round.
void KeepLeftToRight(HWND control);
// Where lines run from right to left, an edit field or a text control is not mirrored but writes that way;
// not every system does so by itself. Else does nothing.
void DirectText(HWND control);

}  // namespace smh
