// The list of keys that F1 shows. For the window's thread.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// What the menu says about the keys of its commands, and those that belong to no command: one line each,
// "Undo", a tab, "Ctrl+Z", with a line for every menu above its commands. The menu stays the caller's.
std::wstring KeyTable(HMENU menu);

// Shows the keys of the window's menu in a dialog and returns when that was closed.
void ShowKeys(HWND window);

}  // namespace smh
