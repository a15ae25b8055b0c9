// Tables for people, in lines with a line feed at each end. Widths are cells of a console.
#pragma once

#include "hosts/common/item_record.h"

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace smh {

// What a table has to fit, and whether it may be coloured.
struct TableStyle {
  std::size_t width = 0;  // cells of a line; 0 for any number
  bool isColoured = false;
};

// How a line is set off, by the sequences that terminals know.
enum class Tone { kPlain, kHeading, kFaint, kWarning, kDanger };
// The line in its tone where the style has colours.
std::wstring Toned(std::wstring line, Tone tone, const TableStyle& style);

// Rows of cells with aligned columns. Texts are made printable by the caller.
struct TextTable {
  std::vector<std::wstring> header;
  std::vector<std::vector<std::wstring>> rows;  // each as long as the header
  // A column whose cells are cut at their beginning: the end of a path says most.
  std::optional<std::size_t> pathColumn = {};

  // How the rows are set off on a terminal; as many as rows, or none.
  std::vector<Tone> tones = {};

  // The header and one line per row, without line ends, two blanks between columns. With a width other than 0
  // the widest columns are cut until a line fits or every one of them is down to six cells. Without one
  // nothing is cut: a cell that is longer than eighty moves the rest of its row.
  std::vector<std::wstring> Lines(const TableStyle& style) const;
  // The same as one text.
  std::wstring Text(const TableStyle& style) const;
};

// The entries grouped by location, in the order of locations and in list order within one, with the
// location's title and name above each group. A file that is missing or out of reach is marked.
std::wstring ItemTable(std::span<const ItemRecord> items, const TableStyle& style);

// A field for people: "yes" or "no", names with commas; printable.
std::wstring CellText(const FieldValue& value);
// The file, and that it is missing or out of reach, by a FileReachability that is not kFileFound.
std::wstring WithReachability(const std::wstring& file, std::int32_t reachability);
// A table with the keys as headings.
template <typename Record>
TextTable FieldTable(std::span<const Field<Record>> fields, std::span<const Record> records) {
  TextTable table;
  for (const Field<Record>& field : fields) table.header.emplace_back(field.key);
  for (const Record& record : records) {
    auto& row = table.rows.emplace_back();
    for (const Field<Record>& field : fields) row.push_back(CellText(field.read(record)));
  }
  return table;
}

// A line "key: value" per row, the values in one column; there is a row at least. Texts are made printable by
// the caller.
std::wstring KeyValueLines(std::span<const std::pair<std::wstring, std::wstring>> rows);
// "key: value" lines with those fields of one entry, made printable.
std::wstring ItemSheet(std::span<const ItemField> fields, const ItemRecord& item);

}  // namespace smh
