#include "tests/support/process_counts.h"

#include "infra/runtime/handle.h"
#include "tests/support/live_blocks.h"

#include <tlhelp32.h>

#include <array>
#include <cstdio>
#include <vector>

namespace smh::test {

namespace {

bool LeavesNothingOnce(const std::function<bool()>& run) {
  constexpr int kRounds = 40;
  const int indexes = FreeTlsIndexes();
  const int handles = HandleCount();
  const long blocks = LiveBlocks();
  for (int round = 0; round < kRounds; ++round) {
    if (!run()) return false;
  }
  const long moreBlocks = LiveBlocks() - blocks;
  const int moreHandles = HandleCount() - handles;
  const int moreIndexes = indexes - FreeTlsIndexes();
  if (moreBlocks < kRounds && moreHandles < kRounds && moreIndexes < kRounds) return true;
  std::printf("left %d handles, %d indexes and %ld blocks\n", moreHandles, moreIndexes, moreBlocks);
  return false;
}

}  // namespace

// GetProcessHandleCount is not available everywhere.
int HandleCount() {
  constexpr ULONG_PTR kHighest = 0x4000;
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

int FreeTlsIndexes() {
  std::vector<DWORD> taken;
  for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc()) taken.push_back(index);
  for (const DWORD index : taken) TlsFree(index);
  return static_cast<int>(taken.size());
}

std::size_t HeapBytes(std::size_t without) {
  std::array<HANDLE, 64> heaps;
  const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
    PROCESS_HEAP_ENTRY entry = {};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      const bool isCounted = (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 && entry.cbData != without;
      if (isCounted) bytes += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return bytes;
}

bool LeavesNothing(const std::function<bool()>& run) {
  constexpr int kAttempts = 4;
  if (!run()) return false;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (LeavesNothingOnce(run)) return true;
  }
  return false;
}

}  // namespace smh::test
