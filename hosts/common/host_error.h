// Failures of the host, with the text for the user and the exit code.
#pragma once

#include <windows.h>

#include <string>
#include <utility>

namespace smh {

enum class ExitCode : int { kOk = 0, kFailed = 1, kUsage = 2 };

class HostError {
 public:
  explicit HostError(std::wstring message, ExitCode code = ExitCode::kFailed)
      : message_(std::move(message)), code_(code) {}
  const std::wstring& Message() const noexcept { return message_; }
  ExitCode Code() const noexcept { return code_; }

 private:
  std::wstring message_;
  ExitCode code_;
};

inline HostError UsageError(std::wstring message) {
  return HostError(std::move(message), ExitCode::kUsage);
}

// The system's text for an HRESULT or Win32 code, with the number.
std::wstring SystemErrorText(HRESULT result);
// What the library said about its last call on this thread, else the system's text for `result`.
std::wstring LibraryErrorText(HRESULT result);
// What the exception in flight says, for people; call it inside a catch handler.
std::wstring CurrentFaultText();
// Raises "`doing`: text of the failure" when `result` is a failure. Call it right after the library's call.
void CheckResult(HRESULT result, const std::wstring& doing);

}  // namespace smh
