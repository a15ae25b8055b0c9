// A window that draws all of its client area by itself. For the window's thread.
#pragma once

#include "hosts/gui/theme_paint.h"
#include "hosts/gui/window.h"

namespace smh {

class PaintedWindow : public Window {
 protected:
  // Draws, and after a new size places what is inside and draws anew; the rest is DefWindowProcW's. Who
  // overrides it calls it for what is left.
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  // Draws the whole area; what stood there before is not erased.
  virtual void Paint(const PaintScope& paint) const = 0;
  virtual void Arrange() {}
};

// One with buttons: what is clicked goes to the parent, as a WM_COMMAND of its own.
class PaintedNote : public PaintedWindow {
 protected:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
};

}  // namespace smh
