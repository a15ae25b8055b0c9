#include "hosts/gui/list_columns.h"

#include "hosts/gui/dpi.h"

#include <algorithm>

namespace smh {

namespace {

constexpr int kLeastWidth = 20;
constexpr int kMostWidth = 2000;

}  // namespace

void ListColumns::Create(HWND list, std::vector<ListColumn> columns) {
  list_ = list;
  columns_ = std::move(columns);
  for (std::size_t i = 0; i < columns_.size(); ++i) Insert(i);
}

void ListColumns::Insert(std::size_t column) const {
  std::wstring title = columns_[column].title;
  LVCOLUMNW inserted = {};
  inserted.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  inserted.pszText = title.data();
  inserted.cx = Scaled(columns_[column].width, dpi_);
  inserted.iSubItem = static_cast<int>(column);
  SendMessageW(list_, LVM_INSERTCOLUMNW, column, reinterpret_cast<LPARAM>(&inserted));
}

void ListColumns::SetDpi(int dpi) {
  const std::vector<int> widths = Widths();
  dpi_ = dpi;
  SetWidths(widths);
}

void ListColumns::Set(std::vector<ListColumn> columns, const std::vector<std::size_t>& order) {
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  for (std::size_t i = columns_.size(); i > 1; --i) ListView_DeleteColumn(list_, static_cast<int>(i - 1));
  columns_ = std::move(columns);
  for (std::size_t i = 1; i < columns_.size(); ++i) Insert(i);
  std::vector<int> widths;
  widths.reserve(columns_.size());
  for (const ListColumn& column : columns_) widths.push_back(column.width);
  SetWidths(widths);
  std::vector<int> places(order.begin(), order.end());
  ListView_SetColumnOrderArray(list_, static_cast<int>(places.size()), places.data());
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list_, nullptr, TRUE);
}

std::vector<std::size_t> ListColumns::Order() const {
  std::vector<int> places(columns_.size());
  ListView_GetColumnOrderArray(list_, static_cast<int>(places.size()), places.data());
  return {places.begin(), places.end()};
}

std::vector<int> ListColumns::Widths() const {
  std::vector<int> widths;
  widths.reserve(columns_.size());
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    const int width = ListView_GetColumnWidth(list_, static_cast<int>(i));
    widths.push_back(columns_[i].takesFreeWidth ? columns_[i].width
                                                : MulDiv(width, USER_DEFAULT_SCREEN_DPI, dpi_));
  }
  return widths;
}

void ListColumns::SetWidths(const std::vector<int>& widths) {
  isSizing_ = true;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i].width = std::clamp(widths[i], kLeastWidth, kMostWidth);
    ListView_SetColumnWidth(list_, static_cast<int>(i), Scaled(columns_[i].width, dpi_));
  }
  isSizing_ = false;
  Fit();
}

void ListColumns::ShowSorting(const SortMark& first, const SortMark& second) const {
  const HWND header = ListView_GetHeader(list_);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::wstring title = columns_[i].title;
    if (i == second.column) title += second.descending ? L" (2 \u2193)" : L" (2 \u2191)";
    HDITEMW item = {};
    item.mask = HDI_FORMAT;
    SendMessageW(header, HDM_GETITEMW, i, reinterpret_cast<LPARAM>(&item));
    item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
    if (i == first.column) item.fmt |= first.descending ? HDF_SORTDOWN : HDF_SORTUP;
    item.mask |= HDI_TEXT;
    item.pszText = title.data();
    SendMessageW(header, HDM_SETITEMW, i, reinterpret_cast<LPARAM>(&item));
  }
}

void ListColumns::OnListMessage(UINT message, LPARAM lParam) {
  if (message == WM_SIZE) Fit();
  if (message == WM_NOTIFY) OnHeader(*reinterpret_cast<const NMHDR*>(lParam));
}

// A width that the user has chosen.
void ListColumns::OnHeader(const NMHDR& header) {
  if (header.hwndFrom != ListView_GetHeader(list_) || header.code != HDN_ITEMCHANGEDW || isSizing_) return;
  const auto& change = reinterpret_cast<const NMHEADERW&>(header);
  const auto column = static_cast<std::size_t>(change.iItem);
  if (change.pitem == nullptr || (change.pitem->mask & HDI_WIDTH) == 0 || column >= columns_.size()) return;
  columns_[column].width = MulDiv(change.pitem->cxy, USER_DEFAULT_SCREEN_DPI, dpi_);
  Fit();
}

void ListColumns::Fit() {
  const auto taker = std::ranges::find(columns_, true, &ListColumn::takesFreeWidth);
  if (taker == columns_.end() || isSizing_) return;
  const int column = static_cast<int>(taker - columns_.begin());
  RECT area;
  GetClientRect(list_, &area);
  int left = static_cast<int>(area.right);
  for (int i = 0; i < static_cast<int>(columns_.size()); ++i) {
    if (i != column) left -= ListView_GetColumnWidth(list_, i);
  }
  const int width = std::max(left, Scaled(taker->width, dpi_));
  if (width == ListView_GetColumnWidth(list_, column)) return;
  isSizing_ = true;
  ListView_SetColumnWidth(list_, column, width);
  isSizing_ = false;
}

}  // namespace smh
