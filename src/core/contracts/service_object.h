// The base of the services that a sibling hands out. A service is one constant-initialised object of the
// process: it is handed out uncounted, lives as long as the module, and reference counts do not change it.
#pragma once

#include <unknwn.h>

namespace smh {

template <typename Interface>
class ServiceObject : public Interface {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    const bool known = IsEqualGUID(wanted, Interface::iid) || IsEqualGUID(wanted, IID_IUnknown);
    *object = known ? static_cast<Interface*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
};

// Hands a reference to `service` to the caller.
template <typename Interface>
HRESULT AnswerService(Interface** out, Interface& service) noexcept {
  if (out == nullptr) return E_POINTER;
  service.AddRef();
  *out = &service;
  return S_OK;
}

}  // namespace smh
