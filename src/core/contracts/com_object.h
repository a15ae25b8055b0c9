// A counting base for the objects behind the published interfaces. Each interface carries its identifier as
// a static member `iid`.
#pragma once

#include <unknwn.h>

#include "infra/runtime/com_ptr.h"

namespace smh {

// Starts with one reference, owned by the creator, and destroys itself with the last one. QueryInterface
// answers IUnknown and the listed interfaces, else E_NOINTERFACE.
template <typename... Interfaces>
class ComObject : public Interfaces... {
 public:
  ComObject() noexcept = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    (Answer<Interfaces>(wanted, object) || ...);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) Destroy();
    return static_cast<ULONG>(left);
  }

 protected:
  virtual ~ComObject() = default;
  // What the last release does.
  virtual void Destroy() noexcept { delete this; }

 private:
  template <typename Interface>
  bool Answer(REFIID wanted, void** object) noexcept {
    if (!IsEqualGUID(wanted, Interface::iid) && !IsEqualGUID(wanted, IID_IUnknown)) return false;
    *object = static_cast<Interface*>(this);
    return true;
  }

  LONG references_ = 1;
};

// An object whose one reference the result owns.
template <typename Class, typename... Arguments>
ComPtr<Class> MakeComObject(Arguments&&... arguments) {
  return ComPtr<Class>::Adopt(new Class(std::forward<Arguments>(arguments)...));
}

}  // namespace smh
