#include "hosts/gui/dialog_place.h"

#include "hosts/gui/dialogs.h"
#include "hosts/gui/theme_window.h"

#include <algorithm>

namespace smh {

namespace {

// The owner's area, or the work area of the main screen.
RECT AreaToCover(HWND owner) noexcept {
  RECT area = {};
  const bool isSeen = owner != nullptr && IsWindowVisible(owner) && !IsIconic(owner);
  if (isSeen && GetWindowRect(owner, &area)) return area;
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  return area;
}

// Where a length stands in the middle of [begin, end), moved into [least, most) when it would stand out.
LONG Middle(LONG begin, LONG end, LONG length, LONG least, LONG most) noexcept {
  const LONG middle = begin + (end - begin - length) / 2;
  return std::max(least, std::min(middle, most - length));
}

}  // namespace

void BeginDialog(HWND dialog, int id) {
  SetDialogTexts(dialog, id);
  ThemeDialog(dialog);
  const RECT over = AreaToCover(GetWindow(dialog, GW_OWNER));
  MONITORINFO screen = {};
  screen.cbSize = sizeof(screen);
  RECT size = {};
  if (!GetMonitorInfoW(MonitorFromRect(&over, MONITOR_DEFAULTTONEAREST), &screen) ||
      !GetWindowRect(dialog, &size)) {
    return;
  }
  const RECT& work = screen.rcWork;
  SetWindowPos(dialog, nullptr, Middle(over.left, over.right, size.right - size.left, work.left, work.right),
               Middle(over.top, over.bottom, size.bottom - size.top, work.top, work.bottom), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace smh
