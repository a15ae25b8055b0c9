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

}  // namespace smh
