#include "infra/files/own_file.h"

#include "infra/files/folder_access.h"

namespace smh {

namespace {

// With the thread's last error when it cannot be told.
bool Describe(HANDLE file, BY_HANDLE_FILE_INFORMATION& facts) noexcept {
  return GetFileInformationByHandle(file, &facts) != FALSE;
}

bool IsPlainFile(HANDLE file) noexcept {
  BY_HANDLE_FILE_INFORMATION facts;
  if (!Describe(file, facts)) return false;
  const DWORD other = FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY;
  if ((facts.dwFileAttributes & other) == 0 && facts.nNumberOfLinks <= 1) return true;
  SetLastError(ERROR_CANT_ACCESS_FILE);
  return false;
}

// The text up to a backslash for the length of a scope.
class CutAt {
 public:
  CutAt(std::wstring& path, std::size_t end) noexcept : place_(path[end]) { place_ = L'\0'; }
  ~CutAt() { place_ = L'\\'; }
  CutAt(const CutAt&) = delete;
  CutAt& operator=(const CutAt&) = delete;

 private:
  wchar_t& place_;
};

}  // namespace

HeldFolders::HeldFolders(std::wstring& path, std::size_t base) noexcept {
  for (std::size_t end = path.find(L'\\', base); areHeld_ && end != std::wstring::npos;
       end = path.find(L'\\', end + 1)) {
    areHeld_ = HoldOrMake(path, base, end);
  }
}

bool HeldFolders::HoldOrMake(std::wstring& path, std::size_t base, std::size_t end) noexcept {
  if (count_ == kMost) return false;
  {
    const CutAt cut(path, end);
    if (Hold(path.c_str())) return true;
    // A link, or a file; not to be made.
    if (folders_[count_]) return false;
  }
  if (count_ == 0) {
    // Nothing behind the cut is seen, nor made.
    const CutAt cut(path, base - 1);
    MakeFolders(path);
  }
  const CutAt cut(path, end);
  // A failure shows when the folder is held.
  CreateDirectoryW(path.c_str(), nullptr);
  return Hold(path.c_str());
}

bool HeldFolders::Hold(const wchar_t* folder) noexcept {
  ScopedHandle& handle = folders_[count_];
  handle.Reset(CreateFileW(folder, FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                           FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  BY_HANDLE_FILE_INFORMATION facts;
  if (!handle || !Describe(handle.Get(), facts)) return false;
  const DWORD kind = facts.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT);
  if (kind != FILE_ATTRIBUTE_DIRECTORY) return false;
  ++count_;
  return true;
}

ScopedHandle OpenOwnFile(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition) noexcept {
  ScopedHandle file(CreateFileW(path.c_str(), access | FILE_READ_ATTRIBUTES, sharing, nullptr, disposition,
                                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  const DWORD opened = GetLastError();
  if (!file || !IsPlainFile(file.Get())) return ScopedHandle();
  // Whether it was there before.
  SetLastError(opened);
  return file;
}

}  // namespace smh
