// The edge of the module: a slot's body runs inside one of these, and no exception passes them.
//
// Each clears the thread's error info first and, on failure, sets it: description = the message, source = the
// exception's class.
#pragma once

#include <windows.h>

#include <utility>

namespace smh {

// For use inside a catch handler: sets the error info for the exception in flight and answers its result.
HRESULT ReportCurrentException() noexcept;
// The same for a result without exception.
HRESULT ReportFailure(HRESULT result, const wchar_t* message) noexcept;
void ClearErrorInfo() noexcept;

// An operation without a result.
template <typename Body>
HRESULT BoundaryResult(Body&& body) noexcept {
  ClearErrorInfo();
  try {
    body();
    return S_OK;
  } catch (...) {
    return ReportCurrentException();
  }
}

// An operation with an out argument; null for it is E_POINTER.
template <typename Out, typename Body>
HRESULT BoundaryResult(Out* out, Body&& body) noexcept {
  if (out != nullptr) return BoundaryResult(std::forward<Body>(body));
  ClearErrorInfo();
  return ReportFailure(E_POINTER, L"An out argument is null.");
}

// An operation with a result; `neutral` is answered when it fails.
template <typename Result, typename Body>
Result BoundaryValue(Result neutral, Body&& body) noexcept {
  ClearErrorInfo();
  try {
    return body();
  } catch (...) {
    ReportCurrentException();
    return neutral;
  }
}

// Of a boolean argument only the low byte counts.
inline bool BooleanArgument(BOOL value) noexcept {
  return (value & 0xFF) != 0;
}

}  // namespace smh
