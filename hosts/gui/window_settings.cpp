#include "hosts/gui/window_settings.h"

#include <algorithm>
#include <cwchar>

namespace smh {

namespace {

constexpr wchar_t kKey[] = L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe";

constexpr wchar_t kPlace[] = L"Window";
constexpr std::size_t kPlaceNumbers = 5;  // left, top, width, height, whether maximized

// A place that is on a screen by now.
bool IsVisible(const RECT& place) noexcept {
  return MonitorFromRect(&place, MONITOR_DEFAULTTONULL) != nullptr;
}

}  // namespace

std::vector<int> LoadNumbers(const wchar_t* name) {
  wchar_t text[512];
  DWORD size = sizeof(text);
  if (RegGetValueW(HKEY_CURRENT_USER, kKey, name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS)
    return {};
  std::vector<int> numbers;
  for (const wchar_t* place = text; *place != L'\0';) {
    wchar_t* end = nullptr;
    const long number = std::wcstol(place, &end, 10);
    if (end == place || number < -100'000 || number > 100'000) return {};
    numbers.push_back(static_cast<int>(number));
    place = end;
  }
  return numbers;
}

std::vector<int> LoadNumbers(const wchar_t* name, std::size_t count) {
  std::vector<int> numbers = LoadNumbers(name);
  if (numbers.size() != count) numbers.clear();
  return numbers;
}

void SaveNumbers(const wchar_t* name, const std::vector<int>& numbers) {
  std::wstring text;
  for (const int number : numbers) text += (text.empty() ? L"" : L" ") + std::to_wstring(number);
  RegSetKeyValueW(HKEY_CURRENT_USER, kKey, name, REG_SZ, text.c_str(),
                  static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

void LoadPlace(HWND window, SIZE firstSize) {
  SIZE size = firstSize;
  RECT screen = {};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
  size.cx = std::min(size.cx, screen.right - screen.left);
  size.cy = std::min(size.cy, screen.bottom - screen.top);
  SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  if (const auto saved = LoadNumbers(kPlace, kPlaceNumbers); !saved.empty()) {
    const RECT place = {saved[0], saved[1], saved[0] + saved[2], saved[1] + saved[3]};
    if (IsVisible(place)) {
      SetWindowPos(window, nullptr, saved[0], saved[1], saved[2], saved[3], SWP_NOZORDER | SWP_NOACTIVATE);
    }
  }
}

bool WasMaximized() {
  const auto saved = LoadNumbers(kPlace, kPlaceNumbers);
  return !saved.empty() && saved[4] != 0;
}

void SavePlace(HWND window) {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof(placement);
  if (!GetWindowPlacement(window, &placement)) return;
  const RECT& place = placement.rcNormalPosition;
  SaveNumbers(kPlace, {static_cast<int>(place.left), static_cast<int>(place.top),
                       static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
                       placement.showCmd == SW_SHOWMAXIMIZED ? 1 : 0});
}

}  // namespace smh
