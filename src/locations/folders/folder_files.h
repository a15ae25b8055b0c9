// The files of a Startup folder and their names. No state; any thread.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// Whether an error says that there is no such file or folder.
bool IsMissing(DWORD error) noexcept;

// The names of the files in a folder (trailing backslash), in the order the system returns them; sub-folders
// are left out. Empty for a missing folder. Raises EOSError when the folder cannot be read to its end or is
// none.
std::vector<std::wstring> FileNamesIn(const std::wstring& folder);

// Whether the file may be deleted now: by its rights and by how others have it open.
bool CanDeleteFile(const wchar_t* path) noexcept;

// The path itself, else "name (1).ext", "name (2).ext", ...: the first that no file has now; nothing is made.
std::wstring MakeUniqueFileName(const std::wstring& path);

// The name with ".lnk" in place of its extension.
std::wstring WithLinkExtension(std::wstring_view name);

// Whether a name is one plain component that every part of the system takes for the same file.
bool IsPlainFileName(std::wstring_view name) noexcept;
// The nearest plain name: "_" for every character that must not be.
std::wstring PlainFileName(std::wstring_view name);

inline constexpr std::wstring_view kShortcutExtension = L".lnk";
// More is none, in bytes.
inline constexpr std::uint64_t kLargestShortcut = 0x500000;

// The whole of a shortcut, which others may read, move and delete meanwhile. Raises EOSError,
// ERROR_FILE_TOO_LARGE for more than 5 MB.
std::string ReadShortcutBytes(const std::wstring& path);
// Makes a file; its bytes are on the disk when this returns. Raises EOSError, ERROR_FILE_EXISTS when there is
// one, and leaves nothing behind.
void WriteNewFile(const std::wstring& path, std::string_view bytes);

}  // namespace smh
