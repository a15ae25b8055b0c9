#include "locations/folders/held_file.h"

#include "infra/files/file_facts.h"
#include "infra/files/file_reading.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"

#include <cstring>
#include <vector>

namespace smh {

namespace {

constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_DELETE;

// A second in all.
constexpr int kAttempts = 40;
constexpr DWORD kPauseMs = 25;

bool IsMissing(DWORD error) noexcept {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

ScopedHandle OpenFor(const std::wstring& path, DWORD access, DWORD sharing) noexcept {
  return ScopedHandle(CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

// Readers come and go: a scanner, the shell, this process's own reader.
ScopedHandle OpenPatiently(const std::wstring& path, DWORD access, DWORD sharing) noexcept {
  ScopedHandle file = OpenFor(path, access, sharing);
  for (int attempt = 1; !file && GetLastError() == ERROR_SHARING_VIOLATION && attempt < kAttempts;
       ++attempt) {
    Sleep(kPauseMs);
    file = OpenFor(path, access, sharing);
  }
  return file;
}

std::optional<FileIdentity> IdentityOfHandle(HANDLE file) noexcept {
  BY_HANDLE_FILE_INFORMATION info;
  if (GetFileInformationByHandle(file, &info) == FALSE) return std::nullopt;
  return FileIdentity{info.dwVolumeSerialNumber, JoinHalves(info.nFileIndexHigh, info.nFileIndexLow)};
}

bool RenameByHandle(HANDLE file, const std::wstring& to) {
  const std::size_t bytes = to.size() * sizeof(wchar_t);
  std::vector<std::byte> memory(sizeof(FILE_RENAME_INFO) + bytes);
  auto* const info = new (memory.data()) FILE_RENAME_INFO{};
  info->FileNameLength = static_cast<DWORD>(bytes);
  std::memcpy(info->FileName, to.data(), bytes);
  return SetFileInformationByHandle(file, FileRenameInfo, info, static_cast<DWORD>(memory.size())) != FALSE;
}

bool DeleteByHandle(HANDLE file) noexcept {
  FILE_DISPOSITION_INFO info = {};
  info.DeleteFile = TRUE;
  return SetFileInformationByHandle(file, FileDispositionInfo, &info, sizeof(info)) != FALSE;
}

}  // namespace

std::optional<FileIdentity> IdentityOf(const std::wstring& path) noexcept {
  const ScopedHandle file = OpenFor(path, FILE_READ_ATTRIBUTES, kSharing | FILE_SHARE_WRITE);
  return file ? IdentityOfHandle(file.Get()) : std::nullopt;
}

std::unique_ptr<HeldFile> HeldFile::Open(std::wstring path) {
  ScopedHandle file = OpenPatiently(path, GENERIC_READ | DELETE, FILE_SHARE_READ);
  if (!file) {
    const DWORD error = GetLastError();
    if (IsMissing(error)) return nullptr;
    RaiseOSError(error);
  }
  const std::optional<FileIdentity> identity = IdentityOfHandle(file.Get());
  if (!identity) RaiseLastOSError();
  return std::unique_ptr<HeldFile>(new HeldFile(std::move(path), std::move(file), *identity));
}

std::unique_ptr<HeldFile> HeldFile::Require(const std::wstring& path) {
  std::unique_ptr<HeldFile> file = Open(path);
  if (file == nullptr) RaiseOSError(ERROR_FILE_NOT_FOUND);
  return file;
}

// What a link leads to is read by its name: the handle is the link's own.
std::string HeldFile::Bytes(std::uint64_t cap) const {
  if ((BasicInfo().FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    return ReadWholeFile(path_, kSharing, cap);
  }
  if (SetFilePointerEx(file_.Get(), {}, nullptr, FILE_BEGIN) == FALSE) RaiseLastOSError();
  const std::vector<std::byte> bytes = ReadOpenFile(file_.Get(), cap);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

FILE_BASIC_INFO HeldFile::BasicInfo() const {
  FILE_BASIC_INFO info = {};
  if (GetFileInformationByHandleEx(file_.Get(), FileBasicInfo, &info, sizeof(info)) == FALSE) {
    RaiseLastOSError();
  }
  return info;
}

// The right to delete goes first: a handle that has it and one that does not share it exclude each other.
void HeldFile::ShareDeletion() {
  file_.Reset();
  ScopedHandle shared = OpenPatiently(path_, GENERIC_READ, kSharing);
  if (!shared) RaiseLastOSError();
  if (IdentityOfHandle(shared.Get()) != identity_) RaiseOSError(ERROR_REVISION_MISMATCH);
  file_ = std::move(shared);
}

void HeldFile::RenameTo(const std::wstring& to) {
  const bool renamed = RenameByHandle(file_.Get(), to);
  const DWORD error = renamed ? ERROR_ACCESS_DENIED : GetLastError();
  if (!renamed && error == ERROR_NOT_SAME_DEVICE) {
    CopyTo(to);
  } else if (!StandsAt(to)) {
    // What happened counts, not what was answered.
    RaiseOSError(error);
  }
  path_ = to;
}

void HeldFile::CopyTo(const std::wstring& to) {
  if (CopyFileW(path_.c_str(), to.c_str(), TRUE) == FALSE) RaiseLastOSError();
  try {
    const std::unique_ptr<HeldFile> copy = Require(to);
    if (SizeOfOpenFile(copy->file_.Get()) != SizeOfOpenFile(file_.Get())) RaiseOSError(ERROR_WRITE_FAULT);
    if (!DeleteByHandle(file_.Get())) RaiseLastOSError();
    file_ = std::move(copy->file_);
    identity_ = copy->identity_;
  } catch (...) {
    DeleteFileW(to.c_str());
    throw;
  }
}

void HeldFile::Delete() {
  const bool deleted = DeleteByHandle(file_.Get());
  const DWORD error = deleted ? ERROR_ACCESS_DENIED : GetLastError();
  Close();
  if (StandsAt(path_)) RaiseOSError(error);
}

}  // namespace smh
