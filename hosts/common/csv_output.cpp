#include "hosts/common/csv_output.h"

#include "hosts/common/text_encoding.h"

namespace smh {

namespace {

struct CsvVisitor {
  std::wstring operator()(std::monostate) const { return {}; }
  std::wstring operator()(bool value) const { return value ? L"true" : L"false"; }
  std::wstring operator()(std::int64_t value) const { return CsvField(std::to_wstring(value)); }
  std::wstring operator()(const std::wstring& value) const { return CsvField(value); }
  std::wstring operator()(const std::vector<std::wstring_view>& names) const {
    return CsvField(JoinNames(names, L" "));
  }
};

std::wstring WithoutUnpairedSurrogates(std::wstring_view text) {
  std::wstring result;
  ForEachCodePoint(text, [&](std::uint32_t value, std::wstring_view units) {
    result += IsSurrogate(value) ? Printable(units) : std::wstring(units);
  });
  return result;
}

}  // namespace

std::wstring CsvField(std::wstring_view text) {
  std::wstring field = WithoutUnpairedSurrogates(text);
  if (!field.empty() && std::wstring_view(L"=+-@").find(field.front()) != std::wstring_view::npos) {
    field.insert(field.begin(), L'\'');
  }
  if (field.find_first_of(L",\"\r\n") == std::wstring::npos) return field;
  std::wstring quoted = L"\"";
  for (const wchar_t unit : field) {
    if (unit == L'"') quoted += L'"';
    quoted += unit;
  }
  return quoted + L'"';
}

std::wstring CsvHeader(bool withEvent) {
  std::wstring row = withEvent ? L"event" : L"";
  for (const ItemField& field : ItemFields()) {
    if (!row.empty()) row += L',';
    row += field.key;
  }
  return row + L"\r\n";
}

std::wstring CsvRow(const ItemRecord& item, std::wstring_view event) {
  std::wstring row(event);
  for (const ItemField& field : ItemFields()) {
    if (!row.empty()) row += L',';
    row += std::visit(CsvVisitor(), field.read(item));
  }
  return row + L"\r\n";
}

std::wstring CsvTable(std::span<const ItemRecord> items) {
  std::wstring table = CsvHeader();
  for (const ItemRecord& item : items) table += CsvRow(item);
  return table;
}

}  // namespace smh
