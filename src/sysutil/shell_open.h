// Starting programs through the shell.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// The shell's verb "open" with a normal window; `file` is a program, document or folder. Answers
// ERROR_SUCCESS, or the system code of what went wrong. Blocks until the shell has started it; call it
// without holding a lock.
DWORD OpenWithShell(HWND owner, const std::wstring& file, const std::wstring& parameters);

}  // namespace smh
