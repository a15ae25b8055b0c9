#include "hosts/gui/painted_window.h"

namespace smh {

LRESULT PaintedWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      Arrange();
      InvalidateRect(Handle(), nullptr, FALSE);
      return 0;
    case WM_PAINT:
      Paint(PaintScope(Handle()));
      return 0;
    case WM_ERASEBKGND:
      return 1;
    default:
      return DefWindowProcW(Handle(), message, wParam, lParam);
  }
}

LRESULT PaintedNote::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PARENTNOTIFY:
      // The top-level window dresses what it gets; not every system passes that on.
      return SendMessageW(GetParent(Handle()), message, wParam, lParam);
    case WM_COMMAND:
      // Later: the command may destroy the button that tells of its click.
      PostMessageW(GetParent(Handle()), WM_COMMAND, LOWORD(wParam), 0);
      return 0;
    default:
      return PaintedWindow::OnMessage(message, wParam, lParam);
  }
}

}  // namespace smh
