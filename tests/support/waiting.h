// Waiting for what another thread or process does.
#pragma once

#include <windows.h>

namespace smh::test {

// Polls until `condition` holds; false when that takes longer than `limit` milliseconds.
template <typename Condition>
bool WaitUntil(Condition&& condition, DWORD limit = 15'000) {
  const ULONGLONG begin = GetTickCount64();
  while (!condition()) {
    if (GetTickCount64() - begin > limit) return false;
    Sleep(10);
  }
  return true;
}

}  // namespace smh::test
