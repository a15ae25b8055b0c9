// Replaces a function that a module imports, until the end of the scope: for counting calls and for faults
// that the platform does not produce on demand. Functions looked up at run time are not reached.
#pragma once

#include "infra/runtime/import_function.h"

#include <windows.h>

#include <cstring>
#include <memory>

namespace smh::test {

class ImportPatch {
 public:
  // `replacement` has the function's own type. A null module is this program. Throws std::runtime_error when
  // the module does not import the function.
  template <typename Function>
  ImportPatch(const char* name, Function* replacement, HMODULE module = nullptr)
      : ImportPatch(module, name, AddressOf(replacement)) {}
  // The same for a table of hooks: functions of any type by address.
  static std::unique_ptr<ImportPatch> IfImported(HMODULE module, const char* name, void* replacement);
  ~ImportPatch();
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;

  // What the module called before.
  void* Original() const noexcept { return reinterpret_cast<void*>(original_); }

 private:
  ImportPatch(HMODULE module, const char* name, ULONG_PTR replacement);

  template <typename Function>
  static ULONG_PTR AddressOf(Function* function) noexcept {
    ULONG_PTR address;
    std::memcpy(&address, &function, sizeof(address));
    return address;
  }

  ULONG_PTR* slot_;
  ULONG_PTR original_;
};

// The system's own function, for a replacement to call: this program's import leads to the replacement.
template <typename Function>
Function* RealFunction(const wchar_t* library, const char* name) noexcept {
  return ImportFunction<Function*>(GetModuleHandleW(library), name);
}

}  // namespace smh::test
