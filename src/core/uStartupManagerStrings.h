// The host's view of the checkpoint titles. StartupManagerHelper.h has the contract of its slots.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/com_object.h"

namespace smh {

// Every object shows the module-wide texts (model/checkpoint.h); any thread may use it.
class TStartupManagerStrings final : public ComObject<IStartupManagerStrings> {
 public:
  HRESULT STDMETHODCALLTYPE GetAddingText(BoundaryText* text) override;
  HRESULT STDMETHODCALLTYPE SetAddingText(const wchar_t* text) override;
  HRESULT STDMETHODCALLTYPE GetMovingText(BoundaryText* text) override;
  HRESULT STDMETHODCALLTYPE SetMovingText(const wchar_t* text) override;
  HRESULT STDMETHODCALLTYPE GetDeletingText(BoundaryText* text) override;
  HRESULT STDMETHODCALLTYPE SetDeletingText(const wchar_t* text) override;
  HRESULT STDMETHODCALLTYPE GetEnablingText(BoundaryText* text) override;
  HRESULT STDMETHODCALLTYPE SetEnablingText(const wchar_t* text) override;
  HRESULT STDMETHODCALLTYPE GetDisablingText(BoundaryText* text) override;
  HRESULT STDMETHODCALLTYPE SetDisablingText(const wchar_t* text) override;
  HRESULT STDMETHODCALLTYPE GetChangingText(BoundaryText* text) override;
  HRESULT STDMETHODCALLTYPE SetChangingText(const wchar_t* text) override;
};

}  // namespace smh
