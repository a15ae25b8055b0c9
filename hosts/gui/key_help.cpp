#include "hosts/gui/key_help.h"

#include "hosts/gui/dialog_place.h"
#include "hosts/gui/resource.h"

#include <algorithm>

namespace smh {

namespace {

struct KeyRow {
  const wchar_t* meaning;
  const wchar_t* keys;
};
constexpr KeyRow kPaneKeys[] = {
    {L"Next pane", L"Tab or F6"},
    {L"Previous pane", L"Shift+Tab or Shift+F6"},
    {L"Back to the list, cancel what lasts", L"Esc"},
    {L"Switch the entry on or off", L"Space"},
    {L"Details of the entry, parts of the change", L"Enter"},
    {L"Show or hide what is below", L"Right, Left"},
    {L"Menu of what is selected", L"Shift+F10"},
    {L"Menu bar", L"Alt or F10"},
};

// In the units of a dialog.
constexpr int kKeyColumn = 190;

// Without the marks of the letters that choose it.
std::wstring TextOfItem(HMENU menu, int position) {
  wchar_t text[128] = L"";
  GetMenuStringW(menu, static_cast<UINT>(position), text, ARRAYSIZE(text), MF_BYPOSITION);
  std::wstring result = text;
  std::erase(result, L'&');
  return result;
}

std::wstring KeysOfMenu(HMENU menu) {
  std::wstring lines;
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    if (const HMENU below = GetSubMenu(menu, i)) {
      lines += KeysOfMenu(below);
    } else if (const std::wstring text = TextOfItem(menu, i); text.find(L'\t') != std::wstring::npos) {
      lines += L"    " + text + L"\r\n";
    }
  }
  return lines;
}

INT_PTR CALLBACK OnDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_INITDIALOG) {
    BeginDialog(dialog);
    SendDlgItemMessageW(dialog, IDC_KEYS, EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&kKeyColumn));
    SetDlgItemTextW(dialog, IDC_KEYS, reinterpret_cast<const wchar_t*>(lParam));
    // The caret stands at the beginning; an edit field would select everything.
    SetFocus(GetDlgItem(dialog, IDC_KEYS));
    SendDlgItemMessageW(dialog, IDC_KEYS, EM_SETSEL, 0, 0);
    return FALSE;
  }
  if (message != WM_COMMAND || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL)) return FALSE;
  EndDialog(dialog, IDOK);
  return TRUE;
}

}  // namespace

std::wstring KeyTable(HMENU menu) {
  std::wstring text;
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    const HMENU below = GetSubMenu(menu, i);
    const std::wstring lines = below == nullptr ? std::wstring() : KeysOfMenu(below);
    if (!lines.empty()) text += TextOfItem(menu, i) + L"\r\n" + lines + L"\r\n";
  }
  text += L"Everywhere\r\n";
  for (const KeyRow& row : kPaneKeys) {
    text += std::wstring(L"    ") + row.meaning + L"\t" + row.keys + L"\r\n";
  }
  return text;
}

void ShowKeys(HWND window) {
  const std::wstring text = KeyTable(GetMenu(window));
  DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_KEYS), window, OnDialog,
                  reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace smh
