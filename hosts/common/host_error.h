// Failures of the hosts, with the text for the user and the exit code, and the texts of others' failures.
#pragma once

#include "hosts/common/refusal.h"

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace smh {

// What the program answers to its caller: all went well, it failed, the command line does not fit, a part of
// it was refused or failed and the rest is done, what was compared differs.
enum class ExitCode : int { kOk = 0, kFailed = 1, kUsage = 2, kPartly = 3, kDifferent = 4 };

// What the hosts raise. The message is a whole sentence for the user, made printable, so that no name in it
// can end the line; further lines are added one by one.
class HostError {
 public:
  explicit HostError(std::wstring_view message, ExitCode code = ExitCode::kFailed);
  HostError(std::wstring_view message, std::span<const std::wstring> lines,
            ExitCode code = ExitCode::kFailed);
  // A line below the others, made printable.
  void Add(std::wstring_view line);
  // All lines, with a line feed between two.
  const std::wstring& Message() const noexcept { return message_; }
  ExitCode Code() const noexcept { return code_; }

 private:
  std::wstring message_;
  ExitCode code_;
};

// For a command line that does not fit; the program ends with ExitCode::kUsage.
inline HostError UsageError(std::wstring_view message) {
  return HostError(message, ExitCode::kUsage);
}

// The system's text for an HRESULT or Win32 code in one line, with the number in hexadecimal; "Error" and the
// number when it knows none.
std::wstring SystemErrorText(HRESULT result);
// Why the library's last call on this thread, of that slot, has failed or did nothing: the host's words where
// it has any (refusal.h), else what the library says, else the system's text for `result`. None for a slot
// that answers a number. Takes the thread's error info: a second call for the same failure knows `result`
// only.
std::wstring LibraryErrorText(LibrarySlot slot, std::optional<HRESULT> result);
// The same, and whether it is one of the refusals that are foreseen, behind which nothing has changed.
struct LibraryFault {
  std::wstring text;
  bool isRefusal;
};
LibraryFault TakeLibraryFault(LibrarySlot slot, std::optional<HRESULT> result);
// What the exception in flight says, for people; call it inside a catch handler. Raises nothing but
// std::bad_alloc.
std::wstring CurrentFaultText();
// Raises HostError with "`doing`: text of the failure" when `result` is a failure. Call it right after the
// library's call and on the same thread, where the error info is.
void CheckResult(HRESULT result, const std::wstring& doing, LibrarySlot slot = LibrarySlot::kOther);
// The same for an operation on an entry, which may also have been declined without a failure: anything but
// S_OK raises.
void CheckDone(HRESULT result, const std::wstring& doing, LibrarySlot slot);

}  // namespace smh
