// Shortcuts written through the shell's own link object.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// What a shortcut stores, as IShellLink names it.
struct ShortcutFields {
  std::wstring target;
  std::wstring arguments;
  // As stored: a text that names a resource stays so.
  std::wstring description;
  std::wstring workingFolder;
  std::wstring iconLocation;
  int iconIndex = 0;
  int showCommand = SW_SHOWNORMAL;
  WORD hotKey = 0;
};

// The program and the arguments that a command line starts, as a shortcut names them; searches a bare name.
// An empty target when the command has no program.
ShortcutFields FieldsOfCommand(const std::wstring& command);

// Writes a shortcut and confirms that it can be read and still has its target. Raises EOleSysError, EOSError
// or the reader's exception, and then leaves no file. The calling thread need not have COM.
void WriteShortcut(const ShortcutFields& fields, const std::wstring& file);

}  // namespace smh
