// Starting programs through the shell.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// The shell's verb "open" with a normal window. Answers ERROR_SUCCESS, or the system code of what went wrong.
DWORD OpenWithShell(HWND owner, const std::wstring& file, const std::wstring& parameters);

}  // namespace smh
