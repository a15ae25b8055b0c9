// Key trees: registry links, and the deletion of a key with everything below it.
//
// `parent` is an open or predefined key and stays the caller's; `viewBits` is KEY_WOW64_64KEY or 0. Statuses
// are Win32 codes. For any thread; what others change meanwhile is taken as it comes.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// Keys do not nest deeper on any Windows; a walk that gets further has run into a loop.
inline constexpr int kDeepestKey = 512;

// Whether the key is a link to another key; false for one that cannot be opened. Walks that delete or recurse
// must not enter one: the other key is somebody else's.
bool IsRegistryLink(HKEY parent, const std::wstring& key, REGSAM viewBits) noexcept;
// Whether the whole tree may be deleted: ERROR_NOT_SUPPORTED when the key is or holds a link, or nests too
// deep, ERROR_ACCESS_DENIED when one of the keys may not be looked into or deleted; otherwise ERROR_SUCCESS,
// also for a missing key.
LSTATUS CheckKeyTree(HKEY parent, const std::wstring& key, REGSAM viewBits);
// Deletes the deepest keys first, in the view of the bits. A link is removed itself, not what it leads to.
// Answers ERROR_FILE_NOT_FOUND for a missing key. Nothing is deleted when a key of the tree may not be; what
// fails all the same ends it, and what was deleted until then is gone.
LSTATUS DeleteKeyTree(HKEY parent, const std::wstring& key, REGSAM viewBits);

}  // namespace smh
