#include "locations/folders/file_changes.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "locations/folders/folder_files.h"

namespace smh {

namespace {

LSTATUS StatusOf(BOOL succeeded) noexcept {
  return succeeded != FALSE ? ERROR_SUCCESS : static_cast<LSTATUS>(GetLastError());
}

bool IsMissing(LSTATUS status) noexcept {
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

// What cannot be looked at is neither there nor missing.
enum class Presence { kThere, kMissing, kUnknown };

Presence PresenceOf(const std::wstring& file) noexcept {
  if (Exists(file)) return Presence::kThere;
  return IsMissing(static_cast<LSTATUS>(GetLastError())) ? Presence::kMissing : Presence::kUnknown;
}

bool IsSameContent(const std::wstring& file, const std::wstring& other) {
  try {
    return ReadShortcutBytes(file) == ReadShortcutBytes(other);
  } catch (const EOSError&) {
    return false;
  }
}

}  // namespace

LSTATUS FileChanger::TryMove(const std::wstring& from, const std::wstring& to) const {
  if (recorded_) return DLLGlobals::Safeguard().MoveRecordedFile(from.c_str(), to.c_str());
  return StatusOf(MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH));
}

LSTATUS FileChanger::TryDelete(const std::wstring& file) const {
  if (recorded_) return DLLGlobals::Safeguard().DeleteRecordedFile(file.c_str());
  return StatusOf(DeleteFileW(file.c_str()));
}

void FileChanger::Move(const std::wstring& from, const std::wstring& to) const {
  const LSTATUS status = TryMove(from, to);
  const Presence source = PresenceOf(from);
  const Presence target = PresenceOf(to);
  // What happened counts, not what was answered; unless there was nothing to move.
  if (source == Presence::kMissing && target == Presence::kThere && !IsMissing(status)) return;
  CheckStatus(status);
  if (target == Presence::kMissing) RaiseOSError(ERROR_FILE_NOT_FOUND);
  if (source != Presence::kThere) return;
  // A source left behind is no move; another file of its name that came meanwhile stays, as both do then.
  if (IsSameContent(from, to)) Discard(to);
  RaiseOSError(ERROR_ACCESS_DENIED);
}

void FileChanger::Delete(const std::wstring& file) const {
  const LSTATUS status = TryDelete(file);
  const Presence left = PresenceOf(file);
  if (left == Presence::kMissing && !IsMissing(status)) return;
  CheckStatus(status);
  if (left == Presence::kThere) RaiseOSError(ERROR_ACCESS_DENIED);
}

void FileChanger::Discard(const std::wstring& file) const noexcept {
  if (TryDelete(file) != ERROR_SUCCESS) DeleteFileW(file.c_str());
}

void FileChanger::Replace(const std::wstring& from, const std::wstring& to) const {
  if (recorded_) {
    CheckStatus(DLLGlobals::Safeguard().CopyRecordedFile(from.c_str(), to.c_str(), TRUE));
    DeleteFileW(from.c_str());
  } else {
    CheckStatus(
        StatusOf(MoveFileExW(from.c_str(), to.c_str(),
                             MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH)));
  }
}

}  // namespace smh
