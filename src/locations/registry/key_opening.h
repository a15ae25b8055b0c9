// Opening keys of which it counts whether they are missing or only out of reach. Any thread; no state.
#pragma once

#include "infra/runtime/handle.h"

#include <string>

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

}  // namespace smh
