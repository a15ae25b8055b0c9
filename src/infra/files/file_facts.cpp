#include "infra/files/file_facts.h"

namespace smh {

DWORD AttributesOf(PathView path) noexcept {
  if (!path.IsCut()) return GetFileAttributesW(path.c_str());
  SetLastError(ERROR_INVALID_NAME);
  return INVALID_FILE_ATTRIBUTES;
}

bool IsFile(PathView path) noexcept {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool IsFolder(PathView path) noexcept {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool Exists(PathView path) noexcept {
  return AttributesOf(path) != INVALID_FILE_ATTRIBUTES;
}

std::optional<FileStamp> StampOf(PathView path) noexcept {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (path.IsEmpty() || path.IsCut()) return std::nullopt;
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE) return std::nullopt;
  return FileStamp{(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0, SizeIn(data),
                   NumberOf(data.ftLastWriteTime)};
}

}  // namespace smh
