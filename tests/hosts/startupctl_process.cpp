#include "startupctl_process.h"

#include "infra/import_function.h"
#include "support/child_process.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace smh::test {
namespace {

// A run of backslashes is doubled before a quote and before the closing quote.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring result(1, L'"');
  std::size_t backslashes = 0;
  for (const wchar_t unit : argument) {
    if (unit == L'"') result.append(backslashes + 1, L'\\');
    backslashes = unit == L'\\' ? backslashes + 1 : 0;
    result += unit;
  }
  return result.append(backslashes, L'\\').append(1, L'"');
}

}  // namespace

CapturedStream::CapturedStream() {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  wchar_t folder[MAX_PATH];
  wchar_t name[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  GetTempFileNameW(folder, L"ctl", 0, name);
  SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
  writer_.Reset(CreateFileW(name, GENERIC_WRITE | DELETE, kShareAll, &inherit, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  reader_.Reset(CreateFileW(name, GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!writer_ || !reader_) throw std::runtime_error("a stream cannot be captured");
}

std::string CapturedStream::Text() const {
  std::string text(GetFileSize(reader_.Get(), nullptr), '\0');
  SetFilePointer(reader_.Get(), 0, nullptr, FILE_BEGIN);
  DWORD read = 0;
  ReadFile(reader_.Get(), text.data(), static_cast<DWORD>(text.size()), &read, nullptr);
  text.resize(read);
  return text;
}

StartupctlProcess::StartupctlProcess(const std::vector<std::wstring>& arguments,
                                     const std::wstring& program) {
  const std::wstring file = program.empty() ? ThisFolder() + L"startupctl.exe" : program;
  std::wstring command = Quoted(file);
  for (const std::wstring& argument : arguments) command += L' ' + Quoted(argument);
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output_.Writer();
  startup.hStdError = errors_.Writer();
  PROCESS_INFORMATION information = {};
  if (!CreateProcessW(file.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                      &information)) {
    throw std::runtime_error("startupctl.exe did not start");
  }
  CloseHandle(information.hThread);
  process_.Reset(information.hProcess);
}

StartupctlProcess::~StartupctlProcess() {
  if (WaitForSingleObject(process_.Get(), 0) == WAIT_OBJECT_0) return;
  TerminateProcess(process_.Get(), 1);
  WaitForSingleObject(process_.Get(), INFINITE);
}

StartupctlResult StartupctlProcess::Finish(DWORD limit) {
  EXPECT_EQ(WaitForSingleObject(process_.Get(), limit), WAIT_OBJECT_0) << "startupctl.exe hangs";
  StartupctlResult result;
  GetExitCodeProcess(process_.Get(), &result.exitCode);
  result.output = Output();
  result.errors = Errors();
  return result;
}

void StartupctlProcess::Break() const {
  // System libraries lie at the same address in every process.
  const auto routine =
      ImportFunction<LPTHREAD_START_ROUTINE>(GetModuleHandleW(L"kernelbase.dll"), "CtrlRoutine");
  const ScopedHandle thread(CreateRemoteThread(process_.Get(), nullptr, 0, routine,
                                               reinterpret_cast<void*>(CTRL_BREAK_EVENT), 0, nullptr));
  EXPECT_TRUE(thread) << GetLastError();
}

StartupctlResult RunStartupctl(const std::vector<std::wstring>& arguments) {
  return StartupctlProcess(arguments).Finish();
}

}  // namespace smh::test
