// Changes of files as a location makes them: recorded by the backup service or plain. Moves and deletions are
// confirmed by a look at the disk; what did not happen raises EOSError.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// Without state; any thread that may change the location, inside its checkpoint when changes are recorded.
// Every path is a full one.
class FileChanger {
 public:
  explicit FileChanger(bool recorded) noexcept : recorded_(recorded) {}

  // Fails when `to` exists, and when `from` is still there afterwards; then what was made at `to` goes again.
  void Move(const std::wstring& from, const std::wstring& to) const;
  // Fails for a file that is not there, and for one that is still there afterwards.
  void Delete(const std::wstring& file) const;
  // Takes back a file that was just made; where the service refuses, without it.
  void Discard(const std::wstring& file) const noexcept;
  // Puts the content of `from` in the place of `to`, at once or not at all, and removes `from`. The caller
  // reads back.
  void Replace(const std::wstring& from, const std::wstring& to) const;

 private:
  LSTATUS TryMove(const std::wstring& from, const std::wstring& to) const;
  LSTATUS TryDelete(const std::wstring& file) const;

  const bool recorded_;
};

}  // namespace smh
