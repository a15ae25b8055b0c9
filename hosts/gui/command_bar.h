// The tool bar: which commands it has, and whether they can be used now. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/bar_keys.h"
#include "infra/runtime/scoped_image_list.h"

#include <functional>

namespace smh {

// The control belongs to `parent`, which destroys it; the object owns its pictures and outlives the control.
class CommandBar {
 public:
  // Called once; SetDpi gives the bar its buttons.
  void Create(HWND parent);
  HWND Handle() const noexcept { return bar_; }
  // Makes the buttons anew, all of them shown and enabled. The font is the caller's and lives until the next
  // call.
  void SetDpi(int dpi, HFONT font);
  // In pixels.
  int Height() const;
  // Leaves the labels out where all buttons would not go into `width` pixels with them; answers what they
  // take then.
  int Fit(int width);
  // Greys what `canRun` denies.
  void Update(const std::function<bool(UINT command)>& canRun) const;
  // Shows or hides one button, until the next SetDpi.
  void ShowButton(UINT command, bool show) const;
  // Gives a tip its text; true when the notification was for a tip, of whichever control.
  static bool OnNotify(const NMHDR& header);

 private:
  void ShowLabels(bool show) const;
  int Width() const;

  HWND bar_ = nullptr;
  BarKeys keys_;
  AccessibleWindow accessible_;
  ScopedImageList images_;
  ScopedImageList greyed_;
  int widthWithLabels_ = 0;
  bool showsLabels_ = true;
};

}  // namespace smh
