// A registry editor whose tree and list are direct children of its window. It shows the values of the last
// key of the system's editor, and in its title which one is selected.
#include "tests/display/stand_ins/editor_settings.h"

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <string_view>

using namespace smh::test;

namespace {

constexpr wchar_t kSettings[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";
constexpr std::wstring_view kUser = L"HKEY_CURRENT_USER\\";

HWND g_list = nullptr;

std::wstring LastKey() {
  wchar_t text[1024] = L"";
  DWORD size = sizeof(text);
  RegGetValueW(HKEY_CURRENT_USER, kSettings, L"LastKey", RRF_RT_REG_SZ, nullptr, text, &size);
  return text;
}

bool Stays() {
  DWORD stays = 0;
  DWORD size = sizeof(stays);
  RegGetValueW(HKEY_CURRENT_USER, kEditorTestKey, kStaysValue, RRF_RT_REG_DWORD, nullptr, &stays, &size);
  return stays != 0;
}

void AddRow(std::wstring name) {
  LVITEMW row = {};
  row.mask = LVIF_TEXT;
  row.iItem = ListView_GetItemCount(g_list);
  row.pszText = name.data();
  ListView_InsertItem(g_list, &row);
}

void FillList(const std::wstring& key) {
  AddRow(L"(Default)");
  HKEY opened = nullptr;
  if (!key.starts_with(kUser) ||
      RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str() + kUser.size(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
    return;
  }
  wchar_t name[256];
  DWORD length = ARRAYSIZE(name);
  for (DWORD i = 0; RegEnumValueW(opened, i, name, &length, nullptr, nullptr, nullptr, nullptr) == 0; ++i) {
    if (length > 0) AddRow(name);
    length = ARRAYSIZE(name);
  }
  RegCloseKey(opened);
}

void ShowSelection(HWND window) {
  wchar_t name[256] = L"";
  const int row = ListView_GetNextItem(g_list, -1, LVNI_SELECTED);
  if (row >= 0) ListView_GetItemText(g_list, row, 0, name, ARRAYSIZE(name));
  SetWindowTextW(window, (std::wstring(L"Stand-in: ") + name).c_str());
}

LRESULT CALLBACK EditorProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NOTIFY:
      if (reinterpret_cast<const NMHDR*>(lParam)->code == LVN_ITEMCHANGED) ShowSelection(window);
      return 0;
    case WM_CLOSE:
      if (!Stays()) DestroyWindow(window);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int show) {
  InitCommonControls();
  WNDCLASSW editor = {};
  editor.lpfnWndProc = EditorProcedure;
  editor.hInstance = instance;
  editor.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
  editor.lpszClassName = L"StandInEditor";
  RegisterClassW(&editor);
  const HWND window = CreateWindowW(editor.lpszClassName, L"Stand-in", WS_OVERLAPPEDWINDOW, 40, 40, 700, 400,
                                    nullptr, nullptr, instance, nullptr);
  const DWORD child = WS_CHILD | WS_VISIBLE | WS_BORDER;
  CreateWindowW(WC_TREEVIEWW, L"", child, 0, 0, 200, 360, window, nullptr, instance, nullptr);
  g_list = CreateWindowW(WC_LISTVIEWW, L"", child | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS, 200, 0,
                         480, 360, window, nullptr, instance, nullptr);
  LVCOLUMNW column = {};
  column.mask = LVCF_WIDTH;
  column.cx = 400;
  ListView_InsertColumn(g_list, 0, &column);
  FillList(LastKey());
  ShowWindow(window, show);
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return 0;
}
