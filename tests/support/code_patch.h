// Another function in the place of one that a module exports, whoever calls it and however that one found it,
// until the end of the scope.
#pragma once

#include <windows.h>

#include <array>
#include <atomic>

namespace smh::test {

// For functions that nobody is in while they are patched and while that is taken back.
class CodePatch {
 public:
  // The replacement has the function's own type. Raises std::runtime_error when the module, which is loaded,
  // does not export it.
  template <typename Function>
  CodePatch(const wchar_t* module, const char* exported, Function* replacement)
      : CodePatch(module, exported) {
    Write(reinterpret_cast<const void*>(replacement));
  }
  // The same; `original`, set before the function is replaced, calls it as it was, also when the patch has
  // gone. Raises std::runtime_error, too, when it does not begin as functions do that may be patched.
  template <typename Function>
  CodePatch(const wchar_t* module, const char* exported, Function* replacement,
            std::atomic<Function*>& original)
      : CodePatch(module, exported) {
    original = reinterpret_cast<Function*>(MakeOriginal());
    Write(reinterpret_cast<const void*>(replacement));
  }
  ~CodePatch();
  CodePatch(const CodePatch&) = delete;
  CodePatch& operator=(const CodePatch&) = delete;

 private:
  CodePatch(const wchar_t* module, const char* exported);
  void Write(const void* replacement) const;
  void* MakeOriginal() const;

  BYTE* function_;
  std::array<BYTE, 5> before_{};
};

}  // namespace smh::test
