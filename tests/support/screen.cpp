#include "tests/support/screen.h"

namespace smh::test {

namespace {

struct Search {
  DWORD process;
  const wchar_t* className;
  HWND found;
};

BOOL CALLBACK TakeWindow(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  wchar_t name[64] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  if (process != search.process || lstrcmpW(name, search.className) != 0 || !IsWindowVisible(window))
    return TRUE;
  search.found = window;
  return FALSE;
}

}  // namespace

HWND FindWindowOf(DWORD process, const wchar_t* className) {
  Search search = {process, className, nullptr};
  EnumWindows(TakeWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

ScopedBitmap CopyOfScreen(const RECT& area) {
  const int width = static_cast<int>(area.right - area.left);
  const int height = static_cast<int>(area.bottom - area.top);
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  ScopedBitmap bitmap(CreateCompatibleBitmap(screen, width, height));
  const HGDIOBJ before = SelectObject(memory, bitmap.Get());
  BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
  SelectObject(memory, before);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return bitmap;
}

std::vector<std::uint32_t> PixelsOf(const RECT& area) {
  const int width = static_cast<int>(area.right - area.left);
  const int height = static_cast<int>(area.bottom - area.top);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  const ScopedBitmap bitmap = CopyOfScreen(area);
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const HDC screen = GetDC(nullptr);
  GetDIBits(screen, bitmap.Get(), 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
  ReleaseDC(nullptr, screen);
  return pixels;
}

}  // namespace smh::test
