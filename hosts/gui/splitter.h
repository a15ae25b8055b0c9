// A bar between two panes that the user drags. For the window's thread.
#pragma once

#include "hosts/gui/window.h"

#include <functional>

namespace smh {

// Moves nothing itself: whoever is told places the bar and the panes.
class Splitter : public Window {
 public:
  // How the bar moves: between panes that lie side by side, or one above the other.
  enum class Direction { kLeftRight, kUpDown };

  // Makes the bar as a child of `parent`, which destroys it. `onDrag` gets the place of the mouse, in pixels
  // of the parent's client area, and may be called until then. Raises HostError.
  void Open(HWND parent, Direction direction, std::function<void(int position)> onDrag);

  // At 96 DPI.
  static constexpr int kThickness = 5;

 private:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  Direction direction_ = Direction::kLeftRight;
  std::function<void(int)> onDrag_;
};

}  // namespace smh
