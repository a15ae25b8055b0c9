// A file held for its last look: it is compared, and then renamed or deleted, by one handle.
#pragma once

#include "infra/files/file_moves.h"
#include "infra/runtime/handle.h"
#include "siblings/guardkit/format/journal_steps.h"

#include <string>

namespace smh {

// For one thread and a short time. While it is held nobody may write to the file; others may read it, and
// have it open for reading and deletion, as the caller of the service may. What is renamed or deleted is the
// file that was looked at, wherever its name leads by then.
class RecordedFile {
 public:
  // Follows no link, and waits with `patience` for those who keep it from being opened. Converts to false
  // when it cannot be; the thread's last error says why.
  RecordedFile(std::wstring path, OpenPatience& patience);
  explicit operator bool() const noexcept { return static_cast<bool>(file_); }

  // Whether it still has that state, to the byte, and its name; only the time of the last access does not
  // count. Raises EOSError when that cannot be told.
  bool Is(const FileState& state) const;

  // Win32 statuses. Gives it another full path on its volume, on the disk when this returns; never replaces
  // anything: ERROR_ALREADY_EXISTS. The name of a deleted file is free when all handles to it are closed;
  // with `evenReadOnly` that attribute is in nobody's way, and is back when the deletion is refused.
  LSTATUS MoveTo(const std::wstring& path);
  LSTATUS Delete(bool evenReadOnly) noexcept;

 private:
  std::wstring path_;
  ScopedHandle file_;
};

}  // namespace smh
