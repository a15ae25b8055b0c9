// Records which program it is and the arguments that it was started with, each on a line.
#include "tests/locations/folders/starting/plain_windows.h"

#include <shellapi.h>

using namespace smh::test;

extern "C" void Main() {
  AddProgramToRecord();
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  // The first is the program as it was named.
  for (int i = 1; i < count; ++i) AddToRecord(arguments[i]);
  AddToRecord(L".");
  ExitProcess(0);
}
