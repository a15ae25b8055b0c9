#include "hosts/gui/column_layout.h"

#include "hosts/gui/entry_columns.h"

#include <algorithm>

namespace smh {

namespace {

bool Has(const ColumnLayout& layout, std::size_t column) {
  return std::ranges::find(layout, column, &ColumnPlace::column) != layout.end();
}

}  // namespace

ColumnLayout FirstLayout() {
  ColumnLayout layout;
  for (std::size_t i = 0; i < EntryColumns().size(); ++i) {
    if (EntryColumns()[i].isShownFirst) layout.push_back({i, EntryColumns()[i].width});
  }
  return layout;
}

std::vector<int> NumbersOf(const ColumnLayout& layout) {
  std::vector<int> numbers;
  numbers.reserve(layout.size() * 2);
  for (const ColumnPlace& place : layout) {
    numbers.push_back(static_cast<int>(place.column));
    numbers.push_back(place.width);
  }
  return numbers;
}

ColumnLayout LayoutOf(const std::vector<int>& numbers) {
  if (numbers.empty() || numbers.size() % 2 != 0) return FirstLayout();
  ColumnLayout layout;
  for (std::size_t i = 0; i < numbers.size(); i += 2) {
    const auto column = static_cast<std::size_t>(numbers[i]);
    if (column < EntryColumns().size() && !Has(layout, column)) layout.push_back({column, numbers[i + 1]});
  }
  if (!Has(layout, kNameColumn))
    layout.insert(layout.begin(), {kNameColumn, EntryColumns()[kNameColumn].width});
  return layout;
}

ColumnLayout LayoutOfWidths(const std::vector<int>& widths) {
  ColumnLayout layout = FirstLayout();
  for (ColumnPlace& place : layout) {
    if (place.column < widths.size()) place.width = widths[place.column];
  }
  return layout;
}

ColumnLayout Toggled(ColumnLayout layout, std::size_t column) {
  if (column == kNameColumn) return layout;
  if (std::erase_if(layout, [column](const ColumnPlace& place) { return place.column == column; }) == 0) {
    layout.push_back({column, EntryColumns()[column].width});
  }
  return layout;
}

}  // namespace smh
