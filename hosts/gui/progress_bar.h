// What stands above the status bar while an action takes long: what is done, how far it is, and the button
// that cancels it. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/painted_window.h"
#include "hosts/gui/running_actions.h"

#include <functional>
#include <string>

namespace smh {

// Follows the actions by itself, as long as the thread has time for its timers.
class ProgressBar final : public PaintedWindow {
 public:
  // Makes the bar as a child of `parent`, which destroys it, hidden. `onShow` shows it or hides it, and makes
  // room. Called once; SetDpi comes before Place. `actions` outlives the window. Raises HostError.
  void Open(HWND parent, RunningActions& actions, std::function<void(bool show)> onShow);
  // Shows how far the action at work is now.
  void Follow();
  // The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font);
  // In pixels. Place takes the lower part of `area`, in pixels of the parent's client area.
  int Height() const;
  void Place(const RECT& area) const;
  // What takes the focus; borrowed.
  HWND CancelButton() const noexcept { return cancel_; }
  // Cancels the action for Esc in the parent, if the bar is shown and the action can be cancelled. In
  // `search` Esc means its text as long as there is one. False when the key is somebody else's.
  bool TakesKey(const MSG& message, HWND search);

 private:
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Update(const RunningAction& action);
  void ShowCount(std::size_t done, std::size_t all);
  void Cancel();
  void Arrange() override;
  void Paint(const PaintScope& paint) const override;

  RunningActions* actions_ = nullptr;
  std::function<void(bool)> onShow_;
  HFONT font_ = nullptr;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  HWND count_ = nullptr;
  HWND cancel_ = nullptr;
  AccessibleWindow accessibleCount_;
  AccessibleWindow accessibleCancel_;
};

}  // namespace smh
