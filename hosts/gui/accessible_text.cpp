#include "hosts/gui/accessible_text.h"

#include "hosts/gui/window.h"

#include <oleacc.h>

#include <utility>

namespace smh {

AccessibleText::AccessibleText(HWND edit, std::wstring name, std::wstring keys)
    : edit_(edit), name_(std::move(name)), keys_(std::move(keys)) {}

std::wstring AccessibleText::Value(int) const {
  return TextOf(edit_);
}

DWORD AccessibleText::Role(int) const {
  return ROLE_SYSTEM_TEXT;
}

DWORD AccessibleText::State(int) const {
  const bool isReadOnly = (GetWindowLongW(edit_, GWL_STYLE) & ES_READONLY) != 0;
  return STATE_SYSTEM_FOCUSABLE | (GetFocus() == edit_ ? STATE_SYSTEM_FOCUSED : 0) |
         (isReadOnly ? STATE_SYSTEM_READONLY : 0);
}

RECT AccessibleText::Place(int) const {
  RECT place = {};
  GetClientRect(edit_, &place);
  return place;
}

bool AccessibleText::Select(int, LONG flags) {
  if (flags != SELFLAG_TAKEFOCUS) return false;
  SetFocus(edit_);
  return true;
}

}  // namespace smh
