// A bar between two panes that the user drags.
#pragma once

#include "hosts/gui/window.h"

#include <functional>

namespace smh {

class Splitter : public Window {
 public:
  enum class Direction { kLeftRight, kUpDown };

  // `onDrag` gets the bar's new place, in the parent's coordinates.
  void Open(HWND parent, Direction direction, std::function<void(int position)> onDrag);

  static constexpr int kThickness = 5;  // at 96 DPI

 private:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  Direction direction_ = Direction::kLeftRight;
  std::function<void(int)> onDrag_;
};

}  // namespace smh
