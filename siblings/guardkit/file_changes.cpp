#include "guardkit/file_changes.h"

namespace smh {

namespace {

LSTATUS StatusOf(BOOL succeeded) noexcept {
  return succeeded != FALSE ? ERROR_SUCCESS : static_cast<LSTATUS>(GetLastError());
}

}  // namespace

LSTATUS MoveFileNew(const wchar_t* from, const wchar_t* to) noexcept {
  if (from == nullptr || to == nullptr) return ERROR_INVALID_PARAMETER;
  return StatusOf(MoveFileExW(from, to, MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH));
}

LSTATUS RemoveFile(const wchar_t* file) noexcept {
  if (file == nullptr) return ERROR_INVALID_PARAMETER;
  return StatusOf(DeleteFileW(file));
}

LSTATUS CopyFileTo(const wchar_t* from, const wchar_t* to, bool overwrite) noexcept {
  if (from == nullptr || to == nullptr) return ERROR_INVALID_PARAMETER;
  return StatusOf(CopyFileW(from, to, overwrite ? FALSE : TRUE));
}

}  // namespace smh
