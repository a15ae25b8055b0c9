// What stands above the list while it is compared with a saved state: with which one, how much differs, and
// the buttons of the comparison. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/painted_window.h"

#include <string>

namespace smh {

// A click on a button sends its command, CMD_ONLY_DIFFERENT or CMD_STOP_COMPARING, to the window's parent,
// which also destroys the window.
class CompareBar final : public PaintedNote {
 public:
  // Makes the bar, hidden. Called once; SetDpi comes before Place. Raises HostError.
  void Open(HWND parent);
  // The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font);
  // What it says, and whether the button for differences alone is down.
  void SetText(const std::wstring& text, bool onlyDifferent);
  // Takes the upper part of `area`, in pixels of the parent's client area. Answers the height that it takes.
  int Place(const RECT& area) const;
  // Whether it is one of its buttons.
  bool Holds(HWND control) const noexcept { return IsChild(Handle(), control) != FALSE; }

 private:
  void Paint(const PaintScope& paint) const override;
  int LineHeight() const;

  HFONT font_ = nullptr;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  HWND only_ = nullptr;
  HWND stop_ = nullptr;
  AccessibleWindow accessibleOnly_;
  AccessibleWindow accessibleStop_;
};

}  // namespace smh
