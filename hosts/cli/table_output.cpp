#include "hosts/cli/table_output.h"

#include "hosts/cli/texts/table_texts.h"
#include "hosts/cli/verification.h"
#include "hosts/common/location_names.h"
#include "hosts/common/start_words.h"
#include "hosts/common/text_encoding.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

constexpr std::size_t kGap = 2;
// A column is not cut below this many cells.
constexpr std::size_t kLeastWidth = 6;
// A column is not made wider for the sake of longer cells: one long name would make every line as long.
constexpr std::size_t kWidestAligned = 80;
// Below this many cells a description has no room.
constexpr std::size_t kLeastForDescription = 120;

struct Column {
  const Text& title;
  std::wstring (*read)(const ItemRecord& item);
};

// The mark stands at the end, which is not cut.
std::wstring FileCell(const ItemRecord& item) {
  const std::wstring cell = ShownFile(item);
  return item.LacksFile() ? WithReachability(cell, item.reachability) : cell;
}

constexpr Column kItemColumns[] = {
    {texts::kIdColumn, [](const ItemRecord& item) { return item.id; }},
    {texts::kStateColumn, [](const ItemRecord& item) { return std::wstring(StateText(item.enabled).Get()); }},
    {texts::kStartsColumn, StartsText},
    {texts::kCaptionColumn, [](const ItemRecord& item) { return item.caption; }},
    {texts::kCompanyColumn, [](const ItemRecord& item) { return item.company; }},
    {texts::kRatingColumn, TrustText},
    {texts::kFileCellColumn, FileCell},
    {texts::kDescriptionColumn, [](const ItemRecord& item) { return item.description; }},
};

constexpr std::size_t kFileColumn = 6;
static_assert(kItemColumns[kFileColumn].read == FileCell);

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

std::wstring Line(const std::vector<std::wstring>& cells, const std::vector<std::size_t>& widths, bool isCut,
                  std::optional<std::size_t> pathColumn) {
  std::wstring line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::wstring cell = !isCut            ? cells[i]
                              : i == pathColumn ? CutBeginning(cells[i], widths[i])
                                                : CutEnd(cells[i], widths[i]);
    line += cell;
    line.append(widths[i] - std::min(widths[i], DisplayWidth(cell)) + kGap, L' ');
  }
  line.erase(line.find_last_not_of(L' ') + 1);
  return line;
}

Tone ToneOf(const ItemRecord& item) noexcept {
  if (IsDangerous(item)) return Tone::kDanger;
  if (item.LacksFile()) return Tone::kWarning;
  return item.enabled && item.starts != kStartsNo ? Tone::kPlain : Tone::kFaint;
}

struct CellVisitor {
  std::wstring operator()(std::monostate) const { return {}; }
  std::wstring operator()(bool value) const { return (value ? texts::kCellYes : texts::kCellNo).Get(); }
  std::wstring operator()(std::int64_t value) const { return std::to_wstring(value); }
  std::wstring operator()(const std::wstring& value) const { return Printable(value); }
  std::wstring operator()(const std::vector<std::wstring_view>& names) const {
    return JoinNames(names, L", ");
  }
};

}  // namespace

std::wstring Toned(std::wstring line, Tone tone, const TableStyle& style) {
  // By Tone: bold, dim, yellow, red.
  constexpr const wchar_t* kSequences[] = {L"", L"\x1b[1m", L"\x1b[2m", L"\x1b[33m", L"\x1b[31m"};
  if (!style.isColoured || tone == Tone::kPlain) return line;
  line.insert(0, kSequences[static_cast<std::size_t>(tone)]);
  return line += L"\x1b[0m";
}

std::vector<std::wstring> TextTable::Lines(const TableStyle& style) const {
  const bool isCut = style.width != 0;
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < header.size(); ++i) {
    std::size_t cells = DisplayWidth(header[i]);
    for (const auto& row : rows) cells = std::max(cells, DisplayWidth(row[i]));
    widths.push_back(isCut ? cells : std::min(cells, kWidestAligned));
  }
  if (isCut) Fit(widths, style.width);
  std::vector<std::wstring> lines = {Toned(Line(header, widths, isCut, pathColumn), Tone::kHeading, style)};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    lines.push_back(
        Toned(Line(rows[i], widths, isCut, pathColumn), tones.empty() ? Tone::kPlain : tones[i], style));
  }
  return lines;
}

std::wstring TextTable::Text(const TableStyle& style) const {
  std::wstring text;
  for (const std::wstring& line : Lines(style)) text.append(line).append(1, L'\n');
  return text;
}

std::wstring ItemTable(std::span<const ItemRecord> items, const TableStyle& style) {
  std::vector<const ItemRecord*> sorted;
  for (const ItemRecord& item : items) sorted.push_back(&item);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const ItemRecord* a, const ItemRecord* b) { return a->location < b->location; });
  const bool isNarrow = style.width != 0 && style.width < kLeastForDescription;
  const std::span<const Column> columns = std::span(kItemColumns).first(std::size(kItemColumns) - isNarrow);
  TextTable table{.header = {}, .rows = {}, .pathColumn = kFileColumn};
  for (const Column& column : columns) table.header.emplace_back(column.title.Get());
  for (const ItemRecord* item : sorted) {
    auto& row = table.rows.emplace_back();
    for (const Column& column : columns) row.push_back(Printable(column.read(*item)));
    table.tones.push_back(ToneOf(*item));
  }
  const std::vector<std::wstring> lines = table.Lines(style);
  std::wstring text = lines[0] + L"\n";
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    const std::int32_t location = sorted[i]->location;
    if (i == 0 || location != sorted[i - 1]->location) {
      std::wstring heading = Format(texts::kLocationHeading, FullTitle(location), LocationName(location));
      text.append(1, L'\n').append(Toned(std::move(heading), Tone::kHeading, style)).append(1, L'\n');
    }
    text.append(lines[i + 1]).append(1, L'\n');
  }
  return text;
}

std::wstring WithReachability(const std::wstring& file, std::int32_t reachability) {
  return Format(reachability == kFileUnreachable ? texts::kCellUnreachable : texts::kCellMissing, file);
}

std::wstring CellText(const FieldValue& value) {
  return std::visit(CellVisitor(), value);
}

std::wstring KeyValueLines(std::span<const std::pair<std::wstring, std::wstring>> rows) {
  TextTable table;
  for (const auto& [key, value] : rows) {
    std::vector<std::wstring> row = {Format(texts::kRowTitle, key), value};
    if (table.header.empty()) {
      table.header = std::move(row);
    } else {
      table.rows.push_back(std::move(row));
    }
  }
  return table.Text({});
}

std::wstring ItemSheet(std::span<const ItemField> fields, const ItemRecord& item) {
  std::vector<std::pair<std::wstring, std::wstring>> rows;
  for (const ItemField& field : fields) {
    rows.emplace_back(field.key, CellText(field.read(item)));
    const std::wstring_view mark = field.key == L"valueName" ? NameMarkText(item) : L"";
    if (!mark.empty()) rows.emplace_back(texts::kNoteRow.Get(), mark);
  }
  return KeyValueLines(rows);
}

}  // namespace smh
