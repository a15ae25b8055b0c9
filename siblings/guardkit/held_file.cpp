#include "siblings/guardkit/held_file.h"

#include "infra/files/file_facts.h"
#include "siblings/guardkit/file_state.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace smh {

namespace {

LSTATUS SetInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* data, std::size_t size) noexcept {
  return SetFileInformationByHandle(file, kind, data, static_cast<DWORD>(size)) != FALSE
             ? ERROR_SUCCESS
             : static_cast<LSTATUS>(GetLastError());
}

LSTATUS SetAttributes(const std::wstring& path, DWORD attributes) noexcept {
  return SetFileAttributesW(path.c_str(), attributes) != FALSE ? ERROR_SUCCESS
                                                               : static_cast<LSTATUS>(GetLastError());
}

ScopedHandle Open(const std::wstring& path, DWORD access, DWORD sharing) {
  return ScopedHandle(CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_WRITE_THROUGH, nullptr));
}

// Another file may have got the name of one that others may rename.
bool IsNamed(HANDLE file, const std::wstring& path) {
  const ScopedHandle named =
      Open(path, FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
  BY_HANDLE_FILE_INFORMATION one;
  BY_HANDLE_FILE_INFORMATION other;
  return named && GetFileInformationByHandle(file, &one) != FALSE &&
         GetFileInformationByHandle(named.Get(), &other) != FALSE &&
         one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
         JoinHalves(one.nFileIndexHigh, one.nFileIndexLow) ==
             JoinHalves(other.nFileIndexHigh, other.nFileIndexLow);
}

}  // namespace

HeldFile::HeldFile(std::wstring path)
    : path_(std::move(path)), file_(Open(path_, GENERIC_READ | DELETE, FILE_SHARE_READ)) {
  if (file_ || GetLastError() != ERROR_SHARING_VIOLATION) return;
  file_ = Open(path_, GENERIC_READ | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE);
}

bool HeldFile::Is(const FileState& state) const {
  return IsSameState(ReadOpenFileState(file_.Get(), path_), state) && IsNamed(file_.Get(), path_);
}

LSTATUS HeldFile::MoveTo(const std::wstring& path) {
  const std::size_t bytes = path.size() * sizeof(wchar_t);
  // With room for the terminating NUL, which does not count.
  std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + bytes);
  FILE_RENAME_INFO head = {};
  head.FileNameLength = static_cast<DWORD>(bytes);
  std::memcpy(buffer.data(), &head, sizeof(head));
  std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), path.data(), bytes);
  const LSTATUS status = SetInformation(file_.Get(), FileRenameInfo, buffer.data(), buffer.size());
  if (status == ERROR_SUCCESS) path_ = path;
  return status;
}

LSTATUS HeldFile::Delete(bool evenReadOnly) noexcept {
  FILE_DISPOSITION_INFO disposition = {TRUE};
  LSTATUS status = SetInformation(file_.Get(), FileDispositionInfo, &disposition, sizeof(disposition));
  if (status != ERROR_ACCESS_DENIED || !evenReadOnly) return status;
  const DWORD attributes = GetFileAttributesW(path_.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return status;
  if (SetAttributes(path_, attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}) != ERROR_SUCCESS) return status;
  status = SetInformation(file_.Get(), FileDispositionInfo, &disposition, sizeof(disposition));
  if (status != ERROR_SUCCESS) SetAttributes(path_, attributes);
  return status;
}

}  // namespace smh
