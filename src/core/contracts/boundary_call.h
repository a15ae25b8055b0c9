// The edge of a module: a slot's body runs inside one of these, and no exception passes them.
//
// The library's own slots use the Boundary forms: they clear the thread's error info first and, on failure,
// set it (description = the message, source = the exception's class); S_FALSE may have a text there too. The
// siblings' slots use the Guarded forms, which leave the error info alone: the library calls them from within
// its own slots. All may be called from any thread, take no lock, and touch nothing but what `body` touches.
#pragma once

#include "core/contracts/boundary_string.h"

#include <windows.h>

#include <string>
#include <utility>

namespace smh {

// What an exception in flight means to a caller outside of the module. Neither `result` nor `status` ever
// says success.
struct CaughtException {
  HRESULT result;  // E_FAIL for an exception without one of its own, which std::bad_alloc is too
  LSTATUS status;  // a Win32 status; ERROR_INTERNAL_ERROR for an exception without one
  // For people, and the class of the exception. Both belong to the exception: valid until the handler that
  // asked has ended.
  const wchar_t* message;
  const wchar_t* className;
};

// Describes the exception in flight; call it inside a catch handler only. From any thread.
CaughtException DescribeCaught() noexcept;

namespace detail {

// What `body` returns, or what `failed` makes of the exception that left it.
template <typename Answer, typename Body, typename Failed>
Answer AnswerOf(Body&& body, Failed&& failed) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return failed(DescribeCaught());
  }
}

// As above for a body without a result, S_OK when it ends well.
template <typename Body, typename Failed>
HRESULT ResultOf(Body&& body, Failed&& failed) noexcept {
  return AnswerOf<HRESULT>(
      [&] {
        std::forward<Body>(body)();
        return S_OK;
      },
      failed);
}

}  // namespace detail

// Sets the thread's error info and answers `result`; copies the texts. Without memory for the info none is
// set.
HRESULT ReportFailure(HRESULT result, const wchar_t* message, const wchar_t* className) noexcept;
// As above, S_FALSE for work that was declined without a failure: `text` says to people why. S_OK, and no
// error info, when it is empty.
HRESULT ReportDeclined(const std::wstring& text) noexcept;
// Takes the thread's error info away.
void ClearErrorInfo() noexcept;

// The library: an operation without a result.
template <typename Body>
HRESULT BoundaryResult(Body&& body) noexcept {
  ClearErrorInfo();
  return detail::ResultOf(std::forward<Body>(body), [](const CaughtException& caught) {
    return ReportFailure(caught.result, caught.message, caught.className);
  });
}

// The library: an operation with an out argument; null for it is E_POINTER. On failure what `body` stored
// there stays.
template <typename Out, typename Body>
HRESULT BoundaryResult(Out* out, Body&& body) noexcept {
  if (out != nullptr) return BoundaryResult(std::forward<Body>(body));
  ClearErrorInfo();
  return ReportFailure(E_POINTER, L"An out argument is null.", L"Exception");
}

// The library: an operation with a result; `neutral` is answered when it fails.
template <typename Result, typename Body>
Result BoundaryValue(Result neutral, Body&& body) noexcept {
  ClearErrorInfo();
  return detail::AnswerOf<Result>(std::forward<Body>(body), [&](const CaughtException& caught) {
    ReportFailure(caught.result, caught.message, caught.className);
    return neutral;
  });
}

// The library: an operation that may decline its work without a failure. `body` returns what ReportDeclined
// takes. An operation with a result calls that itself, inside its body, and returns its neutral value.
template <typename Body>
HRESULT BoundaryOutcome(Body&& body) noexcept {
  ClearErrorInfo();
  return detail::AnswerOf<HRESULT>([&] { return ReportDeclined(std::forward<Body>(body)()); },
                                   [](const CaughtException& caught) {
                                     return ReportFailure(caught.result, caught.message, caught.className);
                                   });
}

// A sibling: an operation without a result. Without error info the result itself says that memory ran out.
template <typename Body>
HRESULT GuardedResult(Body&& body) noexcept {
  return detail::ResultOf(std::forward<Body>(body), [](const CaughtException& caught) {
    return caught.status == ERROR_OUTOFMEMORY ? E_OUTOFMEMORY : caught.result;
  });
}

// A sibling: stores the text that `body` returns as a boundary string, whose one reference is the caller's;
// the empty text on failure, E_POINTER without an out argument.
template <typename Body>
HRESULT GuardedText(BoundaryText* out, Body&& body) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return GuardedResult([&] { *out = MakeBoundaryText(std::forward<Body>(body)()); });
}

// A sibling: an operation with a result; `neutral` is answered when it fails.
template <typename Result, typename Body>
Result GuardedValue(Result neutral, Body&& body) noexcept {
  return detail::AnswerOf<Result>(std::forward<Body>(body), [&](const CaughtException&) { return neutral; });
}

// A sibling: an operation whose result is a Win32 status.
template <typename Body>
LSTATUS GuardedStatus(Body&& body) noexcept {
  return detail::AnswerOf<LSTATUS>(std::forward<Body>(body),
                                   [](const CaughtException& caught) { return caught.status; });
}

// Of a boolean argument only the low byte counts.
inline bool BooleanArgument(BOOL value) noexcept {
  return (value & 0xFF) != 0;
}

}  // namespace smh
