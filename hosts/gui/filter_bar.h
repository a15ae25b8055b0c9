// The buttons above the list that switch its filters. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/entry_filter.h"

#include <windows.h>

#include <array>

namespace smh {

// A button per filter, down while it is on; a click sends the filter's command to `parent`, which also
// destroys the buttons. The object outlives them.
class FilterBar {
 public:
  // Makes the buttons, hidden. Called once; SetDpi comes before Place.
  void Create(HWND parent);
  // The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font);
  // Puts the buttons in lines from the top of `area`, in pixels of the parent's client area. Answers the
  // height that they take.
  int Place(const RECT& area) const;
  void Show(bool show) const;
  // Presses the buttons of the filters that are on.
  void Check(const FilterSet& filters) const;
  // By their index in EntryFilters; borrowed.
  const std::array<HWND, kFilterCount>& Buttons() const noexcept { return buttons_; }

 private:
  std::array<HWND, kFilterCount> buttons_ = {};
  std::array<AccessibleWindow, kFilterCount> accessible_;
  std::array<int, kFilterCount> widths_ = {};
  int height_ = 0;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
};

}  // namespace smh
