// Shows a value in the system's registry editor: the editor opens at the key that it showed last, so that
// memory is set, the editor started anew, and the value's name typed into its list of values.
//
// All operations act on windows of another process and wait for it, a few seconds at most; call them without
// holding a lock.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

namespace RegEditUtils {

// The editor's window; null when there is none, and when the windows cannot be listed.
HWND FindRegEditWindow();
// The same, waiting up to two seconds for it to appear.
HWND WaitForRegEditWindow();
// Selects an entry of a list view by its name, as by typing; an empty text selects the first one. Gives up
// when the list's thread does not answer.
void TypeIntoList(HWND list, std::wstring_view text);
// `access` holds the view bits, `rootKey` is a predefined key. That the editor cannot be started is shown
// in a message box; any later obstacle ends the operation silently.
void OpenRegEdit(REGSAM access, HKEY rootKey, const std::wstring& valueName, const std::wstring& keyPath);

}  // namespace RegEditUtils

}  // namespace smh
