// Which file it is, whatever its name, and giving it another name or deleting it, by the handle that it was
// looked at through or by path.
//
// No state; any thread. A status is a Win32 one, 0 for success. Paths are full.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

namespace smh {

// What tells a file, as it was last written, from all others of its volume: a file that is made where another
// was deleted may get that one's index.
struct FileIdentity {
  DWORD volume = 0;
  std::uint64_t index = 0;
  std::uint64_t size = 0;
  // In units of 100 ns.
  std::uint64_t written = 0;
  bool operator==(const FileIdentity&) const = default;
};
// None for what is not there or cannot be looked at; follows no link. The thread's last error says why.
std::optional<FileIdentity> IdentityOf(const std::wstring& path) noexcept;
std::optional<FileIdentity> IdentityOfOpenFile(HANDLE file) noexcept;

// Renames within the volume (ERROR_NOT_SAME_DEVICE) the file that is open with the right to delete; replaces
// nothing, ERROR_ALREADY_EXISTS. The handle stays the file's. Raises std::bad_alloc.
LSTATUS RenameOpenFile(HANDLE file, const std::wstring& to);
// Deletes it; the name is free when all handles to the file are closed. ERROR_ACCESS_DENIED when the file is
// read-only.
LSTATUS DeleteOpenFile(HANDLE file) noexcept;

// Renames within the volume by path, on the disk when this returns; over what stands there if `replaces`, and
// then ERROR_SHARING_VIOLATION while others read or write that.
LSTATUS RenameFile(const std::wstring& from, const std::wstring& to, bool replaces) noexcept;

// A second of patience, from the first wait on, with those who have files open: scanners, the shell, other
// readers come and go. For one thread.
class OpenPatience {
 public:
  // Waits a moment; false at once when the second is over.
  bool Wait() noexcept;

 private:
  // In milliseconds of the system's clock; 0 before the first wait.
  ULONGLONG end_ = 0;
};

}  // namespace smh
