// The command of an entry as a shortcut can hold it: a file and the arguments behind it.
//
// A shortcut starts what the command started, or the command is refused before anything is written: the
// target is the file that the command's program part names, the arguments are what stands behind that, unit
// for unit.
#pragma once

#include <string>

namespace smh {

struct ShortcutCommand {
  // A full path as a 64-bit process sees it, on a 64-bit Windows; the file need not exist.
  std::wstring target;
  // Without the blanks before the first one.
  std::wstring arguments;
};

// Any thread, without a lock: looks for files, and searches a bare name. Raises EChangeRefused, with a text
// that says why, for a command that no shortcut holds: a URL, a relative path, an unknown variable, a name
// that is not found, a program part that ends in the middle of a word, a target or a command that is too
// long.
ShortcutCommand CommandForShortcut(const std::wstring& command);

}  // namespace smh
