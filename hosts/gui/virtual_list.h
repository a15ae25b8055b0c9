// A report list that draws its rows from somewhere else and keeps no copy of them.
#pragma once

#include "infra/runtime/scoped_image_list.h"

#include <functional>
#include <string>
#include <vector>

namespace smh {

struct ListColumn {
  std::wstring title;
  int width;  // at 96 DPI
};

// Where rows come from, and who is told. Functions that are left empty mean "none".
struct ListSource {
  std::function<std::wstring(std::size_t row, std::size_t column)> text;
  std::function<int(std::size_t row, std::size_t column)> image;  // -1: none
  std::function<bool(std::size_t row)> checked;                   // its presence gives rows a check box
  std::function<COLORREF(std::size_t row)> color;
  std::function<void(std::size_t column)> onSort;
  std::function<void(std::size_t row)> onCheck;
  std::function<void()> onSelect;
  std::function<void()> onActivate;
};

class VirtualList {
 public:
  void Create(HWND parent, int id, std::vector<ListColumn> columns, ListSource source);

  HWND Handle() const noexcept { return list_; }
  std::size_t Count() const noexcept { return count_; }
  // Keeps the position and draws anew.
  void SetCount(std::size_t count);
  void SetDpi(int dpi, HFONT font);
  // The images are the owner's.
  void SetImages(HIMAGELIST images);
  void ShowSortArrow(std::size_t column, bool descending) const;

  std::vector<std::size_t> Selection() const;
  // Tells onSelect once, when anything has changed.
  void Select(const std::vector<std::size_t>& rows, std::size_t focused);
  void SelectAll() const;
  std::size_t Focused() const;
  std::size_t TopRow() const;
  void ScrollTo(std::size_t topRow) const;

  std::vector<int> ColumnWidths() const;  // at 96 DPI
  void SetColumnWidths(const std::vector<int>& widths);
  // The selected rows as lines, their columns apart by tabs.
  std::wstring SelectedText() const;

  // Answers a notification that may be this list's; true when it was, with the answer in `result`.
  bool OnNotify(const NMHDR& header, LRESULT& result);

 private:
  void FillItem(NMLVDISPINFOW& info) const;
  LRESULT Draw(NMLVCUSTOMDRAW& draw) const;
  void DrawImages(HDC canvas, std::size_t row) const;
  LRESULT FindText(const NMLVFINDITEMW& find) const;
  void OnClick(const NMITEMACTIVATE& click) const;
  void OnKey(const NMLVKEYDOWN& key) const;
  void OnStateChanged();

  HWND list_ = nullptr;
  std::vector<ListColumn> columns_;
  ListSource source_;
  std::size_t count_ = 0;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  bool quiet_ = false;
  std::size_t blanksForImage_ = 0;  // in front of a text, to make room for the picture
  ScopedImageList checkImages_;
};

}  // namespace smh
