#include "tests/support/child_process.h"

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

// The one that the system keeps beside an administrator's own where that has not these rights; else null,
// which is this process's own.
HANDLE TokenOf(ChildProcess::Rights rights) {
  ScopedHandle own;
  TOKEN_ELEVATION elevation = {};
  TOKEN_LINKED_TOKEN linked = {};
  DWORD size = 0;
  if (rights == ChildProcess::Rights::kOwn ||
      !OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, own.Put()) ||
      !GetTokenInformation(own.Get(), TokenElevation, &elevation, sizeof(elevation), &size)) {
    return nullptr;
  }
  const bool isLimited = elevation.TokenIsElevated == 0;
  if (isLimited == (rights == ChildProcess::Rights::kLimited)) return nullptr;
  GetTokenInformation(own.Get(), TokenLinkedToken, &linked, sizeof(linked), &size);
  return linked.LinkedToken;
}

}  // namespace

CapturedStream::CapturedStream() {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  wchar_t folder[MAX_PATH];
  wchar_t name[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  GetTempFileNameW(folder, L"out", 0, name);
  SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
  writer_.Reset(CreateFileW(name, GENERIC_WRITE | DELETE, kShareAll, &inherit, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  reader_.Reset(CreateFileW(name, GENERIC_READ, kShareAll, &inherit, OPEN_EXISTING, 0, nullptr));
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

void CapturedStream::Write(const std::string& text) const {
  DWORD written = 0;
  WriteFile(writer_.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

ChildProcess::ChildProcess(const std::wstring& program, const std::vector<std::wstring>& arguments,
                           const std::string& input, Rights rights) {
  std::wstring command = Quoted(program);
  for (const std::wstring& argument : arguments) command.append(1, L' ').append(Quoted(argument));
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  input_.Write(input);
  if (!input.empty()) startup.hStdInput = input_.Reader();
  startup.hStdOutput = output_.Writer();
  startup.hStdError = errors_.Writer();
  PROCESS_INFORMATION information = {};
  const ScopedHandle token(TokenOf(rights));
  if (!CreateProcessAsUserW(token.Get(), program.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                            nullptr, &startup, &information)) {
    throw std::runtime_error("the child process did not start");
  }
  CloseHandle(information.hThread);
  process_.Reset(information.hProcess);
  id_ = information.dwProcessId;
}

ChildProcess::~ChildProcess() {
  if (WaitFor(0)) return;
  TerminateProcess(process_.Get(), 1);
  WaitFor(INFINITE);
}

bool ChildProcess::WaitFor(DWORD milliseconds) const noexcept {
  return WaitForSingleObject(process_.Get(), milliseconds) == WAIT_OBJECT_0;
}

ChildResult ChildProcess::Finish(DWORD timeLimit) {
  ChildResult result;
  result.timedOut = !WaitFor(timeLimit);
  if (result.timedOut) {
    TerminateProcess(process_.Get(), 1);
    WaitFor(INFINITE);
  }
  GetExitCodeProcess(process_.Get(), &result.exitCode);
  result.output = Output();
  result.errors = Errors();
  return result;
}

ChildResult RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                       DWORD timeLimit) {
  return ChildProcess(program, arguments).Finish(timeLimit);
}

ChildResult RunChild(const std::wstring& name, const std::vector<std::wstring>& arguments, DWORD timeLimit) {
  std::vector<std::wstring> all = {L"--child=" + name};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return RunProgram(ThisProgram(), all, timeLimit);
}

std::wstring ThisProgram() {
  wchar_t path[MAX_PATH];
  return std::wstring(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
}

std::wstring ThisFolder() {
  const std::wstring program = ThisProgram();
  return program.substr(0, program.rfind(L'\\') + 1);
}

std::wstring SampleProgramFile() {
  return ThisFolder() + L"..\\samples\\drive_c\\Program Files\\Northlight Audio\\auroratray.exe";
}

}  // namespace smh::test
