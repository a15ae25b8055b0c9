// One checkpoint at a time, of all processes that share a journal.
//
// The innermost lock of the system: it is taken after every other lock that the calling thread holds, the
// library's item list and item locks among them, and nothing waits under it. It is the kernel's, so a process
// that dies gives it back.
#pragma once

#include "infra/runtime/handle.h"
#include "siblings/guardkit/journal_folder.h"

namespace smh {

// Has the lock from making to destruction, which may be on different threads.
class JournalLock {
 public:
  // How long a change waits for another one before it is refused, in milliseconds.
  static constexpr DWORD kPatience = 10'000;

  // Waits up to `patience` milliseconds, asking every 15. Raises EOSError: ERROR_LOCK_VIOLATION when another
  // checkpoint is open all the while, another code when the lock's file cannot be opened. Not recursive: a
  // thread that has it waits for itself in vain.
  JournalLock(const JournalFolder& folder, DWORD patience);

 private:
  // Closing it unlocks.
  ScopedHandle file_;
};

}  // namespace smh
