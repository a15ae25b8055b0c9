#include "locations/folders/file_changes.h"

#include "core/uDllGlobals.h"
#include "infra/exceptions.h"
#include "sysutil/uFileUtils.h"

namespace smh {

namespace {

void CheckCall(BOOL succeeded) {
  if (succeeded == FALSE) RaiseLastOSError();
}

}  // namespace

void FileChanger::Move(const std::wstring& from, const std::wstring& to) const {
  if (recorded_) {
    CheckStatus(DLLGlobals::Safeguard().MoveRecordedFile(from.c_str(), to.c_str()));
  } else {
    CheckCall(MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH));
  }
  if (!FileUtils::FileExists(to)) RaiseOSError(ERROR_FILE_NOT_FOUND);
  // Both stay: the one left behind may be somebody's new file.
  if (FileUtils::FileExists(from)) RaiseOSError(ERROR_ACCESS_DENIED);
}

void FileChanger::Delete(const std::wstring& file) const {
  if (recorded_) {
    CheckStatus(DLLGlobals::Safeguard().DeleteRecordedFile(file.c_str()));
  } else {
    CheckCall(DeleteFileW(file.c_str()));
  }
  if (FileUtils::FileExists(file)) RaiseOSError(ERROR_ACCESS_DENIED);
}

void FileChanger::Replace(const std::wstring& from, const std::wstring& to) const {
  if (recorded_) {
    CheckStatus(DLLGlobals::Safeguard().CopyRecordedFile(from.c_str(), to.c_str(), TRUE));
    DeleteFileW(from.c_str());
  } else {
    CheckCall(MoveFileExW(from.c_str(), to.c_str(),
                          MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH));
  }
}

}  // namespace smh
