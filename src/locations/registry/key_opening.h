// Opening keys of which it counts whether they are missing or only out of reach. Any thread; no state.
#pragma once

#include "infra/runtime/handle.h"

#include <string>
#include <string_view>

namespace smh {

// Whether an error of opening a key says that there is none; and whether the key may be there all the same
// and be opened later by whoever waits. Neither for one that may not be read.
bool IsMissingKey(DWORD error) noexcept;
bool MayOpenLater(DWORD error) noexcept;

// Empty for a key that does not exist. Raises EOSError for one that may not be read: what may stand there
// must not be taken for nothing.
ScopedKey OpenForReading(HKEY root, const std::wstring& path, REGSAM view);
// Whether the key can be opened with all rights; false for a missing one. `root` may be an open key.
bool IsKeyWritable(HKEY root, const std::wstring& path, REGSAM view) noexcept;

// Whether the 64-bit and the plain view show one and the same key of the path; false where that differs from
// Windows to Windows. (Windows redirects the machine's programs and, of the user's, classes only.)
bool IsOneInBothViews(HKEY root, std::wstring_view path) noexcept;

}  // namespace smh
