// A file that is open to be verified: what tells it from itself at another time, and the hash of its bytes.
#pragma once

#include "infra/runtime/handle.h"
#include "siblings/raterkit/signature.h"

#include <windows.h>

#include <compare>
#include <cstdint>
#include <string>

namespace smh {

// Which file it is, and how it stands. Without a change number a file may have been changed though all the
// rest is the same, because everybody who writes it can set its times.
struct FileKey {
  DWORD volume = 0;
  std::uint64_t index = 0;
  std::uint64_t size = 0;
  std::uint64_t written = 0;
  std::uint64_t changed = 0;
  // The volume's number of the file's last change (USN); 0 where it counts none.
  std::int64_t change = 0;
  // By which the system tells what kind of signature a file has; lower case, with its dot. Of a stream its
  // name.
  std::wstring extension;
  auto operator<=>(const FileKey&) const = default;
};

// Open for reading while the object lives; others may read it, too, but neither write, rename nor delete it.
// One thread at a time.
class OpenedFile {
 public:
  // The full path is taken with the redirection of system folders off; "Sysnative" is the system folder. Only
  // files on a disk are opened, no device and no pipe. Raises EOSError.
  explicit OpenedFile(std::wstring_view path);

  HANDLE Handle() const noexcept { return file_.Get(); }
  const FileKey& Key() const noexcept { return key_; }
  // Names the same file for code of this process, where the redirection is on; without links on the way, and
  // so for as long as the object lives.
  const std::wstring& PathHere() const noexcept { return pathHere_; }
  // Of all bytes, read anew. Raises EOSError.
  Sha256 Hash() const;

 private:
  ScopedHandle file_;
  FileKey key_;
  std::wstring pathHere_;
};

}  // namespace smh
