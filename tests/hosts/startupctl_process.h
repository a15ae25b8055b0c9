// startupctl.exe as a process of its own, with standard output and standard error apart.
#pragma once

#include "infra/handle.h"

#include <string>
#include <vector>

namespace smh::test {

struct StartupctlResult {
  DWORD exitCode = 0;
  std::string output;
  std::string errors;
};

// A file that takes what a process writes and can be read meanwhile.
class CapturedStream {
 public:
  CapturedStream();
  // For the process to inherit.
  HANDLE Writer() const noexcept { return writer_.Get(); }
  std::string Text() const;

 private:
  ScopedHandle writer_;
  // Apart from the writer's, so that reading moves no position of the process.
  ScopedHandle reader_;
};

class StartupctlProcess {
 public:
  // `arguments` are quoted as the C runtime reads them; `program` is another copy than the one beside the
  // tests.
  explicit StartupctlProcess(const std::vector<std::wstring>& arguments, const std::wstring& program = {});
  // Ends the process if it still runs.
  ~StartupctlProcess();
  StartupctlProcess(const StartupctlProcess&) = delete;
  StartupctlProcess& operator=(const StartupctlProcess&) = delete;

  std::string Output() const { return output_.Text(); }
  std::string Errors() const { return errors_.Text(); }
  // Waits for the end; one that does not come within `limit` is a failed test, and exit code 259.
  StartupctlResult Finish(DWORD limit = 60'000);
  // What the system does in the process when someone presses Ctrl+Break; there is no console to press it on.
  void Break() const;

 private:
  CapturedStream output_;
  CapturedStream errors_;
  ScopedHandle process_;
};

StartupctlResult RunStartupctl(const std::vector<std::wstring>& arguments);

}  // namespace smh::test
