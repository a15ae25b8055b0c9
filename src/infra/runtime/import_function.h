// A function that is looked up at run time, typed from its own declaration.
#pragma once

#include <windows.h>

#include <cstring>

namespace smh {

// The function `name` of a loaded module, or null. `Function` is a function pointer type.
template <typename Function>
Function ImportFunction(HMODULE module, const char* name) noexcept {
  static_assert(sizeof(Function) == sizeof(FARPROC));
  Function result = nullptr;
  if (module == nullptr) return result;
  const FARPROC address = GetProcAddress(module, name);
  std::memcpy(static_cast<void*>(&result), static_cast<const void*>(&address), sizeof(result));
  return result;
}

}  // namespace smh
