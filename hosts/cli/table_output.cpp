#include "hosts/cli/table_output.h"

#include "hosts/common/location_names.h"
#include "hosts/common/text_encoding.h"

#include <algorithm>

namespace smh {

namespace {

constexpr std::size_t kGap = 2;
// A column is not cut below this many cells.
constexpr std::size_t kLeastWidth = 6;

struct Column {
  std::wstring_view title;
  std::wstring (*read)(const ItemRecord& item);
};
constexpr Column kItemColumns[] = {
    {L"#", [](const ItemRecord& item) { return std::to_wstring(item.index); }},
    {L"State", [](const ItemRecord& item) { return std::wstring(StateName(item.enabled)); }},
    {L"Caption", [](const ItemRecord& item) { return item.caption; }},
    {L"Company", [](const ItemRecord& item) { return item.company; }},
    {L"Rating", [](const ItemRecord& item) { return std::wstring(RatingName(item.rating)); }},
    {L"File", [](const ItemRecord& item) { return ShownFile(item); }},
    {L"Description", [](const ItemRecord& item) { return item.description; }},
};

constexpr std::size_t kFileColumn = 5;
static_assert(kItemColumns[kFileColumn].title == L"File");

std::size_t TotalWidth(const std::vector<std::size_t>& widths) {
  std::size_t total = 0;
  for (const std::size_t width : widths) total += width + kGap;
  return widths.empty() ? 0 : total - kGap;
}

// Takes cells from the widest column, one at a time, until a line fits or no column can give more.
void Fit(std::vector<std::size_t>& widths, std::size_t width) {
  for (std::size_t total = TotalWidth(widths); total > width; --total) {
    const auto widest = std::max_element(widths.begin(), widths.end());
    if (*widest <= kLeastWidth) return;
    --*widest;
  }
}

std::wstring Line(const std::vector<std::wstring>& cells, const std::vector<std::size_t>& widths,
                  std::optional<std::size_t> pathColumn) {
  std::wstring line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::wstring cell =
        i == pathColumn ? CutBeginning(cells[i], widths[i]) : CutEnd(cells[i], widths[i]);
    line += cell;
    line.append(widths[i] - DisplayWidth(cell) + kGap, L' ');
  }
  line.erase(line.find_last_not_of(L' ') + 1);
  return line;
}

struct SheetVisitor {
  std::wstring operator()(std::monostate) const { return {}; }
  std::wstring operator()(bool value) const { return value ? L"yes" : L"no"; }
  std::wstring operator()(std::int64_t value) const { return std::to_wstring(value); }
  std::wstring operator()(const std::wstring& value) const { return Printable(value); }
  std::wstring operator()(const std::vector<std::wstring_view>& names) const {
    return JoinNames(names, L", ");
  }
};

}  // namespace

std::vector<std::wstring> TextTable::Lines(std::size_t width) const {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < header.size(); ++i) {
    std::size_t cells = DisplayWidth(header[i]);
    for (const auto& row : rows) cells = std::max(cells, DisplayWidth(row[i]));
    widths.push_back(cells);
  }
  if (width != 0) Fit(widths, width);
  std::vector<std::wstring> lines = {Line(header, widths, pathColumn)};
  for (const auto& row : rows) lines.push_back(Line(row, widths, pathColumn));
  return lines;
}

std::wstring TextTable::Text(std::size_t width) const {
  std::wstring text;
  for (const std::wstring& line : Lines(width)) text += line + L"\n";
  return text;
}

std::wstring ItemTable(std::span<const ItemRecord> items, std::size_t width) {
  std::vector<const ItemRecord*> sorted;
  for (const ItemRecord& item : items) sorted.push_back(&item);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const ItemRecord* a, const ItemRecord* b) { return a->location < b->location; });
  TextTable table{.header = {}, .rows = {}, .pathColumn = kFileColumn};
  for (const Column& column : kItemColumns) table.header.emplace_back(column.title);
  for (const ItemRecord* item : sorted) {
    auto& row = table.rows.emplace_back();
    for (const Column& column : kItemColumns) row.push_back(Printable(column.read(*item)));
  }
  const std::vector<std::wstring> lines = table.Lines(width);
  std::wstring text = lines[0] + L"\n";
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    if (i == 0 || sorted[i]->location != sorted[i - 1]->location) {
      text += L"\n" + std::wstring(LocationName(sorted[i]->location)) + L"\n";
    }
    text += lines[i + 1] + L"\n";
  }
  return text;
}

std::wstring KeyValueLines(std::span<const std::pair<std::wstring, std::wstring>> rows) {
  TextTable table;
  for (const auto& [key, value] : rows) {
    std::vector<std::wstring> row = {key + L":", value};
    if (table.header.empty()) {
      table.header = std::move(row);
    } else {
      table.rows.push_back(std::move(row));
    }
  }
  return table.Text(0);
}

std::wstring ItemSheet(const ItemRecord& item) {
  std::vector<std::pair<std::wstring, std::wstring>> rows;
  for (const ItemField& field : ItemFields()) {
    rows.emplace_back(field.key, std::visit(SheetVisitor(), field.read(item)));
  }
  return KeyValueLines(rows);
}

}  // namespace smh
