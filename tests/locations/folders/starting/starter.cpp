// Starts what a plan says, one after the other, and waits for each.
//
// The plan is the file that the command line ends with: UTF-16 texts, each ended by a NUL, three for a start:
// how, the file for its record, and what. How is "command" for a command line as it stands, "expand" for one
// whose references are expanded before, as in a value of that type, and "open" for a file that the shell
// opens.
#include "tests/locations/folders/starting/plain_windows.h"

#include <objbase.h>
#include <shellapi.h>

using namespace smh::test;

namespace {

constexpr DWORD kTimeLimitMs = 20'000;

wchar_t* ReadPlan(const wchar_t* file) {
  const HANDLE plan = CreateFileW(file, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (plan == INVALID_HANDLE_VALUE) ExitProcess(2);
  const DWORD size = GetFileSize(plan, nullptr);
  auto* const text =
      static_cast<wchar_t*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, size + sizeof(wchar_t)));
  DWORD read = 0;
  ReadFile(plan, text, size, &read, nullptr);
  CloseHandle(plan);
  return text;
}

const wchar_t* Next(const wchar_t* text) {
  return text + lstrlenW(text) + 1;
}

void WaitForEnd(HANDLE process) {
  if (process == nullptr) return;
  if (WaitForSingleObject(process, kTimeLimitMs) != WAIT_OBJECT_0) {
    AddToRecord(L"(did not end)");
    TerminateProcess(process, 1);
  }
  CloseHandle(process);
}

void StartCommand(const wchar_t* command, bool expand) {
  static wchar_t line[40'000];
  // The shell passes over blanks before the command of a value.
  while (*command == L' ' || *command == L'\t') ++command;
  if (expand) {
    ExpandEnvironmentStringsW(command, line, 40'000);
  } else {
    lstrcpynW(line, command, 40'000);
  }
  static STARTUPINFOW startup;
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process;
  if (CreateProcessW(nullptr, line, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process) ==
      FALSE)
    return;
  CloseHandle(process.hThread);
  WaitForEnd(process.hProcess);
}

void OpenFile(const wchar_t* file) {
  static SHELLEXECUTEINFOW info;
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
  info.lpFile = file;
  info.nShow = SW_SHOWNORMAL;
  info.hProcess = nullptr;
  if (ShellExecuteExW(&info) != FALSE) WaitForEnd(info.hProcess);
}

}  // namespace

extern "C" void Main() {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  if (count != 2) ExitProcess(1);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  for (const wchar_t* how = ReadPlan(arguments[1]); *how != L'\0';) {
    const wchar_t* const record = Next(how);
    const wchar_t* const what = Next(record);
    SetEnvironmentVariableW(kRecordVariable, record);
    if (*how == L'o') {
      OpenFile(what);
    } else {
      StartCommand(what, *how == L'e');
    }
    how = Next(what);
  }
  ExitProcess(0);
}
