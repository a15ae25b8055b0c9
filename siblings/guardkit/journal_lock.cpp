#include "siblings/guardkit/journal_lock.h"

#include "infra/runtime/exceptions.h"

namespace smh {

namespace {

constexpr DWORD kPause = 15;

}  // namespace

JournalLock::JournalLock(const JournalFolder& folder, DWORD patience)
    : file_(CreateFileW(folder.File(L"journal.lock").c_str(), GENERIC_READ | GENERIC_WRITE,
                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL, nullptr)) {
  if (!file_) RaiseLastOSError();
  const ULONGLONG start = GetTickCount64();
  for (;;) {
    OVERLAPPED place = {};
    if (LockFileEx(file_.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) !=
        FALSE) {
      return;
    }
    if (GetLastError() != ERROR_LOCK_VIOLATION && GetLastError() != ERROR_IO_PENDING) RaiseLastOSError();
    if (GetTickCount64() - start >= patience) RaiseOSError(ERROR_LOCK_VIOLATION);
    Sleep(kPause);
  }
}

}  // namespace smh
