// Stands in for the system's starter of the registry editor.
#include "tests/display/stand_ins/editor_settings.h"

#include <windows.h>

#include <string>

using namespace smh::test;

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
  const std::wstring line = GetCommandLineW();
  RegSetKeyValueW(HKEY_CURRENT_USER, kEditorTestKey, kStarterValue, REG_SZ, line.c_str(),
                  static_cast<DWORD>((line.size() + 1) * sizeof(wchar_t)));
  wchar_t editor[MAX_PATH] = L"regedit.exe";
  DWORD size = sizeof(editor);
  RegGetValueW(HKEY_CURRENT_USER, kEditorTestKey, kEditorValue, RRF_RT_REG_SZ, nullptr, editor, &size);
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, editor, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
    return 1;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return 0;
}
