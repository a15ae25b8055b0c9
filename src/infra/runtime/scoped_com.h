// COM for the length of a scope.
#pragma once

#include <objbase.h>

namespace smh {

// COM initialised for the calling thread, on which the object must also end. Only what succeeded is undone; a
// thread that has chosen the other model already keeps it. A failure shows in the first use of COM.
class ScopedCom {
 public:
  // `model` is of the COINIT_... flags.
  explicit ScopedCom(DWORD model) noexcept : result_(CoInitializeEx(nullptr, model)) {}
  ~ScopedCom() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ScopedCom(const ScopedCom&) = delete;
  ScopedCom& operator=(const ScopedCom&) = delete;

 private:
  const HRESULT result_;
};

}  // namespace smh
