#include "hosts/gui/accessible_button.h"

#include "hosts/gui/window.h"

#include <oleacc.h>

#include <utility>

namespace smh {

AccessibleButton::AccessibleButton(HWND button, std::wstring description)
    : button_(button), description_(std::move(description)) {}

bool AccessibleButton::IsSwitch() const {
  return (GetWindowLongW(button_, GWL_STYLE) & BS_TYPEMASK) == BS_CHECKBOX;
}

std::wstring AccessibleButton::Name(int) const {
  return TextOf(button_);
}

DWORD AccessibleButton::Role(int) const {
  return IsSwitch() ? ROLE_SYSTEM_CHECKBUTTON : ROLE_SYSTEM_PUSHBUTTON;
}

DWORD AccessibleButton::State(int) const {
  const bool isChecked = IsSwitch() && SendMessageW(button_, BM_GETCHECK, 0, 0) == BST_CHECKED;
  return (GetFocus() == button_ ? STATE_SYSTEM_FOCUSED : 0) | (isChecked ? STATE_SYSTEM_CHECKED : 0) |
         (IsWindowEnabled(button_) != FALSE ? STATE_SYSTEM_FOCUSABLE : STATE_SYSTEM_UNAVAILABLE) |
         (IsWindowVisible(button_) != FALSE ? 0 : STATE_SYSTEM_INVISIBLE);
}

RECT AccessibleButton::Place(int) const {
  RECT place = {};
  GetClientRect(button_, &place);
  return place;
}

void AccessibleButton::DoDefaultAction(int) {
  PostMessageW(button_, BM_CLICK, 0, 0);
}

bool AccessibleButton::Select(int, LONG flags) {
  if (flags != SELFLAG_TAKEFOCUS || IsWindowVisible(button_) == FALSE) return false;
  SetFocus(button_);
  return true;
}

}  // namespace smh
