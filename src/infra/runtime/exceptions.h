// The exceptions of the system. They never leave a module: every slot, export, thread procedure and
// callback turns them into a result.
#pragma once

#include <windows.h>

#include <exception>
#include <string>

namespace smh {

// Base of all: a class name for the log and the error info, and a message for people.
class Exception : public std::exception {
 public:
  explicit Exception(std::wstring message) : message_(std::move(message)) {}

  virtual const wchar_t* ClassName() const noexcept { return L"Exception"; }
  // What the boundary answers for this exception.
  virtual HRESULT Result() const noexcept { return E_FAIL; }
  const std::wstring& Message() const noexcept { return message_; }
  const char* what() const noexcept override { return "smh::Exception"; }

 private:
  std::wstring message_;
};

// A failed call of the operating system: "System Error.  Code: %d.\r\n%s".
class EOSError : public Exception {
 public:
  explicit EOSError(DWORD code);
  const wchar_t* ClassName() const noexcept override { return L"EOSError"; }
  HRESULT Result() const noexcept override { return HRESULT_FROM_WIN32(code_); }
  DWORD Code() const noexcept { return code_; }

 private:
  DWORD code_;
};

// A call that must not be made in this state; see assertion.h.
class EAssertionFailed : public Exception {
 public:
  using Exception::Exception;
  const wchar_t* ClassName() const noexcept override { return L"EAssertionFailed"; }
  HRESULT Result() const noexcept override { return E_UNEXPECTED; }
};

// A text that cannot be formatted or converted.
class EConvertError : public Exception {
 public:
  using Exception::Exception;
  const wchar_t* ClassName() const noexcept override { return L"EConvertError"; }
};

// A failed COM call.
class EOleSysError : public Exception {
 public:
  explicit EOleSysError(HRESULT result);
  const wchar_t* ClassName() const noexcept override { return L"EOleSysError"; }
  HRESULT Result() const noexcept override { return result_; }

 private:
  HRESULT result_;
};

class ERegistryException : public Exception {
 public:
  using Exception::Exception;
  const wchar_t* ClassName() const noexcept override { return L"ERegistryException"; }
};

// Quiet: ends the current work without being an error. Logging handlers pass it on unlogged, and only a
// thread procedure swallows it.
class EAbort : public Exception {
 public:
  EAbort() : Exception(L"Operation aborted") {}
  const wchar_t* ClassName() const noexcept override { return L"EAbort"; }
  HRESULT Result() const noexcept override { return E_ABORT; }
};

// The system's text for an error code, without trailing line ends; empty when there is none.
std::wstring SystemErrorText(DWORD code);

[[noreturn]] void RaiseOSError(DWORD code);
// Raises EOSError for the calling thread's last error.
[[noreturn]] void RaiseLastOSError();
// Raises EOSError when a Win32 status is not ERROR_SUCCESS.
void CheckStatus(LSTATUS status);

}  // namespace smh
