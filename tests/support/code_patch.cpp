#include "tests/support/code_patch.h"

#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

namespace smh::test {

namespace {

// "mov edi, edi; push ebp; mov ebp, esp" is how functions begin that may be patched; a jump takes as much.
constexpr std::array<BYTE, 5> kBeginning = {0x8B, 0xFF, 0x55, 0x8B, 0xEC};
constexpr BYTE kJump = 0xE9;

void WriteJump(BYTE* at, const void* target) {
  const auto distance = static_cast<const BYTE*>(target) - (at + kBeginning.size());
  at[0] = kJump;
  std::memcpy(at + 1, &distance, sizeof(distance));
}

}  // namespace

CodePatch::CodePatch(const wchar_t* module, const char* exported)
    : function_(reinterpret_cast<BYTE*>(
          reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(module), exported)))) {
  if (function_ == nullptr) throw std::runtime_error(std::string(exported) + " is not there");
  std::memcpy(before_.data(), function_, before_.size());
}

void CodePatch::Write(const void* replacement) const {
  DWORD before = 0;
  if (VirtualProtect(function_, kBeginning.size(), PAGE_EXECUTE_READWRITE, &before) == FALSE) {
    throw std::runtime_error("code cannot be written to");
  }
  WriteJump(function_, replacement);
  FlushInstructionCache(GetCurrentProcess(), function_, before_.size());
}

CodePatch::~CodePatch() {
  std::memcpy(function_, before_.data(), before_.size());
  FlushInstructionCache(GetCurrentProcess(), function_, before_.size());
}

void* CodePatch::MakeOriginal() const {
  if (before_ != kBeginning) throw std::runtime_error("a function cannot be called behind its patch");
  auto* const original = static_cast<BYTE*>(
      VirtualAlloc(nullptr, 2 * kBeginning.size(), MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
  if (original == nullptr) throw std::bad_alloc();
  std::memcpy(original, before_.data(), before_.size());
  WriteJump(original + before_.size(), function_ + before_.size());
  return original;
}

}  // namespace smh::test
