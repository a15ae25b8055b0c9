#include "infra/module_runtime/runtime_threads.h"

#include <windows.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace smh {

namespace {

constexpr pthread_key_t kMostKeys = 4;
using Destructor = void (*)(void*);

// What a thread has set. Freed by the thread's end, or by the module's.
struct ThreadValues {
  ThreadValues* next;
  ThreadValues** link;  // what points to this one
  void* values[kMostKeys];
};

// Guards what follows, but for the values, which are their thread's. Held for a few assignments; no other
// lock is entered under it.
constinit SRWLOCK g_lock = SRWLOCK_INIT;
constinit ThreadValues* g_first = nullptr;
constinit Destructor g_destructors[kMostKeys] = {};
// Read without the lock, and written last when a key is made.
constinit std::atomic<pthread_key_t> g_keyCount = 0;
constinit std::atomic<DWORD> g_index = TLS_OUT_OF_INDEXES;

class KeptLastError {
 public:
  KeptLastError() noexcept = default;
  ~KeptLastError() { SetLastError(error_); }
  KeptLastError(const KeptLastError&) = delete;
  KeptLastError& operator=(const KeptLastError&) = delete;

 private:
  const DWORD error_ = GetLastError();
};

ThreadValues* ValuesOfCaller() noexcept {
  const DWORD index = g_index;
  return index == TLS_OUT_OF_INDEXES ? nullptr : static_cast<ThreadValues*>(TlsGetValue(index));
}

// Null without memory.
ThreadValues* MakeValuesOfCaller() noexcept {
  auto* const made = static_cast<ThreadValues*>(std::calloc(1, sizeof(ThreadValues)));
  if (made == nullptr) return nullptr;
  if (TlsSetValue(g_index, made) == FALSE) {
    std::free(made);
    return nullptr;
  }
  AcquireSRWLockExclusive(&g_lock);
  made->next = g_first;
  made->link = &g_first;
  if (g_first != nullptr) g_first->link = &made->next;
  g_first = made;
  ReleaseSRWLockExclusive(&g_lock);
  return made;
}

void Destroy(ThreadValues* values) noexcept {
  for (pthread_key_t key = 0; key < g_keyCount; ++key) {
    void* const value = std::exchange(values->values[key], nullptr);
    if (value != nullptr && g_destructors[key] != nullptr) g_destructors[key](value);
  }
  std::free(values);
}

// A system's lock in the place of a POSIX one. The toolchain's static initialisers are small negative
// numbers, which the system's lock never is.
template <typename Native>
Native* NativeOf(std::intptr_t* place) noexcept {
  static_assert(sizeof(Native) == sizeof(*place));
  for (std::intptr_t initial : {PTHREAD_MUTEX_INITIALIZER, PTHREAD_RECURSIVE_MUTEX_INITIALIZER}) {
    std::atomic_ref(*place).compare_exchange_strong(initial, 0);
  }
  return reinterpret_cast<Native*>(place);
}

BOOL CALLBACK RunOnce(INIT_ONCE*, void* function, void**) {
  reinterpret_cast<void (*)()>(function)();
  return TRUE;
}

}  // namespace

void ReleaseRuntimeThread() noexcept {
  ThreadValues* const values = ValuesOfCaller();
  if (values == nullptr) return;
  TlsSetValue(g_index, nullptr);
  AcquireSRWLockExclusive(&g_lock);
  *values->link = values->next;
  if (values->next != nullptr) values->next->link = values->link;
  ReleaseSRWLockExclusive(&g_lock);
  Destroy(values);
}

void ReleaseRuntimeThreads() noexcept {
  if (TryAcquireSRWLockExclusive(&g_lock) == FALSE) return;
  ThreadValues* first = std::exchange(g_first, nullptr);
  if (const DWORD index = g_index.exchange(TLS_OUT_OF_INDEXES); index != TLS_OUT_OF_INDEXES) TlsFree(index);
  ReleaseSRWLockExclusive(&g_lock);
  while (first != nullptr) Destroy(std::exchange(first, first->next));
}

}  // namespace smh

using namespace smh;

int pthread_key_create(pthread_key_t* key, Destructor destructor) {
  const KeptLastError kept;
  AcquireSRWLockExclusive(&g_lock);
  if (g_index == TLS_OUT_OF_INDEXES) g_index = TlsAlloc();
  const bool made = g_index != TLS_OUT_OF_INDEXES && g_keyCount < kMostKeys;
  if (made) {
    *key = g_keyCount;
    g_destructors[*key] = destructor;
    g_keyCount = *key + 1;
  }
  ReleaseSRWLockExclusive(&g_lock);
  return made ? 0 : EAGAIN;
}

void* pthread_getspecific(pthread_key_t key) {
  const KeptLastError kept;
  const ThreadValues* const values = ValuesOfCaller();
  return values == nullptr ? nullptr : values->values[key];
}

int pthread_setspecific(pthread_key_t key, const void* value) {
  const KeptLastError kept;
  ThreadValues* values = ValuesOfCaller();
  if (values == nullptr) values = MakeValuesOfCaller();
  if (values == nullptr) return ENOMEM;
  values->values[key] = const_cast<void*>(value);
  return 0;
}

int pthread_once(pthread_once_t* once, void (*function)()) {
  static_assert(sizeof(INIT_ONCE) == sizeof(*once) && PTHREAD_ONCE_INIT == 0);
  const KeptLastError kept;
  InitOnceExecuteOnce(reinterpret_cast<INIT_ONCE*>(once), RunOnce, reinterpret_cast<void*>(function),
                      nullptr);
  return 0;
}

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t*) {
  *mutex = 0;
  return 0;
}

int pthread_mutex_destroy(pthread_mutex_t*) {
  return 0;
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
  const KeptLastError kept;
  AcquireSRWLockExclusive(NativeOf<SRWLOCK>(mutex));
  return 0;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ReleaseSRWLockExclusive(NativeOf<SRWLOCK>(mutex));
  return 0;
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  const KeptLastError kept;
  SleepConditionVariableSRW(NativeOf<CONDITION_VARIABLE>(condition), NativeOf<SRWLOCK>(mutex), INFINITE, 0);
  return 0;
}

int pthread_cond_broadcast(pthread_cond_t* condition) {
  WakeAllConditionVariable(NativeOf<CONDITION_VARIABLE>(condition));
  return 0;
}
