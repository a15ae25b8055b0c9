// Everything that is known about one entry, to read and to copy. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/view.h"
#include "hosts/gui/visible_text.h"
#include "infra/runtime/handle.h"

#include <optional>
#include <string>

namespace smh {

// A heading, and below it a text that wraps: a line "name TAB value" for each property, the values one below
// the other. Both controls belong to `parent`, which destroys them; the object outlives them.
class DetailsPane {
 public:
  // Makes the controls, hidden and without an entry. Called once; SetDpi comes before Place.
  void Create(HWND parent);
  HWND Handle() const noexcept { return text_; }
  // Takes the area in pixels of the parent's client area.
  void Place(const RECT& area) const;
  void Show(bool show) const;
  // The fonts are the caller's and live until the next call.
  void SetDpi(int dpi, const ViewFonts& fonts);

  // Copies what it shows of the entry, behind the lines of `first`. Without an entry only the heading and
  // those are shown. Place and selection stay while the entry stays.
  void SetEntry(const std::wstring& heading, const ItemRecord* item, const std::wstring& file,
                std::vector<DetailLine> first = {});
  // What is selected, or everything when nothing is: values as they are, not as they are shown.
  std::wstring TextToCopy() const;
  void SelectAll() const;

 private:
  void ShowText() const;
  void SetTabs() const;

  ScopedModule library_;  // of the control's class
  HWND heading_ = nullptr;
  HWND text_ = nullptr;
  AccessibleWindow accessible_;
  VisibleText shown_;
  std::optional<EntryKey> entry_;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  int headingHeight_ = 0;
};

}  // namespace smh
