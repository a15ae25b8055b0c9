// Which columns of the entries are shown, where and how wide, and how that is kept. Pure, for any thread.
#pragma once

#include <cstddef>
#include <vector>

namespace smh {

// A column that is shown: an index of EntryColumns, and its width at 96 DPI.
struct ColumnPlace {
  std::size_t column = 0;
  int width = 0;
  bool operator==(const ColumnPlace&) const = default;
};

// In the order on the screen, each column once, the name always among them.
using ColumnLayout = std::vector<ColumnPlace>;

// What is shown when the user has chosen nothing.
ColumnLayout FirstLayout();
// A column and its width, one pair behind the other: how a layout is kept.
std::vector<int> NumbersOf(const ColumnLayout& layout);
// What was kept. Columns that this version does not know, and those that come again, are passed over, and the
// name comes first where it lacks; numbers that are no pairs give the first layout.
ColumnLayout LayoutOf(const std::vector<int>& numbers);
// What older versions have kept: the widths of the first columns.
ColumnLayout LayoutOfWidths(const std::vector<int>& widths);
// The layout with that column behind the others, or without it. The name stays.
ColumnLayout Toggled(ColumnLayout layout, std::size_t column);

}  // namespace smh
