#include "tests/support/process_counts.h"

#include "infra/runtime/handle.h"

#include <tlhelp32.h>

#include <array>

namespace smh::test {

// GetProcessHandleCount is not available everywhere.
int HandleCount() {
  constexpr ULONG_PTR kHighest = 0x1000;
  int count = 0;
  for (ULONG_PTR value = 4; value < kHighest; value += 4) {
    DWORD flags = 0;
    if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) ++count;
  }
  return count;
}

int ThreadCount() {
  const ScopedHandle threads(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof(entry);
  int count = 0;
  for (BOOL more = Thread32First(threads.Get(), &entry); more; more = Thread32Next(threads.Get(), &entry)) {
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  return count;
}

std::size_t HeapBytes() {
  std::array<HANDLE, 64> heaps;
  const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return bytes;
}

}  // namespace smh::test
