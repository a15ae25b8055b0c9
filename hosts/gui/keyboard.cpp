#include "hosts/gui/keyboard.h"

#include "hosts/gui/resource.h"
#include "hosts/gui/window.h"

#include <commctrl.h>

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

bool IsEdit(HWND control) noexcept {
  wchar_t name[16] = L"";
  return control != nullptr && GetClassNameW(control, name, ARRAYSIZE(name)) > 0 &&
         lstrcmpiW(name, WC_EDITW) == 0;
}

bool CanType(HWND control) noexcept {
  return IsEdit(control) && (GetWindowLongW(control, GWL_STYLE) & ES_READONLY) == 0;
}

bool IsDown(int key) noexcept {
  return GetKeyState(key) < 0;
}

// What changes the text of an edit field must not change an entry.
bool IsEditKey(WPARAM key) noexcept {
  constexpr WPARAM kWithControl[] = {'X', 'V', 'Y', 'Z', VK_INSERT};
  return key == VK_DELETE ||
         (IsDown(VK_CONTROL) &&
          std::find(std::begin(kWithControl), std::end(kWithControl), key) != std::end(kWithControl));
}

bool MovesFocus(WPARAM key) noexcept {
  return key == VK_TAB || key == VK_F6 || (key >= VK_PRIOR && key <= VK_DOWN);
}

// Lists ask for their menu by themselves, not every tree does.
bool AsksForMenu(const MSG& message) noexcept {
  return (message.message == WM_SYSKEYDOWN && message.wParam == VK_F10 && IsDown(VK_SHIFT)) ||
         (message.message == WM_KEYUP && message.wParam == VK_APPS);
}

}  // namespace

KeyTurn TakeKey(const MSG& message, const KeyTargets& targets) {
  if (message.hwnd == targets.tree && AsksForMenu(message)) {
    SendMessageW(targets.window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(targets.tree), MAKELPARAM(-1, -1));
    return KeyTurn::kNobody;
  }
  if (message.message != WM_KEYDOWN) return KeyTurn::kCommands;
  const WPARAM key = message.wParam;
  if (MovesFocus(key)) {
    SendMessageW(targets.window, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS | UISF_HIDEACCEL), 0);
  }
  const bool isSearch = message.hwnd == targets.search;
  const bool isLeaving = key == VK_ESCAPE ||
                         (key == VK_RETURN && (isSearch || message.hwnd == targets.tree)) ||
                         (key == VK_DOWN && isSearch);
  if (isLeaving && !IsDown(VK_MENU)) {
    if (isSearch && key == VK_ESCAPE) SetWindowTextW(targets.search, L"");
    SetFocus(targets.main);
    return KeyTurn::kNobody;
  }
  return CanType(message.hwnd) && IsEditKey(key) ? KeyTurn::kControl : KeyTurn::kCommands;
}

bool MeansEdit(UINT command) {
  const HWND focus = GetFocus();
  if (!IsEdit(focus)) return false;
  if (command == CMD_SELECT_ALL) return true;
  DWORD begin = 0;
  DWORD end = 0;
  SendMessageW(focus, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
  return command == CMD_COPY && begin != end;
}

void RunInEdit(UINT command) {
  if (command == CMD_SELECT_ALL) {
    SendMessageW(GetFocus(), EM_SETSEL, 0, -1);
  } else {
    SendMessageW(GetFocus(), WM_COPY, 0, 0);
  }
}

}  // namespace smh
