// Failures of the hosts, with the text for the user and the exit code, and the texts of others' failures.
#pragma once

#include "hosts/common/phrase.h"
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
  explicit HostError(const Phrase& message, ExitCode code = ExitCode::kFailed);
  HostError(const Phrase& message, std::span<const std::wstring> lines, ExitCode code = ExitCode::kFailed);
  // A line below the others, made printable.
  void Add(const Phrase& line);
  // All lines, with a line feed between two; and the same as it is shown.
  const Phrase& Fault() const noexcept { return message_; }
  const std::wstring& Message() const noexcept { return message_.Shown(); }
  ExitCode Code() const noexcept { return code_; }

 private:
  Phrase message_;
  ExitCode code_;
};

// For a command line that does not fit; the program ends with ExitCode::kUsage.
inline HostError UsageError(const Phrase& message) {
  return HostError(message, ExitCode::kUsage);
}

// The system's text for an HRESULT or Win32 code in one line, with the number in hexadecimal; "Error" and the
// number when it knows none. In the system's own language where it has none of the two that a phrase is in.
Phrase SystemErrorText(HRESULT result);
// Why the library's last call on this thread, of that slot, has failed or did nothing: the host's words where
// it has any (refusal.h), else what the library says, else the system's text for `result`. None for a slot
// that answers a number. Takes the thread's error info: a second call for the same failure knows `result`
// only.
Phrase LibraryErrorText(LibrarySlot slot, std::optional<HRESULT> result);
// The same, and whether it is one of the refusals that are foreseen, behind which nothing has changed.
struct LibraryFault {
  Phrase text;
  bool isRefusal;
};
LibraryFault TakeLibraryFault(LibrarySlot slot, std::optional<HRESULT> result);
// What the exception in flight says; call them inside a catch handler. They raise nothing but std::bad_alloc.
Phrase CurrentFault();
inline std::wstring CurrentFaultText() {
  return CurrentFault().Shown();
}

// Raises HostError with "`doing`: text of the failure". Call it right after the library's call and on the
// same thread, where the error info is.
[[noreturn]] void RaiseFailure(HRESULT result, const Phrase& doing, LibrarySlot slot);
// The same when `result` is a failure. `doing` is what a Phrase is made of.
void CheckResult(HRESULT result, const auto& doing, LibrarySlot slot = LibrarySlot::kOther) {
  if (FAILED(result)) RaiseFailure(result, doing, slot);
}
// The same for an operation on an entry, which may also have been declined without a failure: anything but
// S_OK raises.
void CheckDone(HRESULT result, const auto& doing, LibrarySlot slot) {
  if (result != S_OK) RaiseFailure(result, doing, slot);
}

}  // namespace smh
