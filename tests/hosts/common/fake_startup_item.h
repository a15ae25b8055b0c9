// An entry of the library that answers what the test wants.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/boundary_call.h"
#include "core/contracts/com_object.h"

#include <functional>
#include <string>

namespace smh::test {

class FakeStartupItem final : public ComObject<IStartupItem> {
 public:
  std::int32_t index = 0;
  bool canDo = true;
  // What every operation does, behind the library's edge: the text is why it is declined.
  std::function<std::wstring()> operation = [] { return std::wstring(); };
  int operations = 0;

  std::int32_t STDMETHODCALLTYPE GetIndex() override { return index; }
  std::int32_t STDMETHODCALLTYPE GetLocation() override { return sulRegistryUserRun; }
  HRESULT STDMETHODCALLTYPE GetName(BoundaryText* name) override {
    *name = nullptr;
    return S_OK;
  }
  BOOL STDMETHODCALLTYPE ReadChanged() override { return FALSE; }
  std::int32_t STDMETHODCALLTYPE GetImageIndex() override { return 3; }
  HRESULT STDMETHODCALLTYPE GetProperty(std::int32_t, VARIANT* value) override {
    value->vt = VT_NULL;
    return S_OK;
  }
  BOOL STDMETHODCALLTYPE CanDo(std::int32_t) override { return canDo ? TRUE : FALSE; }
  BOOL STDMETHODCALLTYPE CanMoveTo(std::int32_t) override { return TRUE; }
  HRESULT STDMETHODCALLTYPE Delete() override { return Answer(); }
  HRESULT STDMETHODCALLTYPE Enable() override { return Answer(); }
  HRESULT STDMETHODCALLTYPE Disable() override { return Answer(); }
  HRESULT STDMETHODCALLTYPE MoveTo(std::int32_t) override { return Answer(); }
  HRESULT STDMETHODCALLTYPE ChangeCommand(const wchar_t*) override { return Answer(); }
  HRESULT STDMETHODCALLTYPE Execute(HWND) override { return Answer(); }
  HRESULT STDMETHODCALLTYPE ShowFileDetails(HWND) override { return Answer(); }
  HRESULT STDMETHODCALLTYPE ShowLocation() override { return Answer(); }

 private:
  HRESULT Answer() {
    ++operations;
    return BoundaryOutcome(operation);
  }
};

}  // namespace smh::test
