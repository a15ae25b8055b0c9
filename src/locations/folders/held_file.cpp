#include "locations/folders/held_file.h"

#include "infra/files/file_reading.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"
#include "model/change_refused.h"

#include <cstring>
#include <vector>

namespace smh {

namespace {

constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_DELETE;

ScopedHandle OpenFor(const std::wstring& path, DWORD access, DWORD sharing) noexcept {
  return ScopedHandle(CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

ScopedHandle OpenPatiently(const std::wstring& path, DWORD access, DWORD sharing) noexcept {
  ScopedHandle file = OpenFor(path, access, sharing);
  OpenPatience patience;
  while (!file && GetLastError() == ERROR_SHARING_VIOLATION && patience.Wait()) {
    file = OpenFor(path, access, sharing);
  }
  return file;
}

// What happened counts, not what was answered: it did not happen.
[[noreturn]] void RaiseWithout(LSTATUS status) {
  RaiseOSError(status != ERROR_SUCCESS ? static_cast<DWORD>(status) : ERROR_ACCESS_DENIED);
}

}  // namespace

std::unique_ptr<HeldFile> HeldFile::Open(std::wstring path) {
  ScopedHandle file = OpenPatiently(path, GENERIC_READ | DELETE, FILE_SHARE_READ);
  if (!file) {
    const DWORD error = GetLastError();
    if (IsMissing(error)) return nullptr;
    RaiseOSError(error);
  }
  const std::optional<FileIdentity> identity = IdentityOfOpenFile(file.Get());
  if (!identity) RaiseLastOSError();
  return std::unique_ptr<HeldFile>(new HeldFile(std::move(path), std::move(file), *identity));
}

std::unique_ptr<HeldFile> HeldFile::Require(const std::wstring& path) {
  std::unique_ptr<HeldFile> file = Open(path);
  if (file == nullptr) RaiseOSError(ERROR_FILE_NOT_FOUND);
  return file;
}

bool HeldFile::HasLeft(const std::wstring& path) const noexcept {
  const std::optional<FileIdentity> identity = IdentityOf(path);
  return identity ? identity != identity_ : IsMissing(GetLastError());
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
  if (!shared && !IsMissing(GetLastError())) RaiseLastOSError();
  if (!shared || IdentityOfOpenFile(shared.Get()) != identity_) RaiseChangedMeanwhile();
  file_ = std::move(shared);
}

void HeldFile::RenameTo(const std::wstring& to) {
  const LSTATUS status = RenameOpenFile(file_.Get(), to);
  if (status == ERROR_NOT_SAME_DEVICE) {
    CopyTo(to);
  } else if (!StandsAt(to)) {
    RaiseWithout(status);
  }
  path_ = to;
}

void HeldFile::CopyTo(const std::wstring& to) {
  if (CopyFileW(path_.c_str(), to.c_str(), TRUE) == FALSE) RaiseLastOSError();
  try {
    const std::unique_ptr<HeldFile> copy = Require(to);
    if (SizeOfOpenFile(copy->file_.Get()) != SizeOfOpenFile(file_.Get())) RaiseOSError(ERROR_WRITE_FAULT);
    const LSTATUS status = DeleteOpenFile(file_.Get());
    Close();
    if (StandsAt(path_)) RaiseWithout(status);
    file_ = std::move(copy->file_);
    identity_ = copy->identity_;
  } catch (...) {
    DeleteFileW(to.c_str());
    throw;
  }
}

void HeldFile::Delete() {
  const LSTATUS status = DeleteOpenFile(file_.Get());
  Close();
  // A refusal is believed unless the file is seen to have gone.
  if (status == ERROR_SUCCESS ? StandsAt(path_) : !HasLeft(path_)) RaiseWithout(status);
}

}  // namespace smh
