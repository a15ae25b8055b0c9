// Keys by their real place, and the way back to them. A place is a text like
// "HKEY_USERS\S-1-5-21-...\Software\Vendor": a root and levels in the 64-bit view, the same for every
// process. For any thread.
#pragma once

#include "infra/runtime/handle.h"

#include <string>
#include <string_view>

namespace smh {

// The place of an open or predefined key, with HKEY_CURRENT_USER as HKEY_USERS\SID and the registry view as
// the key that it really is. Raises EOSError; ERROR_NOT_SUPPORTED for a key outside HKEY_LOCAL_MACHINE and
// HKEY_USERS.
std::wstring PlaceOf(HKEY key);

// Opens a place level by level, with `access` and the right to read values. Empty for a missing key and for a
// bare root. Raises EOSError; ERROR_CANT_ACCESS_FILE when a level is a registry link, which is never
// followed, ERROR_NOT_SUPPORTED for a text that is no place.
ScopedKey OpenPlace(const std::wstring& place, REGSAM access);

// The same for one level below an open key.
ScopedKey OpenLevel(HKEY parent, const std::wstring& level, REGSAM access);

// The place without its last level, empty for a bare root, and that level.
std::wstring ParentPlace(const std::wstring& place);
std::wstring LastLevel(const std::wstring& place);

// The hive that a place lies in, its root and first level: what one flush writes to the disk.
std::wstring HiveOf(const std::wstring& place);
// Whether the last level may be made again: no hive, and not Wow6432Node, which the system makes for its
// views.
bool MayMakeKey(const std::wstring& place);

}  // namespace smh
