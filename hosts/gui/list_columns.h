// The columns of a report list: their titles, places and widths, and how they show the order. For the
// window's thread.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

namespace smh {

// A column's title and width. One that takes the free width is never narrower than what the others leave.
struct ListColumn {
  std::wstring title;
  int width;  // at 96 DPI
  bool takesFreeWidth = false;
};

// A column that sorts; one beyond the last is none.
struct SortMark {
  std::size_t column = 0;
  bool descending = false;
};

class ListColumns {
 public:
  // Makes the columns of a list that has none and outlives this object.
  void Create(HWND list, std::vector<ListColumn> columns);
  std::size_t Count() const noexcept { return columns_.size(); }
  // Without what shows the order.
  const std::wstring& Title(std::size_t column) const { return columns_[column].title; }
  void SetDpi(int dpi);

  // Shows other columns; the first one stays what it is. `order` has their indexes from left to right.
  void Set(std::vector<ListColumn> columns, const std::vector<std::size_t>& order);
  // The indexes from left to right, as the user has moved them.
  std::vector<std::size_t> Order() const;
  // At 96 DPI, of one that takes the free width without that. Widths that are set are kept between 20 and
  // 2000.
  std::vector<int> Widths() const;
  // Shows an arrow in the head of the first, and a 2 with an arrow in that of the one that decides among
  // equals.
  void ShowSorting(const SortMark& first, const SortMark& second) const;

  // To be told of every message of the list, when the list has answered it.
  void OnListMessage(UINT message, LPARAM lParam);

 private:
  void Insert(std::size_t column) const;
  void SetWidths(const std::vector<int>& widths);
  void OnHeader(const NMHDR& header);
  void Fit();

  HWND list_ = nullptr;
  std::vector<ListColumn> columns_;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  bool isSizing_ = false;  // the program itself, not the user
};

}  // namespace smh
