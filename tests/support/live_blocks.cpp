#include "tests/support/live_blocks.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <cstring>
#include <stdexcept>
#include <string>

namespace smh::test {

namespace {

// "mov edi, edi; push ebp; mov ebp, esp" is how functions begin that may be patched; a jump takes as much.
constexpr std::array<BYTE, 5> kBeginning = {0x8B, 0xFF, 0x55, 0x8B, 0xEC};
constexpr BYTE kJump = 0xE9;

std::atomic<long> g_live{0};

void WriteJump(BYTE* at, const void* target) {
  const auto distance = static_cast<const BYTE*>(target) - (at + kBeginning.size());
  at[0] = kJump;
  std::memcpy(at + 1, &distance, sizeof(distance));
}

// Answers what calls the function as it was.
void* Replace(const char* name, const void* with) {
  auto* const function =
      reinterpret_cast<BYTE*>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
  if (function == nullptr || std::memcmp(function, kBeginning.data(), kBeginning.size()) != 0) {
    throw std::runtime_error(std::string(name) + " cannot be patched");
  }
  auto* const original = static_cast<BYTE*>(
      VirtualAlloc(nullptr, 2 * kBeginning.size(), MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
  DWORD protection = 0;
  if (original == nullptr ||
      VirtualProtect(function, kBeginning.size(), PAGE_EXECUTE_READWRITE, &protection) == FALSE) {
    throw std::runtime_error("no memory can be written to");
  }
  std::memcpy(original, kBeginning.data(), kBeginning.size());
  WriteJump(original + kBeginning.size(), function + kBeginning.size());
  WriteJump(function, with);
  FlushInstructionCache(GetCurrentProcess(), function, kBeginning.size());
  return original;
}

using AllocateFunction = void*(WINAPI*)(HANDLE, ULONG, SIZE_T);
using FreeFunction = ULONG(WINAPI*)(HANDLE, ULONG, void*);
AllocateFunction g_allocate = nullptr;
FreeFunction g_free = nullptr;

void* WINAPI Allocate(HANDLE heap, ULONG flags, SIZE_T size) {
  void* const block = g_allocate(heap, flags, size);
  if (block != nullptr) ++g_live;
  return block;
}

ULONG WINAPI Free(HANDLE heap, ULONG flags, void* block) {
  if (block != nullptr) --g_live;
  return g_free(heap, flags, block);
}

bool Patch() {
  // What is freed was allocated, so the other one first.
  g_free = reinterpret_cast<FreeFunction>(Replace("RtlFreeHeap", reinterpret_cast<const void*>(&Free)));
  g_allocate = reinterpret_cast<AllocateFunction>(
      Replace("RtlAllocateHeap", reinterpret_cast<const void*>(&Allocate)));
  return true;
}

}  // namespace

long LiveBlocks() {
  [[maybe_unused]] static const bool isPatched = Patch();
  return g_live;
}

}  // namespace smh::test
