#include "startupctl_process.h"

#include "infra/import_function.h"

#include <gtest/gtest.h>

namespace smh::test {

StartupctlProcess::StartupctlProcess(const std::vector<std::wstring>& arguments, const std::wstring& program)
    : ChildProcess(program.empty() ? ThisFolder() + L"startupctl.exe" : program, arguments) {}

StartupctlResult StartupctlProcess::Finish(DWORD limit) {
  StartupctlResult result = ChildProcess::Finish(limit);
  EXPECT_FALSE(result.timedOut) << "startupctl.exe hangs";
  return result;
}

void StartupctlProcess::Break() const {
  // System libraries lie at the same address in every process.
  const auto routine =
      ImportFunction<LPTHREAD_START_ROUTINE>(GetModuleHandleW(L"kernelbase.dll"), "CtrlRoutine");
  const ScopedHandle thread(CreateRemoteThread(Handle(), nullptr, 0, routine,
                                               reinterpret_cast<void*>(CTRL_BREAK_EVENT), 0, nullptr));
  EXPECT_TRUE(thread) << GetLastError();
}

StartupctlResult RunStartupctl(const std::vector<std::wstring>& arguments) {
  return StartupctlProcess(arguments).Finish();
}

}  // namespace smh::test
