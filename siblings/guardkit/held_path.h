// Folders held in place: while the object lives none of them can be renamed, removed or made a link by a
// process that respects sharing, so that what was checked is what is used.
#pragma once

#include "infra/runtime/handle.h"

#include <string>
#include <vector>

namespace smh {

// Owns a handle to each folder. A folder that this process may not list is checked, but not held: nobody
// without rights there gets to replace it.
class HeldPath {
 public:
  // Opens every folder of a full path (a trailing backslash does not matter) from the volume's root on; with
  // `make` missing ones are made, each in a folder that is held already. Raises EOSError:
  // ERROR_CANT_ACCESS_FILE for a reparse point, ERROR_PATH_NOT_FOUND for a missing folder.
  explicit HeldPath(const std::wstring& folder, bool make = false);

  // The folder itself, open for reading its contents and, where the system gives them, its owner and rights;
  // as long as this lives.
  HANDLE Folder() const noexcept { return folders_.empty() ? nullptr : folders_.back().Get(); }

 private:
  std::vector<ScopedHandle> folders_;
};

}  // namespace smh
