// startupctl.exe as a process of its own.
#pragma once

#include "infra/runtime/import_function.h"
#include "tests/support/child_process.h"

#include <gtest/gtest.h>

namespace smh::test {

using StartupctlResult = ChildResult;

class StartupctlProcess : public ChildProcess {
 public:
  // `program` is another copy than the one beside the tests.
  explicit StartupctlProcess(const std::vector<std::wstring>& arguments, const std::wstring& program = {},
                             const std::string& input = {})
      : ChildProcess(program.empty() ? ThisFolder() + L"startupctl.exe" : program, arguments, input) {}

  // One that does not end within `limit` is a failed test.
  StartupctlResult Finish(DWORD limit = kChildTimeLimit) {
    StartupctlResult result = ChildProcess::Finish(limit);
    EXPECT_FALSE(result.timedOut) << "startupctl.exe hangs";
    return result;
  }
  // What the system does in the process when someone presses Ctrl+Break; there is no console to press it on.
  void Break() const {
    // System libraries lie at the same address in every process.
    const auto routine =
        ImportFunction<LPTHREAD_START_ROUTINE>(GetModuleHandleW(L"kernelbase.dll"), "CtrlRoutine");
    const ScopedHandle thread(CreateRemoteThread(Handle(), nullptr, 0, routine,
                                                 reinterpret_cast<void*>(CTRL_BREAK_EVENT), 0, nullptr));
    EXPECT_TRUE(thread) << GetLastError();
  }
};

inline StartupctlResult RunStartupctl(const std::vector<std::wstring>& arguments) {
  return StartupctlProcess(arguments).Finish();
}

}  // namespace smh::test
