// The least a program with a list can be: a bare window with a report list of so many rows, which are texts
// that it has at once. "window_floor ROWS".

#include <windows.h>
#include <commctrl.h>

#include <cstdlib>
#include <cwchar>

namespace {

constexpr int kList = 1003;
constexpr int kColumns = 5;
constexpr wchar_t kClass[] = L"BareListWindow";

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case WM_SIZE:
      MoveWindow(GetDlgItem(window, kList), 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
      return 0;
    case WM_NOTIFY:
      if (reinterpret_cast<const NMHDR*>(lParam)->code == LVN_GETDISPINFOW) {
        LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(lParam)->item;
        if ((item.mask & LVIF_TEXT) != 0) {
          std::swprintf(item.pszText, static_cast<std::size_t>(item.cchTextMax), L"Row %d in column %d",
                        item.iItem, item.iSubItem);
        }
      }
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  const INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = OnMessage;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kClass;
  windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  RegisterClassW(&windowClass);
  const HWND window = CreateWindowExW(0, kClass, L"Rows", WS_OVERLAPPEDWINDOW, 0, 0, 1080, 700, nullptr,
                                      nullptr, windowClass.hInstance, nullptr);
  const HWND list = CreateWindowExW(
      WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_OWNERDATA, 0, 0, 1000,
      600, window, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kList)), nullptr, nullptr);
  for (int i = 0; i < kColumns; ++i) {
    wchar_t title[] = L"Column";
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    column.cx = 180;
    column.pszText = title;
    column.iSubItem = i;
    SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
  }
  SendMessageW(list, LVM_SETITEMCOUNT,
               count > 1 ? static_cast<WPARAM>(std::wcstol(arguments[1], nullptr, 10)) : 0, 0);
  ShowWindow(window, SW_SHOW);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  return 0;
}
