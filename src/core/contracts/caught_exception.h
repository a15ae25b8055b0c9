// What an exception in flight means to a caller outside of the module.
#pragma once

#include <windows.h>

namespace smh {

// Neither `result` nor `status` ever says success.
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

}  // namespace smh
