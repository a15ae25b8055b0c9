#include "core/contracts/boundary_call.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/exceptions.h"

#include <oleauto.h>

#include <new>

namespace smh {

namespace {

void SetThreadErrorInfo(const wchar_t* message, const wchar_t* source) noexcept {
  ComPtr<ICreateErrorInfo> info;
  if (FAILED(CreateErrorInfo(info.Put()))) return;
  // The setters copy; OLE's declarations lack const.
  info->SetDescription(const_cast<wchar_t*>(message));
  info->SetSource(const_cast<wchar_t*>(source));
  ComPtr<IErrorInfo> readable;
  if (SUCCEEDED(info->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(readable.Put())))) {
    SetErrorInfo(0, readable.Get());
  }
}

}  // namespace

HRESULT ReportCurrentException() noexcept {
  try {
    throw;
  } catch (const Exception& exception) {
    SetThreadErrorInfo(exception.Message().c_str(), exception.ClassName());
    return FAILED(exception.Result()) ? exception.Result() : E_FAIL;
  } catch (const std::bad_alloc&) {
    SetThreadErrorInfo(L"Out of memory", L"EOutOfMemory");
    return E_FAIL;
  } catch (...) {
    SetThreadErrorInfo(L"Unexpected error", L"Exception");
    return E_FAIL;
  }
}

HRESULT ReportFailure(HRESULT result, const wchar_t* message) noexcept {
  SetThreadErrorInfo(message, L"Exception");
  return result;
}

void ClearErrorInfo() noexcept {
  SetErrorInfo(0, nullptr);
}

}  // namespace smh
