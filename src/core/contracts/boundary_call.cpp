#include "core/contracts/boundary_call.h"

#include "infra/runtime/com_ptr.h"

#include <oleauto.h>

namespace smh {

HRESULT ReportFailure(HRESULT result, const wchar_t* message, const wchar_t* className) noexcept {
  ComPtr<ICreateErrorInfo> info;
  if (FAILED(CreateErrorInfo(info.Put()))) return result;
  // The setters copy; OLE's declarations lack const.
  info->SetDescription(const_cast<wchar_t*>(message));
  info->SetSource(const_cast<wchar_t*>(className));
  ComPtr<IErrorInfo> readable;
  if (SUCCEEDED(info->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(readable.Put())))) {
    SetErrorInfo(0, readable.Get());
  }
  return result;
}

void ClearErrorInfo() noexcept {
  SetErrorInfo(0, nullptr);
}

}  // namespace smh
