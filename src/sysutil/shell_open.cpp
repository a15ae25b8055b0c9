#include "sysutil/shell_open.h"

#include <shellapi.h>

namespace smh {

namespace {

// ShellExecuteW answers more than this when it worked.
constexpr INT_PTR kLastShellError = 32;

}  // namespace

DWORD OpenWithShell(HWND owner, const std::wstring& file, const std::wstring& parameters) {
  SetLastError(ERROR_SUCCESS);
  const auto result = reinterpret_cast<INT_PTR>(
      ShellExecuteW(owner, L"open", file.c_str(), parameters.empty() ? nullptr : parameters.c_str(), nullptr,
                    SW_SHOWNORMAL));
  if (result > kLastShellError) return ERROR_SUCCESS;
  const DWORD code = GetLastError();
  if (code != ERROR_SUCCESS) return code;
  // The shell may fail without a last error; its own codes are system codes too, but 0: out of memory.
  return result != 0 ? static_cast<DWORD>(result) : DWORD{ERROR_NOT_ENOUGH_MEMORY};
}

}  // namespace smh
