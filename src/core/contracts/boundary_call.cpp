#include "core/contracts/boundary_call.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/exceptions.h"

#include <oleauto.h>

#include <new>

namespace smh {

namespace {

// An exception of the system that carries a success (a call that failed without saying why) is a failure all
// the same.
CaughtException Describe(const Exception& exception, LSTATUS status) noexcept {
  const HRESULT result = exception.Result();
  return {FAILED(result) ? result : E_FAIL, status != ERROR_SUCCESS ? status : ERROR_INTERNAL_ERROR,
          exception.Message().c_str(), exception.ClassName()};
}

}  // namespace

CaughtException DescribeCaught() noexcept {
  try {
    throw;
  } catch (const EOSError& exception) {
    return Describe(exception, static_cast<LSTATUS>(exception.Code()));
  } catch (const Exception& exception) {
    return Describe(exception, ERROR_INTERNAL_ERROR);
  } catch (const std::bad_alloc&) {
    return {E_FAIL, ERROR_OUTOFMEMORY, L"Out of memory", L"EOutOfMemory"};
  } catch (...) {
    return {E_FAIL, ERROR_INTERNAL_ERROR, L"Unexpected error", L"Exception"};
  }
}

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

HRESULT ReportDeclined(const std::wstring& text) noexcept {
  return text.empty() ? S_OK : ReportFailure(S_FALSE, text.c_str(), L"Declined");
}

void ClearErrorInfo() noexcept {
  SetErrorInfo(0, nullptr);
}

}  // namespace smh
