// What stands in the list's place when it shows no entry: why, and buttons that show some. For the window's
// thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/empty_list.h"
#include "hosts/gui/painted_window.h"

#include <memory>
#include <vector>

namespace smh {

// A click on a button sends its command to the window's parent, which also destroys the window.
class EmptyNoteWindow final : public PaintedNote {
 public:
  // Makes the window, hidden. Called once; SetDpi comes before Place. Raises HostError.
  void Open(HWND parent);
  // The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font);
  // In pixels of the parent's client area.
  void Place(const RECT& area);
  // Shows that note above its siblings, or hides the window for one without a text. True when the keyboard
  // focus was on a button that has gone.
  bool Show(const EmptyListNote& note);
  // Whether a button for that command is shown.
  bool Offers(UINT command) const;

 private:
  void MakeButtons();
  void Arrange() override;
  void Paint(const PaintScope& paint) const override;
  RECT TextArea() const;

  EmptyListNote note_;
  std::vector<std::unique_ptr<AccessibleWindow>> accessible_;  // of the buttons
  HFONT font_ = nullptr;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
};

}  // namespace smh
