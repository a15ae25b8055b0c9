// COM initialised for the calling thread for the length of a scope. Only what succeeded is undone; a thread
// that has chosen the other model already keeps it.
#pragma once

#include <objbase.h>

namespace smh {

class ScopedCom {
 public:
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
