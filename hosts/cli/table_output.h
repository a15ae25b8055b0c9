// Tables for people, in lines with a line feed at each end. Widths are cells of a console.
#pragma once

#include "hosts/common/item_record.h"

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace smh {

// Rows of cells with aligned columns. Texts are made printable by the caller.
struct TextTable {
  std::vector<std::wstring> header;
  std::vector<std::vector<std::wstring>> rows;  // each as long as the header
  // A column whose cells are cut at their beginning: the end of a path says most.
  std::optional<std::size_t> pathColumn = {};

  // The header and one line per row, without line ends, two blanks between columns. With a width other than 0
  // the widest columns are cut until a line fits or every one of them is down to six cells.
  std::vector<std::wstring> Lines(std::size_t width) const;
  // The same as one text.
  std::wstring Text(std::size_t width) const;
};

// The entries grouped by location, in the order of locations and in list order within one, with the
// location's name above each group; at most `width` cells wide as above.
std::wstring ItemTable(std::span<const ItemRecord> items, std::size_t width);
// A line "key: value" per row, the values in one column; there is a row at least. Texts are made printable by
// the caller.
std::wstring KeyValueLines(std::span<const std::pair<std::wstring, std::wstring>> rows);
// "key: value" lines with every field of one entry, made printable.
std::wstring ItemSheet(const ItemRecord& item);

}  // namespace smh
