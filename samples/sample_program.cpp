// A program that can be started without consequence: it ends at once.
#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
  return 0;
}
