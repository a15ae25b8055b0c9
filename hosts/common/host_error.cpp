#include "host_error.h"

#include "infra/com_ptr.h"
#include "infra/text.h"

#include <oleauto.h>

namespace smh {

std::wstring SystemErrorText(HRESULT result) {
  wchar_t buffer[512];
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      static_cast<DWORD>(result), 0, buffer, ARRAYSIZE(buffer), nullptr);
  wchar_t number[16];
  wsprintfW(number, L"0x%08X", static_cast<unsigned>(result));
  const std::wstring text = Trim(std::wstring_view(buffer, length));
  return text.empty() ? L"Error " + std::wstring(number) : text + L" (" + number + L")";
}

std::wstring LibraryErrorText(HRESULT result) {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) == S_OK && info) {
    BSTR description = nullptr;
    if (SUCCEEDED(info->GetDescription(&description)) && description != nullptr) {
      std::wstring text = Trim(std::wstring_view(description, SysStringLen(description)));
      SysFreeString(description);
      if (!text.empty()) return text;
    }
  }
  return SystemErrorText(result);
}

void CheckResult(HRESULT result, const std::wstring& doing) {
  if (FAILED(result)) throw HostError(doing + L": " + LibraryErrorText(result));
}

}  // namespace smh
