#include "hosts/common/csv_output.h"

#include "hosts/common/text_encoding.h"

namespace smh {

namespace {

// Their wide forms count too: a spreadsheet of an East Asian locale takes them for the same.
constexpr std::wstring_view kFormulaBeginnings = L"=+-@\uFF1D\uFF0B\uFF0D\uFF20";
constexpr std::wstring_view kBlanks = L" \u00A0\u3000";

struct CsvVisitor {
  std::wstring operator()(std::monostate) const { return {}; }
  std::wstring operator()(bool value) const { return value ? L"true" : L"false"; }
  std::wstring operator()(std::int64_t value) const { return std::to_wstring(value); }
  std::wstring operator()(const std::wstring& value) const { return CsvField(value); }
  std::wstring operator()(const std::vector<std::wstring_view>& names) const {
    return CsvField(JoinNames(names, L" "));
  }
};

}  // namespace

std::wstring CsvField(std::wstring_view text) {
  std::wstring field = Printable(text);
  const std::size_t first = field.find_first_not_of(kBlanks);
  if (first != std::wstring::npos && kFormulaBeginnings.find(field[first]) != std::wstring_view::npos) {
    field.insert(field.begin(), L'\'');
  }
  if (field.find_first_of(L",\"") == std::wstring::npos) return field;
  std::wstring quoted = L"\"";
  for (const wchar_t unit : field) {
    if (unit == L'"') quoted += L'"';
    quoted += unit;
  }
  return quoted += L'"';
}

std::wstring CsvValue(const FieldValue& value) {
  return std::visit(CsvVisitor(), value);
}

}  // namespace smh
