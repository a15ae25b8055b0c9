// startupctl.exe as a process of its own.
#pragma once

#include "support/child_process.h"

namespace smh::test {

using StartupctlResult = ChildResult;

class StartupctlProcess : public ChildProcess {
 public:
  // `program` is another copy than the one beside the tests.
  explicit StartupctlProcess(const std::vector<std::wstring>& arguments, const std::wstring& program = {});

  // One that does not end within `limit` is a failed test.
  StartupctlResult Finish(DWORD limit = kChildTimeLimit);
  // What the system does in the process when someone presses Ctrl+Break; there is no console to press it on.
  void Break() const;
};

StartupctlResult RunStartupctl(const std::vector<std::wstring>& arguments);

}  // namespace smh::test
