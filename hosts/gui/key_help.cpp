#include "hosts/gui/key_help.h"

#include "hosts/gui/dialog_place.h"
#include "hosts/gui/dialogs.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/key_texts.h"

#include <algorithm>

namespace smh {

namespace {

struct KeyRow {
  const Text& meaning;
  const Text& keys;
};
constexpr KeyRow kPaneKeys[] = {
    {texts::kKeyNextPane, texts::kKeysNextPane}, {texts::kKeyPreviousPane, texts::kKeysPreviousPane},
    {texts::kKeyBack, texts::kKeysBack},         {texts::kKeySwitch, texts::kKeysSwitch},
    {texts::kKeyDetails, texts::kKeysDetails},   {texts::kKeyFold, texts::kKeysFold},
    {texts::kKeyMenu, texts::kKeysMenu},         {texts::kKeyMenuBar, texts::kKeysMenuBar},
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
    BeginDialog(dialog, IDD_KEYS);
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
  text += texts::kKeysEverywhere.Get() + std::wstring(L"\r\n");
  for (const KeyRow& row : kPaneKeys) {
    text += std::wstring(L"    ") + row.meaning.Get() + L"\t" + row.keys.Get() + L"\r\n";
  }
  return text;
}

void ShowKeys(HWND window) {
  const std::wstring text = KeyTable(GetMenu(window));
  OpenDialog(window, IDD_KEYS, OnDialog, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace smh
