// The files of a Startup folder and their names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace smh {

// The names of the files in a folder (trailing backslash), in the order the system returns them; sub-folders
// are left out. Empty for a missing folder. Raises EOSError when the folder cannot be read to its end.
std::vector<std::wstring> FileNamesIn(const std::wstring& folder);

// Whether the file may be deleted now: by its rights and by how others have it open.
bool CanDeleteFile(const wchar_t* path) noexcept;

// The path itself, else "name (1).ext", "name (2).ext", ...: the first that no file has.
std::wstring MakeUniqueFileName(const std::wstring& path);

std::wstring WithLinkExtension(std::wstring_view name);

// Whether a name is one plain component that every part of the system takes for the same file.
bool IsPlainFileName(std::wstring_view name) noexcept;
// The nearest plain name: "_" for every character that must not be.
std::wstring PlainFileName(std::wstring_view name);

// Raise EOSError; reading also for a file larger than a shortcut can be.
std::string ReadShortcutBytes(const std::wstring& path);
// Fails when the file exists.
void WriteNewFile(const std::wstring& path, std::string_view bytes);

}  // namespace smh
