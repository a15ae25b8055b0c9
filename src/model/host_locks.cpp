#include "model/host_locks.h"

#include "model/change_lock.h"
#include "model/item_list.h"
#include "model/parkable_thread.h"

namespace smh {

namespace {

bool IsChangeDone(DWORD limit) noexcept {
  if (!g_changeLock->TryEnter(limit)) return false;
  g_changeLock->Leave();
  return true;
}

bool IsListLeft(CriticalSection& lock, DWORD limit) noexcept {
  constexpr DWORD kStepMs = 10;
  const DWORD since = GetTickCount();
  while (!lock.TryEnter()) {
    if (GetTickCount() - since >= limit) return false;
    Sleep(kStepMs);
  }
  lock.Leave();
  return true;
}

}  // namespace

void AwaitHostsAtUnload(StopMode& mode) noexcept {
  if (mode != StopMode::kUnload) return;
  if (!IsChangeDone(kThreadUnloadLimitMs) || !IsListLeft(Items().Lock(), kThreadUnloadLimitMs)) {
    mode = StopMode::kUnloadBroken;
  }
}

}  // namespace smh
