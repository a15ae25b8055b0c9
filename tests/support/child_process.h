// Programs run as processes of their own, with a time limit. A process that outlives its limit, or its
// ChildProcess object, is ended.
#pragma once

#include "infra/runtime/handle.h"

#include <string>
#include <vector>

namespace smh::test {

inline constexpr DWORD kChildTimeLimit = 60'000;

struct ChildResult {
  bool timedOut = false;
  // The NTSTATUS when the process was ended by a fault.
  DWORD exitCode = 0;
  std::string output;
  std::string errors;
};

// A file that takes what a process writes, however much, and can be read meanwhile. It vanishes with its last
// handle.
class CapturedStream {
 public:
  CapturedStream();
  // For the process to inherit.
  HANDLE Writer() const noexcept { return writer_.Get(); }
  // For the process to read what is in it now.
  HANDLE Reader() const noexcept { return reader_.Get(); }
  void Write(const std::string& text) const;
  std::string Text() const;

 private:
  ScopedHandle writer_;
  // Apart from the writer's, so that reading moves no position of the process.
  ScopedHandle reader_;
};

class ChildProcess {
 public:
  // Starts `program` with the arguments quoted as the C runtime reads them, and with `input` on its standard
  // input, without one when that is empty; with this process's rights, with an administrator's, or without
  // them. Throws std::runtime_error.
  enum class Rights { kOwn, kFull, kLimited };
  ChildProcess(const std::wstring& program, const std::vector<std::wstring>& arguments,
               const std::string& input = {}, Rights rights = Rights::kOwn);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  DWORD Id() const noexcept { return id_; }
  HANDLE Handle() const noexcept { return process_.Get(); }
  bool WaitFor(DWORD milliseconds) const noexcept;
  std::string Output() const { return output_.Text(); }
  std::string Errors() const { return errors_.Text(); }
  // Waits for the end and collects the result.
  ChildResult Finish(DWORD timeLimit = kChildTimeLimit);

 private:
  CapturedStream input_;
  CapturedStream output_;
  CapturedStream errors_;
  ScopedHandle process_;
  DWORD id_ = 0;
};

ChildResult RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                       DWORD timeLimit = kChildTimeLimit);
// Runs this program's function `name` (SMH_CHILD in test_main.h).
ChildResult RunChild(const std::wstring& name, const std::vector<std::wstring>& arguments = {},
                     DWORD timeLimit = kChildTimeLimit);

std::wstring ThisProgram();
// The folder of this program, with a trailing backslash.
std::wstring ThisFolder();
// A program that starts without consequence, with a version record, to be copied.
std::wstring SampleProgramFile();

}  // namespace smh::test
