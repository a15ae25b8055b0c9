// A library that rundll32 can start: its entry point returns at once.
#include <windows.h>

extern "C" void CALLBACK Start(HWND, HINSTANCE, char*, int) {}
