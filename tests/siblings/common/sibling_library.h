// A sibling library loaded by full path from the test program's folder, for the life of the object.
#pragma once

#include "core/contracts/boundary_string.h"
#include "infra/runtime/import_function.h"
#include "tests/support/child_process.h"

#include <unknwn.h>

#include <cstring>
#include <stdexcept>

namespace smh::test {

class SiblingLibrary {
 public:
  // "basekit.dll". Throws std::runtime_error.
  explicit SiblingLibrary(const wchar_t* file)
      : module_(LoadLibraryW((ThisFolder() + file).c_str())),
        getInstance_(ImportFunction<decltype(getInstance_)>(module_.Get(), "GetInstance")) {
    if (getInstance_ == nullptr) throw std::runtime_error("a sibling library cannot be loaded");
  }

  HMODULE Module() const noexcept { return module_.Get(); }
  void* Instance(const wchar_t* id) const noexcept { return getInstance_(id, 0); }
  template <typename Interface>
  Interface* Service() const noexcept {
    return static_cast<Interface*>(Instance(Interface::kId));
  }

 private:
  ScopedModule module_;
  void*(__stdcall* getInstance_)(const wchar_t* id, DWORD param);
};

// Calls a slot by its position after IUnknown's three, as a client does that knows the published table only.
template <typename Result, typename... Arguments>
Result CallSlot(IUnknown* object, std::size_t position, Arguments... arguments) {
  using Slot = Result(__stdcall*)(IUnknown*, Arguments...);
  void* const* const table = *reinterpret_cast<void* const* const*>(object);
  Slot slot;
  std::memcpy(&slot, &table[2 + position], sizeof(slot));
  return slot(object, arguments...);
}

}  // namespace smh::test
