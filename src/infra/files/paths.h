// Paths made from other texts. No state; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace smh {

// The full path as the system would take the text now, with the process's current folder, without "." and
// ".." and without dots and blanks at the end; of any length, and whether or not anything is there. A
// trailing backslash stays. None for an empty text (ERROR_INVALID_NAME) and when the system gives none; the
// thread's last error says why. Raises std::bad_alloc.
std::optional<std::wstring> FullPathOf(const wchar_t* text);

// A folder of the shell by CSIDL, its flags included, without a trailing backslash; empty when the shell
// gives none, as for a folder that does not exist unless CSIDL_FLAG_CREATE or CSIDL_FLAG_DONT_VERIFY is among
// them.
std::wstring ShellFolder(int csidl);

// The folder for temporary shortcuts in a data folder; both with a trailing backslash. Shortcuts are made
// there before they are moved to their place: such a move makes a file, as far as an undo is concerned, and
// one back deletes it.
std::wstring TempShortcutsIn(std::wstring_view dataFolder);

}  // namespace smh
