// Folders and what is missing of the way to them. No state; any thread.
#pragma once

#include <string>

namespace smh {

// Makes every missing folder of a path before its last backslash, from the root down. What is behind that
// backslash is not looked at: a file's name or nothing. Failures show in the first use of the folder.
// Allocates nothing and calls kernel32 only, because it also serves a process that is ending; for that the
// text is changed, and is as it was when this returns.
void MakeFolders(std::wstring& path) noexcept;

// Makes one folder, without a trailing backslash; false with the thread's last error. May raise EOSError.
using FolderMaker = bool (*)(const std::wstring& path);

// Makes a folder (a trailing backslash does not matter) and every missing one above it, but for a root. Looks
// first, and touches nothing of what is there. Raises EOSError when a folder cannot be made; a file of that
// name counts as the folder and shows in its first use.
void MakeFolderPath(const std::wstring& folder);
// The same, with who makes the folder itself and who makes those above it.
void MakeFolderPath(const std::wstring& folder, FolderMaker own, FolderMaker above);

}  // namespace smh
