// Another program that gets its turn in the worst moment: a change is recorded, and its last look is due.
#pragma once

#include "tests/siblings/guardkit/journal_fixture.h"
#include "tests/support/import_patch.h"

#include <functional>
#include <string_view>

namespace smh::test {

// One at a time. `act` runs once: for changes in a checkpoint that is open already, or in one whose file is
// flushed so many times before.
class OutsideProgram {
 public:
  OutsideProgram(const Guardkit& guardkit, std::function<void()> act, int flushes = 0)
      : patch_("FlushFileBuffers", &Flush, guardkit.Module()) {
    Act() = std::move(act);
    Flushes() = flushes;
  }
  ~OutsideProgram() { Act() = nullptr; }
  OutsideProgram(const OutsideProgram&) = delete;
  OutsideProgram& operator=(const OutsideProgram&) = delete;

  // Whether it had its turn.
  static bool IsDone() { return !Act(); }

 private:
  static std::function<void()>& Act() {
    static std::function<void()> act;
    return act;
  }
  static int& Flushes() {
    static int left = 0;
    return left;
  }
  // What is flushed last before a change is the journal's file.
  static BOOL WINAPI Flush(HANDLE file) {
    static const auto real = RealFunction<decltype(FlushFileBuffers)>(L"kernel32.dll", "FlushFileBuffers");
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetFinalPathNameByHandleW(file, path, MAX_PATH, 0);
    if (std::wstring_view(path, length).ends_with(L".open") && Act() && Flushes()-- == 0) {
      const auto act = std::exchange(Act(), nullptr);
      act();
    }
    return real(file);
  }

  const ImportPatch patch_;
};

}  // namespace smh::test
