#include "siblings/guardkit/recorded_file.h"

#include "siblings/guardkit/file_state.h"

#include <optional>
#include <utility>

namespace smh {

namespace {

LSTATUS SetAttributes(const std::wstring& path, DWORD attributes) noexcept {
  return SetFileAttributesW(path.c_str(), attributes) != FALSE ? ERROR_SUCCESS
                                                               : static_cast<LSTATUS>(GetLastError());
}

ScopedHandle OpenFor(const std::wstring& path, DWORD sharing) noexcept {
  return ScopedHandle(CreateFileW(path.c_str(), GENERIC_READ | DELETE, sharing, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_WRITE_THROUGH, nullptr));
}

// To itself as far as others let it.
ScopedHandle Open(const std::wstring& path, OpenPatience& patience) noexcept {
  const auto isInUse = [] { return GetLastError() == ERROR_SHARING_VIOLATION; };
  ScopedHandle file;
  do {
    file = OpenFor(path, FILE_SHARE_READ);
    if (!file && isInUse()) file = OpenFor(path, FILE_SHARE_READ | FILE_SHARE_DELETE);
  } while (!file && isInUse() && patience.Wait());
  return file;
}

// Another file may have got the name of one that others may rename.
bool IsNamed(HANDLE file, const std::wstring& path) noexcept {
  const std::optional<FileIdentity> named = IdentityOf(path);
  return named.has_value() && IdentityOfOpenFile(file) == named;
}

}  // namespace

RecordedFile::RecordedFile(std::wstring path, OpenPatience& patience)
    : path_(std::move(path)), file_(Open(path_, patience)) {}

bool RecordedFile::Is(const FileState& state) const {
  return IsSameState(ReadOpenFileState(file_.Get(), path_), state) && IsNamed(file_.Get(), path_);
}

LSTATUS RecordedFile::MoveTo(const std::wstring& path) {
  const LSTATUS status = RenameOpenFile(file_.Get(), path);
  if (status == ERROR_SUCCESS) path_ = path;
  return status;
}

LSTATUS RecordedFile::Delete(bool evenReadOnly) noexcept {
  LSTATUS status = DeleteOpenFile(file_.Get());
  if (status != ERROR_ACCESS_DENIED || !evenReadOnly) return status;
  const DWORD attributes = GetFileAttributesW(path_.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return status;
  if (SetAttributes(path_, attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}) != ERROR_SUCCESS) return status;
  status = DeleteOpenFile(file_.Get());
  if (status != ERROR_SUCCESS) SetAttributes(path_, attributes);
  return status;
}

}  // namespace smh
