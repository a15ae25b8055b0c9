// A report list that draws its rows from somewhere else and keeps no copy of them. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/cell_tips.h"
#include "hosts/gui/list_columns.h"
#include "infra/runtime/scoped_image_list.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace smh {

// Where rows come from, and who is told. Functions that are left empty mean "none". They are called on the
// window's thread, with rows below Count, for as long as the control exists; `text` is required.
struct ListSource {
  std::function<std::wstring(std::size_t row, std::size_t column)> text;
  // What is copied, where that is not the text that is shown.
  std::function<std::wstring(std::size_t row, std::size_t column)> copied;
  std::function<int(std::size_t row, std::size_t column)> image;  // -1: none
  std::function<bool(std::size_t row)> checked;                   // its presence gives rows a check box
  std::function<COLORREF(std::size_t row)> color;
  std::function<void(std::size_t column)> onSort;
  // The menu of the columns' heads is asked for, at a place of the screen.
  std::function<void(POINT point)> onHeaderMenu;
  std::function<void(std::size_t row)> onCheck;
  std::function<void()> onSelect;
  std::function<void()> onActivate;
  // The row with the focus is to show what is below it, or to hide it: the right and the left arrow key.
  std::function<void(std::size_t row, bool open)> onFold;
};

// The control belongs to its parent, which destroys it; it refers to this object, which stays where it is and
// outlives it. Create comes first, and SetDpi before the list is seen.
class VirtualList {
 public:
  // Makes the control, without rows; `id` is the control's number for notifications and tests.
  void Create(HWND parent, int id, std::vector<ListColumn> columns, ListSource source);

  // What programs that read the screen say of the list, and of what Enter does with a row: a verb, empty for
  // nothing. Called once.
  void Describe(std::wstring name, std::wstring action);
  // Null before Create.
  HWND Handle() const noexcept { return list_; }
  std::size_t Count() const noexcept { return count_; }
  // Tells how many rows the source has by now. Keeps selection and scroll position by row number, and draws
  // anew.
  void SetCount(std::size_t count);
  // Scales columns and check boxes. The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font);
  // The images are the owner's and live until the next call; null for none.
  void SetImages(HIMAGELIST images);
  // What is shown in them is told by `text`, which counts them as they are set.
  ListColumns& Columns() noexcept { return columns_; }
  const ListColumns& Columns() const noexcept { return columns_; }

  // The selected rows in rising order.
  std::vector<std::size_t> Selection() const;
  // Makes exactly `rows` the selection and puts the focus on `focused`, unless that is beyond the last row.
  // Tells onSelect once at the end, whether anything has changed or not.
  void Select(const std::vector<std::size_t>& rows, std::size_t focused);
  // Tells onSelect.
  void SelectAll();
  // The row with the focus; the greatest std::size_t when there is none.
  std::size_t Focused() const;
  // The first row that is seen, and scrolling to make another one that.
  std::size_t TopRow() const;
  void ScrollTo(std::size_t topRow) const;

  // The selected rows as lines with CRLF, their columns from left to right, apart by tabs.
  std::wstring SelectedText() const;

  // Answers a notification that may be this list's; true when it was, with the answer in `result`.
  bool OnNotify(const NMHDR& header, LRESULT& result);

 private:
  static LRESULT CALLBACK OnMessage(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR self) noexcept;
  void FillItem(NMLVDISPINFOW& info) const;
  LRESULT Draw(NMLVCUSTOMDRAW& draw) const;
  void DrawImages(HDC canvas, std::size_t row) const;
  LRESULT FindText(const NMLVFINDITEMW& find) const;
  void OnClick(const NMITEMACTIVATE& click) const;
  void OnKey(const NMLVKEYDOWN& key) const;
  void ShowFocus() const;
  void OnStateChanged();

  HWND list_ = nullptr;
  ListColumns columns_;
  AccessibleWindow accessible_;
  ListSource source_;
  std::size_t count_ = 0;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  bool quiet_ = false;
  mutable std::optional<std::vector<std::size_t>> selection_;  // none: it may be another by now
  std::size_t blanksForImage_ = 0;  // in front of a text, to make room for the picture
  ScopedImageList checkImages_;
  CellTips tips_;
};

}  // namespace smh
