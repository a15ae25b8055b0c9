// Waiting for what another thread or process does, and time.
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

// How long that took.
template <typename Action>
double Milliseconds(Action&& action) {
  LARGE_INTEGER frequency, begin, end;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&begin);
  action();
  QueryPerformanceCounter(&end);
  return 1000.0 * static_cast<double>(end.QuadPart - begin.QuadPart) /
         static_cast<double>(frequency.QuadPart);
}

}  // namespace smh::test
