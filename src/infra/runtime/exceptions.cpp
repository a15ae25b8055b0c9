#include "infra/runtime/exceptions.h"

namespace smh {

// Put together by hand: formatting raises one of these exceptions and builds upon this unit.
EOSError::EOSError(DWORD code)
    : Exception(L"System Error.  Code: " + std::to_wstring(static_cast<int>(code)) + L".\r\n" +
                SystemErrorText(code)),
      code_(code) {}

EOleSysError::EOleSysError(HRESULT result)
    : Exception(SystemErrorText(static_cast<DWORD>(result))), result_(result) {}

std::wstring SystemErrorText(DWORD code) {
  wchar_t buffer[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
  while (length > 0 && buffer[length - 1] <= L' ') --length;
  return std::wstring(buffer, length);
}

void RaiseOSError(DWORD code) {
  throw EOSError(code);
}

void RaiseLastOSError() {
  RaiseOSError(GetLastError());
}

void CheckStatus(LSTATUS status) {
  if (status != ERROR_SUCCESS) RaiseOSError(static_cast<DWORD>(status));
}

}  // namespace smh
