// Everything that is known about one entry, to read and to copy. For the window's thread.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/gui/view.h"
#include "hosts/gui/virtual_list.h"

#include <string>
#include <utility>
#include <vector>

namespace smh {

// A heading and a list of properties. Both controls belong to `parent`, which destroys them; the object
// outlives them.
class DetailsPane {
 public:
  // Makes the controls, hidden and without an entry. Called once; SetDpi comes before Place.
  void Create(HWND parent);
  HWND Handle() const noexcept { return list_.Handle(); }
  // Takes the area in pixels of the parent's client area.
  void Place(const RECT& area) const;
  void Show(bool show) const;
  // The fonts are the caller's and live until the next call.
  void SetDpi(int dpi, const ViewFonts& fonts);

  // Copies what it shows of the entry. Without an entry only the heading is shown.
  void SetEntry(const std::wstring& heading, const ItemRecord* item, const std::wstring& file);
  // The value of the selected line, the selected lines as "name TAB value", or all lines when none is
  // selected.
  std::wstring TextToCopy() const;
  // As VirtualList::OnNotify.
  bool OnNotify(const NMHDR& header, LRESULT& result) { return list_.OnNotify(header, result); }

 private:
  HWND heading_ = nullptr;
  VirtualList list_;
  std::vector<std::pair<std::wstring, std::wstring>> lines_;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  int headingHeight_ = 0;
};

}  // namespace smh
