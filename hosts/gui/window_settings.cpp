#include "hosts/gui/window_settings.h"

#include <cwchar>

namespace smh {

namespace {

constexpr wchar_t kKey[] = L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe";

}  // namespace

std::vector<int> LoadNumbers(const wchar_t* name, std::size_t count) {
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
  return numbers.size() == count ? numbers : std::vector<int>();
}

void SaveNumbers(const wchar_t* name, const std::vector<int>& numbers) {
  std::wstring text;
  for (const int number : numbers) text += (text.empty() ? L"" : L" ") + std::to_wstring(number);
  RegSetKeyValueW(HKEY_CURRENT_USER, kKey, name, REG_SZ, text.c_str(),
                  static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

}  // namespace smh
