// The file operations of the backup service, as Win32 status codes.
#pragma once

#include <windows.h>

namespace smh {

// Never replaces a file; another volume is reached by copying. ERROR_INVALID_PARAMETER for a null name.
LSTATUS MoveFileNew(const wchar_t* from, const wchar_t* to) noexcept;
LSTATUS RemoveFile(const wchar_t* file) noexcept;
// Without `overwrite` an existing file stays: ERROR_FILE_EXISTS.
LSTATUS CopyFileTo(const wchar_t* from, const wchar_t* to, bool overwrite) noexcept;

}  // namespace smh
