// Why a change was not made, in words for people.
#pragma once

#include "infra/runtime/exceptions.h"

#include <string>

namespace smh {

// A change that was refused before it began, or taken back whole: nothing was changed. `code` is the Win32
// error that the boundary answers with the text.
class EChangeRefused : public Exception {
 public:
  EChangeRefused(DWORD code, std::wstring text) : Exception(std::move(text)), code_(code) {}
  const wchar_t* ClassName() const noexcept override { return L"EChangeRefused"; }
  HRESULT Result() const noexcept override { return HRESULT_FROM_WIN32(code_); }
  DWORD Code() const noexcept { return code_; }

 private:
  DWORD code_;
};

// Somebody else has changed the entry since it was listed, or since the change read it.
[[noreturn]] inline void RaiseChangedMeanwhile() {
  throw EChangeRefused(ERROR_REVISION_MISMATCH, L"changed meanwhile by another program");
}
// The place where the entry would go holds another one.
[[noreturn]] inline void RaiseNameTaken() {
  throw EChangeRefused(ERROR_ALREADY_EXISTS, L"another entry of that name stands there");
}
// `what` is the name or the command.
[[noreturn]] inline void RaiseTooLong(const std::wstring& what) {
  throw EChangeRefused(ERROR_FILENAME_EXCED_RANGE, L"The " + what + L" is too long.");
}
[[noreturn]] inline void RaiseChangeUnderWay() {
  throw EChangeRefused(ERROR_BUSY, L"another change is under way");
}

}  // namespace smh
