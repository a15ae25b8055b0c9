// What the programs of the start proof share. They are built without a runtime library, so that one source
// serves both kinds of processes; nothing in them needs one.
#pragma once

#include <windows.h>

namespace smh::test {

// The file that a started program writes its record to, named by the starter.
inline constexpr wchar_t kRecordVariable[] = L"SmhRecord";

// Adds a text in UTF-16 to the record. What fails leaves no record, which the test sees.
inline void AddToRecord(const wchar_t* text) {
  static wchar_t file[1024];
  if (GetEnvironmentVariableW(kRecordVariable, file, 1024) == 0) return;
  const HANDLE record = CreateFileW(file, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (record == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(record, text, static_cast<DWORD>(lstrlenW(text)) * sizeof(wchar_t), &written, nullptr);
  WriteFile(record, L"\n", sizeof(wchar_t), &written, nullptr);
  CloseHandle(record);
}

// The file of this process's program.
inline void AddProgramToRecord() {
  static wchar_t program[1024];
  GetModuleFileNameW(nullptr, program, 1024);
  AddToRecord(program);
}

}  // namespace smh::test
