// The menus: which commands stand in them, with the texts of the process's language. For the window's thread.
#pragma once

#include <windows.h>

namespace smh {

// The bar of the main window. The caller owns the menu, until a window takes it.
HMENU MakeMenuBar();

// What opens at something that is selected: an entry, a program, a change, plain text, a place in the tree.
enum class ContextMenu { kEntry, kProgram, kChange, kText, kTree };
// The caller destroys it.
HMENU MakeContextMenu(ContextMenu which);

// Opens it at a place of the screen, towards where lines run; the chosen command is posted to `window`.
void OpenMenu(HMENU menu, POINT point, HWND window);

}  // namespace smh
