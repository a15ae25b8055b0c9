// What the window has to say above its panes, with buttons that answer it. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/notices.h"
#include "hosts/gui/painted_window.h"

#include <memory>
#include <string>
#include <vector>

namespace smh {

// A click on a button sends its command to the window's parent, which also destroys the window.
class NoticeBar final : public PaintedNote {
 public:
  // Makes the bar, hidden. Called once; SetDpi comes before Place. Raises HostError.
  void Open(HWND parent);
  // The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font);
  // Hides the bar for a notice without a text; Place makes room for it. True when the keyboard focus was on a
  // button that has gone.
  bool Show(const Notice& notice);
  // Takes the upper part of `area`, in pixels of the parent's client area, as much as the text needs there.
  // Answers the height that it takes; 0 while there is nothing to say.
  int Place(const RECT& area);
  // Its buttons, from the left; borrowed until the next Show.
  std::vector<HWND> Controls() const;

 private:
  SIZE Measure(const std::wstring& text, int width) const;
  void Paint(const PaintScope& paint) const override;

  Notice notice_;
  std::vector<std::unique_ptr<AccessibleWindow>> accessible_;
  HFONT font_ = nullptr;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  int textWidth_ = 0;
};

}  // namespace smh
