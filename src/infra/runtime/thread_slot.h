// What one object keeps for each thread: a pointer, in the system's own storage, so that it is gone with its
// thread, however that ends. No waiting, no lock.
#pragma once

#include "infra/runtime/exceptions.h"

#include <windows.h>

namespace smh {

template <typename T>
class ThreadSlot {
 public:
  // Raises EOSError when the process has no slot left.
  ThreadSlot() : slot_(TlsAlloc()) {
    if (slot_ == TLS_OUT_OF_INDEXES) RaiseLastOSError();
  }
  // What the threads have in it stays their owner's to destroy.
  ~ThreadSlot() { TlsFree(slot_); }
  ThreadSlot(const ThreadSlot&) = delete;
  ThreadSlot& operator=(const ThreadSlot&) = delete;

  // Of the calling thread; null until it sets one. Get clears the thread's last error.
  T* Get() const noexcept { return static_cast<T*>(TlsGetValue(slot_)); }
  // A thread's first one may need memory: Set raises EOSError when there is none, TrySet leaves the old
  // value.
  void Set(T* value) const {
    if (TlsSetValue(slot_, value) == FALSE) RaiseLastOSError();
  }
  void TrySet(T* value) const noexcept { TlsSetValue(slot_, value); }
  void Clear() const noexcept { TlsSetValue(slot_, nullptr); }

 private:
  const DWORD slot_;
};

}  // namespace smh
