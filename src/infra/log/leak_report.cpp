#include "infra/log/leak_report.h"

#include "infra/runtime/format.h"
#include "infra/runtime/import_function.h"

#include <windows.h>
#include <malloc.h>

namespace smh {

namespace {

int CountBlocks(HANDLE heap) noexcept {
  int blocks = 0;
  PROCESS_HEAP_ENTRY entry = {};
  if (HeapLock(heap) == FALSE) return 0;
  while (HeapWalk(heap, &entry) != FALSE) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) ++blocks;
  }
  HeapUnlock(heap);
  return blocks;
}

// Windows before XP lacks it.
int CountHandles() noexcept {
  using Function = BOOL(WINAPI*)(HANDLE, DWORD*);
  const auto count = ImportFunction<Function>(GetModuleHandleW(L"kernel32.dll"), "GetProcessHandleCount");
  DWORD handles = 0;
  if (count == nullptr || count(GetCurrentProcess(), &handles) == FALSE) return 0;
  return static_cast<int>(handles);
}

}  // namespace

LiveCounts CountLive() noexcept {
  return {CountBlocks(reinterpret_cast<HANDLE>(_get_heap_handle())), CountHandles()};
}

std::wstring LeakReport(const LiveCounts& atStart, const LiveCounts& atStop) {
  return Format(L"Live at start-up: %d blocks, %d handles. Live at shut-down: %d blocks, %d handles.",
                atStart.blocks, atStart.handles, atStop.blocks, atStop.handles);
}

}  // namespace smh
