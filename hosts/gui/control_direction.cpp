#include "hosts/gui/control_direction.h"

#include "hosts/common/language.h"

namespace smh {

namespace {

constexpr LONG kDirection = WS_EX_RTLREADING | WS_EX_RIGHT | WS_EX_LEFTSCROLLBAR;

void SetExStyle(HWND control, LONG style) {
  SetWindowLongW(control, GWL_EXSTYLE, style);
  SetWindowPos(control, nullptr, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

}  // namespace

void KeepLeftToRight(HWND control) {
  if (!IsMirrored(CurrentLanguage())) return;
  SetExStyle(control, GetWindowLongW(control, GWL_EXSTYLE) & ~(kDirection | WS_EX_LAYOUTRTL));
}

void DirectText(HWND control) {
  if (!IsMirrored(CurrentLanguage())) return;
  SetExStyle(control, (GetWindowLongW(control, GWL_EXSTYLE) & ~WS_EX_LAYOUTRTL) | kDirection);
}

}  // namespace smh
