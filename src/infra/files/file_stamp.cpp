#include "infra/files/file_stamp.h"

#include <windows.h>

namespace smh {

namespace {

std::uint64_t Wide(DWORD high, DWORD low) noexcept {
  return static_cast<std::uint64_t>(high) << 32 | low;
}

std::optional<FileStamp> StampOfTerminated(std::wstring_view path) noexcept {
  WIN32_FILE_ATTRIBUTE_DATA data;
  // What follows a zero character would not be looked at.
  if (path.empty() || path.find(L'\0') != std::wstring_view::npos) return std::nullopt;
  if (GetFileAttributesExW(path.data(), GetFileExInfoStandard, &data) == FALSE) return std::nullopt;
  return FileStamp{(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                   Wide(data.nFileSizeHigh, data.nFileSizeLow),
                   Wide(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime)};
}

}  // namespace

std::optional<FileStamp> StampOf(const std::wstring& path) noexcept {
  return StampOfTerminated(path);
}

std::optional<FileStamp> StampOf(const SharedText& path) noexcept {
  return StampOfTerminated(path);
}

}  // namespace smh
