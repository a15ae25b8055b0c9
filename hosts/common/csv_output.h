// CSV after RFC 4180: a header row, CRLF line ends, the same columns as the keys of the JSON output. Every
// text is printable, so that a row is a line and the UTF-8 is always valid. Pure functions, for any thread.
#pragma once

#include "hosts/common/field.h"

#include <span>
#include <string>
#include <string_view>

namespace smh {

// One field, quoted where it has to be, and printable: a line break is \u{a}. A text that a spreadsheet would
// take for a formula, be it behind blanks, gets an apostrophe in front.
std::wstring CsvField(std::wstring_view text);
// Numbers and truth values as they are; names with blanks between them; nothing for none.
std::wstring CsvValue(const FieldValue& value);

// The header row with its line end; `first`, fields with a comma behind each, stands before.
template <typename Record>
std::wstring CsvHeader(std::span<const Field<Record>> fields, std::wstring_view first = {}) {
  std::wstring row(first);
  for (const Field<Record>& field : fields) row.append(field.key).append(1, L',');
  if (!row.empty()) row.pop_back();
  return row += L"\r\n";
}
// One row with its line end, as above.
template <typename Record>
std::wstring CsvRow(std::span<const Field<Record>> fields, const Record& record,
                    std::wstring_view first = {}) {
  std::wstring row(first);
  for (const Field<Record>& field : fields) row += CsvValue(field.read(record)) + L',';
  if (!row.empty()) row.pop_back();
  return row += L"\r\n";
}
// Header and rows.
template <typename Record>
std::wstring CsvTable(std::span<const Field<Record>> fields, std::span<const Record> records) {
  std::wstring table = CsvHeader(fields);
  for (const Record& record : records) table += CsvRow(fields, record);
  return table;
}

}  // namespace smh
