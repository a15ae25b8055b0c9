// Changes of files as a location makes them: recorded by the backup service or plain. Every one is confirmed
// and raises EOSError when it did not happen.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// Without state; any thread that may change the location. Every path is a full one.
class FileChanger {
 public:
  explicit FileChanger(bool recorded) noexcept : recorded_(recorded) {}

  // Fails when `to` exists, and when `from` is still there afterwards; then what was made at `to` goes again.
  void Move(const std::wstring& from, const std::wstring& to) const;
  void Delete(const std::wstring& file) const;
  // Takes back a file that was just made; where the service refuses, without it.
  void Discard(const std::wstring& file) const noexcept;
  // Puts the content of `from` in the place of `to` and removes `from`.
  void Replace(const std::wstring& from, const std::wstring& to) const;

 private:
  LSTATUS TryMove(const std::wstring& from, const std::wstring& to) const;
  LSTATUS TryDelete(const std::wstring& file) const;

  const bool recorded_;
};

}  // namespace smh
