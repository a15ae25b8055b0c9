#include "infra/files/file_moves.h"

#include "infra/files/file_facts.h"
#include "infra/runtime/handle.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace smh {

namespace {

LSTATUS StatusOf(BOOL succeeded) noexcept {
  return succeeded != FALSE ? ERROR_SUCCESS : static_cast<LSTATUS>(GetLastError());
}

// Who reads, writes or may delete it excludes a handle that shares nothing.
bool IsOpenElsewhere(const std::wstring& path) noexcept {
  const ScopedHandle file(
      CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  return !file && GetLastError() == ERROR_SHARING_VIOLATION;
}

}  // namespace

std::optional<FileIdentity> IdentityOf(const std::wstring& path) noexcept {
  const ScopedHandle file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  return file ? IdentityOfOpenFile(file.Get()) : std::nullopt;
}

std::optional<FileIdentity> IdentityOfOpenFile(HANDLE file) noexcept {
  BY_HANDLE_FILE_INFORMATION info;
  if (GetFileInformationByHandle(file, &info) == FALSE) return std::nullopt;
  return FileIdentity{.volume = info.dwVolumeSerialNumber,
                      .index = JoinHalves(info.nFileIndexHigh, info.nFileIndexLow),
                      .size = JoinHalves(info.nFileSizeHigh, info.nFileSizeLow),
                      .written = NumberOf(info.ftLastWriteTime)};
}

LSTATUS RenameOpenFile(HANDLE file, const std::wstring& to) {
  const std::size_t bytes = to.size() * sizeof(wchar_t);
  // With room for the terminating NUL, which does not count.
  std::vector<std::byte> memory(sizeof(FILE_RENAME_INFO) + bytes);
  FILE_RENAME_INFO head = {};
  head.FileNameLength = static_cast<DWORD>(bytes);
  std::memcpy(memory.data(), &head, sizeof(head));
  std::memcpy(memory.data() + offsetof(FILE_RENAME_INFO, FileName), to.data(), bytes);
  return StatusOf(
      SetFileInformationByHandle(file, FileRenameInfo, memory.data(), static_cast<DWORD>(memory.size())));
}

LSTATUS DeleteOpenFile(HANDLE file) noexcept {
  FILE_DISPOSITION_INFO disposition = {};
  disposition.DeleteFile = TRUE;
  return StatusOf(SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof(disposition)));
}

LSTATUS RenameFile(const std::wstring& from, const std::wstring& to, bool replaces) noexcept {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (replaces ? DWORD{MOVEFILE_REPLACE_EXISTING} : 0);
  const LSTATUS status = StatusOf(MoveFileExW(from.c_str(), to.c_str(), flags));
  if (!replaces || status != ERROR_ACCESS_DENIED) return status;
  if (IsOpenElsewhere(to)) return ERROR_SHARING_VIOLATION;
  // Who had it open may have closed it in between.
  return StatusOf(MoveFileExW(from.c_str(), to.c_str(), flags));
}

bool OpenPatience::Wait() noexcept {
  constexpr ULONGLONG kPatienceMs = 1'000;
  constexpr DWORD kPauseMs = 25;
  const ULONGLONG now = GetTickCount64();
  if (end_ == 0) end_ = now + kPatienceMs;
  if (now >= end_) return false;
  Sleep(kPauseMs);
  return true;
}

}  // namespace smh
