// The base of every object that hands out interfaces. Each interface carries its identifier as a static
// member `iid`. IUnknown's operations may be called from any thread; they never fail otherwise than said.
#pragma once

#include "infra/runtime/com_ptr.h"

#include <unknwn.h>

#include <utility>

namespace smh {

// Lifetime of an object that is made with `new`: it starts with one reference, owned by its maker, and is
// destroyed by the last release.
class CountedLifetime {
 public:
  CountedLifetime(const CountedLifetime&) = delete;
  CountedLifetime& operator=(const CountedLifetime&) = delete;

 protected:
  CountedLifetime() noexcept = default;
  // Pure: nothing but what derives from it is deleted.
  virtual ~CountedLifetime() = 0;
  // What the last release does, on its thread.
  virtual void Destroy() noexcept { delete this; }

  // Count a reference more or less; both answer the count that is left. Any thread.
  ULONG Acquire() noexcept { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG Drop() noexcept {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) Destroy();
    return static_cast<ULONG>(left);
  }

 private:
  LONG references_ = 1;
};

inline CountedLifetime::~CountedLifetime() = default;

// Lifetime of an object that is defined `constinit` and lives as long as its module: references do not change
// it, and their counts say that one is always left.
class ModuleLifetime {
 public:
  ModuleLifetime(const ModuleLifetime&) = delete;
  ModuleLifetime& operator=(const ModuleLifetime&) = delete;

 protected:
  ModuleLifetime() noexcept = default;
  ~ModuleLifetime() = default;

  ULONG Acquire() const noexcept { return 2; }
  ULONG Drop() const noexcept { return 1; }
};

// QueryInterface answers IUnknown and the listed interfaces with a reference for the caller, else null and
// E_NOINTERFACE.
template <typename Lifetime, typename... Interfaces>
class InterfaceObject : public Interfaces..., protected Lifetime {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    (Answer<Interfaces>(wanted, object) || ...);
    if (*object == nullptr) return E_NOINTERFACE;
    this->Acquire();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return this->Acquire(); }
  ULONG STDMETHODCALLTYPE Release() override { return this->Drop(); }

 protected:
  ~InterfaceObject() = default;  // NOLINT(modernize-use-override): virtual with one of the lifetimes only

 private:
  template <typename Interface>
  bool Answer(REFIID wanted, void** object) noexcept {
    if (!IsEqualGUID(wanted, Interface::iid) && !IsEqualGUID(wanted, IID_IUnknown)) return false;
    *object = static_cast<Interface*>(this);
    return true;
  }
};

template <typename... Interfaces>
using ComObject = InterfaceObject<CountedLifetime, Interfaces...>;
// The service of a module: GetInstance hands it out uncounted.
template <typename Interface>
using ServiceObject = InterfaceObject<ModuleLifetime, Interface>;

// An object whose one reference the result owns. Raises std::bad_alloc and what the constructor raises.
template <typename Class, typename... Arguments>
ComPtr<Class> MakeComObject(Arguments&&... arguments) {
  return ComPtr<Class>::Adopt(new Class(std::forward<Arguments>(arguments)...));
}

// Stores `service` with a reference for the caller; E_POINTER without an out argument.
template <typename Interface>
HRESULT AnswerService(Interface** out, Interface& service) noexcept {
  if (out == nullptr) return E_POINTER;
  service.AddRef();
  *out = &service;
  return S_OK;
}

}  // namespace smh
