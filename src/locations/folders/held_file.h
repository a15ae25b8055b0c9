// A file of a Startup folder that nobody else can change, move or delete while a change is at work on it: it
// is moved and deleted by the handle through which it was read.
//
// For the thread of a change. Paths are full ones. All but the questions raise EOSError.
#pragma once

#include "infra/files/file_moves.h"
#include "infra/runtime/handle.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace smh {

class HeldFile {
 public:
  // Others may read it meanwhile. Null for a missing one; raises also for one that others have open so that
  // it can be neither held nor deleted, for a second on end.
  static std::unique_ptr<HeldFile> Open(std::wstring path);
  // Raises EOSError for a missing one, too.
  static std::unique_ptr<HeldFile> Require(const std::wstring& path);

  // Where it stands.
  const std::wstring& Path() const noexcept { return path_; }
  const FileIdentity& Identity() const noexcept { return identity_; }
  // Borrowed; for reading.
  HANDLE Handle() const noexcept { return file_.Get(); }
  // Whether this very file stands at a path; also after Close.
  bool StandsAt(const std::wstring& path) const noexcept { return IdentityOf(path) == identity_; }
  // Whether it certainly stands there no more; false, too, for a path that cannot be looked at.
  bool HasLeft(const std::wstring& path) const noexcept;
  // From the beginning. Raises EOSError, ERROR_FILE_TOO_LARGE for more than `cap` bytes.
  std::string Bytes(std::uint64_t cap) const;
  // Attributes and times as they are.
  FILE_BASIC_INFO BasicInfo() const;

  // From here on it may be moved and deleted by the backup service, which looks itself; its content is held
  // still. Raises EChangeRefused when others have put something else in its place in that moment.
  void ShareDeletion();
  // Lets go of it.
  void Close() noexcept { file_.Reset(); }

  // Where nothing may stand yet; to another volume by a copy, which keeps attributes and times.
  void RenameTo(const std::wstring& to);
  // Closes it, too.
  void Delete();

 private:
  HeldFile(std::wstring path, ScopedHandle file, FileIdentity identity) noexcept
      : path_(std::move(path)), file_(std::move(file)), identity_(identity) {}

  void CopyTo(const std::wstring& to);

  std::wstring path_;
  ScopedHandle file_;
  FileIdentity identity_;
};

}  // namespace smh
