#include "hosts/gui/splitter.h"

#include <utility>

namespace smh {

void Splitter::Open(HWND parent, Direction direction, std::function<void(int)> onDrag) {
  direction_ = direction;
  onDrag_ = std::move(onDrag);
  const bool isLeftRight = direction == Direction::kLeftRight;
  Create({.className = isLeftRight ? L"StartupManagerSplitterH" : L"StartupManagerSplitterV",
          .style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
          .cursor = isLeftRight ? IDC_SIZEWE : IDC_SIZENS,
          .parent = parent});
}

LRESULT Splitter::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_LBUTTONDOWN:
      SetCapture(Handle());
      return 0;
    case WM_LBUTTONUP:
      ReleaseCapture();
      return 0;
    case WM_MOUSEMOVE:
      if (GetCapture() == Handle()) {
        POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        MapWindowPoints(Handle(), GetParent(Handle()), &point, 1);
        onDrag_(static_cast<int>(direction_ == Direction::kLeftRight ? point.x : point.y));
      }
      return 0;
    default:
      return DefWindowProcW(Handle(), message, wParam, lParam);
  }
}

}  // namespace smh
