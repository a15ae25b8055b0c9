// Records which program calls it and with what text, as rundll32 does.
#include "tests/locations/folders/starting/plain_windows.h"

using namespace smh::test;

extern "C" __declspec(dllexport) void CALLBACK RecordCallW(HWND, HINSTANCE, const wchar_t* text, int) {
  AddProgramToRecord();
  AddToRecord(text);
  AddToRecord(L".");
}

extern "C" BOOL WINAPI Main(HINSTANCE, DWORD, void*) {
  return TRUE;
}
