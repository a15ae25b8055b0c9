#include "hosts/gui/bar_keys.h"

#include <commctrl.h>

namespace smh {

namespace {

constexpr UINT_PTR kSubclass = 1;

TBBUTTON ButtonAt(HWND bar, int button) noexcept {
  TBBUTTON result = {};
  SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(button), reinterpret_cast<LPARAM>(&result));
  return result;
}

int ButtonCount(HWND bar) noexcept {
  return static_cast<int>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
}

}  // namespace

void BarKeys::Attach(HWND bar) {
  bar_ = bar;
  SetWindowSubclass(bar, Procedure, kSubclass, reinterpret_cast<DWORD_PTR>(this));
}

void BarKeys::Choose(int button) {
  if (!CanPress(button)) return;
  chosen_ = button;
  SendMessageW(bar_, TB_SETHOTITEM, static_cast<WPARAM>(button), 0);
  InvalidateRect(bar_, nullptr, TRUE);
}

LRESULT CALLBACK BarKeys::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                    DWORD_PTR self) noexcept {
  if (message == WM_NCDESTROY) {
    RemoveWindowSubclass(window, Procedure, kSubclass);
    return DefSubclassProc(window, message, wParam, lParam);
  }
  return reinterpret_cast<BarKeys*>(self)->OnMessage(message, wParam, lParam);
}

LRESULT BarKeys::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_KEYDOWN:
      if (OnKey(wParam)) return 0;
      break;
    case WM_CHAR:
      return 0;
    case WM_SETFOCUS:
      if (CanPress(chosen_)) {
        Choose(chosen_);
      } else {
        Seek(0, 1);
      }
      break;
    case WM_KILLFOCUS:
      SendMessageW(bar_, TB_SETHOTITEM, static_cast<WPARAM>(-1), 0);
      InvalidateRect(bar_, nullptr, TRUE);
      break;
    case WM_PAINT: {
      // The rectangle inverts what is below it: that is drawn anew as a whole each time.
      const bool hasFocus = GetFocus() == bar_ && chosen_ >= 0;
      const RECT place = Place();
      if (hasFocus) InvalidateRect(bar_, &place, TRUE);
      const LRESULT result = DefSubclassProc(bar_, message, wParam, lParam);
      if (hasFocus) DrawFocus();
      return result;
    }
    default:
      break;
  }
  return DefSubclassProc(bar_, message, wParam, lParam);
}

bool BarKeys::OnKey(WPARAM key) {
  const bool isMirrored = (GetWindowLongW(bar_, GWL_EXSTYLE) & WS_EX_LAYOUTRTL) != 0;
  if (isMirrored && (key == VK_LEFT || key == VK_RIGHT)) key = key == VK_LEFT ? VK_RIGHT : VK_LEFT;
  switch (key) {
    case VK_RIGHT:
    case VK_DOWN:
      Seek(chosen_ + 1, 1);
      return true;
    case VK_LEFT:
    case VK_UP:
      Seek(chosen_ - 1, -1);
      return true;
    case VK_HOME:
      Seek(0, 1);
      return true;
    case VK_END:
      Seek(ButtonCount(bar_) - 1, -1);
      return true;
    case VK_SPACE:
    case VK_RETURN:
      Press(chosen_);
      return true;
    default:
      return false;
  }
}

bool BarKeys::CanPress(int button) const {
  if (button < 0 || button >= ButtonCount(bar_)) return false;
  const TBBUTTON each = ButtonAt(bar_, button);
  return (each.fsStyle & BTNS_SEP) == 0 && (each.fsState & TBSTATE_ENABLED) != 0 &&
         (each.fsState & TBSTATE_HIDDEN) == 0;
}

void BarKeys::Seek(int start, int step) {
  const int count = ButtonCount(bar_);
  for (int button = start; button >= 0 && button < count; button += step) {
    if (CanPress(button)) return Choose(button);
  }
}

void BarKeys::Press(int chosen) const {
  if (!CanPress(chosen)) return;
  const TBBUTTON button = ButtonAt(bar_, chosen);
  if ((button.fsStyle & BTNS_CHECK) != 0) {
    const bool isOn = (button.fsState & TBSTATE_CHECKED) != 0;
    SendMessageW(bar_, TB_CHECKBUTTON, static_cast<WPARAM>(button.idCommand),
                 MAKELPARAM(isOn ? FALSE : TRUE, 0));
  }
  PostMessageW(GetParent(bar_), WM_COMMAND, static_cast<WPARAM>(button.idCommand),
               reinterpret_cast<LPARAM>(bar_));
}

RECT BarKeys::Place() const {
  RECT place = {};
  SendMessageW(bar_, TB_GETITEMRECT, static_cast<WPARAM>(chosen_), reinterpret_cast<LPARAM>(&place));
  return place;
}

void BarKeys::DrawFocus() const {
  RECT place = Place();
  InflateRect(&place, -2, -2);
  const HDC canvas = GetDC(bar_);
  SetTextColor(canvas, RGB(0, 0, 0));
  SetBkColor(canvas, RGB(255, 255, 255));
  DrawFocusRect(canvas, &place);
  ReleaseDC(bar_, canvas);
}

}  // namespace smh
