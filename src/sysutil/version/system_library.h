// System libraries and their functions that are looked up at run time. Both are module-global, initialised at
// compile time, and may be used by any thread.
#pragma once

#include "infra/runtime/exceptions.h"
#include "infra/runtime/import_function.h"

#include <atomic>

namespace smh {

// Loaded on first need, by its bare name, and freed when the module stops.
class SystemLibrary {
 public:
  // `file` is a literal.
  constexpr explicit SystemLibrary(const wchar_t* file) noexcept : file_(file) {}

  // Borrowed until Free. Raises EOSError.
  HMODULE Loaded();
  // No function of the library may be used any more; a failure is ignored.
  void Free() noexcept;

 private:
  const wchar_t* const file_;
  std::atomic<HMODULE> module_{nullptr};
};

// A function of a library, resolved on first need.
template <typename Function>
class SystemFunction {
 public:
  // Valid until the library is freed. `name` may be an ordinal. Raises EOSError when the library or the
  // function is missing.
  Function Resolved(SystemLibrary& library, const char* name) {
    if (const Function function = address_.load()) return function;
    const auto function = ImportFunction<Function>(library.Loaded(), name);
    if (function == nullptr) RaiseLastOSError();
    address_.store(function);
    return function;
  }
  // Before the library is freed.
  void Forget() noexcept { address_.store(nullptr); }

 private:
  std::atomic<Function> address_{nullptr};
};

}  // namespace smh
