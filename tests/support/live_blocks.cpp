#include "tests/support/live_blocks.h"

#include "tests/support/code_patch.h"

#include <windows.h>

#include <atomic>

namespace smh::test {

namespace {

std::atomic<long> g_live{0};

using AllocateFunction = void* WINAPI(HANDLE, ULONG, SIZE_T);
using FreeFunction = ULONG WINAPI(HANDLE, ULONG, void*);
std::atomic<AllocateFunction*> g_allocate{nullptr};
std::atomic<FreeFunction*> g_free{nullptr};

void* WINAPI Allocate(HANDLE heap, ULONG flags, SIZE_T size) {
  void* const block = g_allocate.load()(heap, flags, size);
  if (block != nullptr) ++g_live;
  return block;
}

ULONG WINAPI Free(HANDLE heap, ULONG flags, void* block) {
  if (block != nullptr) --g_live;
  return g_free.load()(heap, flags, block);
}

}  // namespace

long LiveBlocks() {
  static const CodePatch free(L"ntdll.dll", "RtlFreeHeap", &Free, g_free);
  static const CodePatch allocate(L"ntdll.dll", "RtlAllocateHeap", &Allocate, g_allocate);
  return g_live;
}

}  // namespace smh::test
