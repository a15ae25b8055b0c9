#include "siblings/basekit/indirect_string.h"

#include "infra/runtime/text.h"
#include "siblings/basekit/environment.h"

#include <limits>
#include <optional>

namespace smh {

namespace {

std::optional<std::int32_t> ParseNumber(std::wstring_view text) {
  const std::wstring number = Trim(text.substr(0, text.find_first_of(L";#")));
  const bool negative = number.starts_with(L'-');
  const std::wstring_view digits = std::wstring_view(number).substr(negative ? 1 : 0);
  if (digits.empty()) return std::nullopt;
  std::int64_t value = 0;
  for (const wchar_t digit : digits) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    value = value * 10 + (digit - L'0');
    if (value > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  }
  return static_cast<std::int32_t>(negative ? -value : value);
}

}  // namespace

IndirectString SplitIndirectString(std::wstring_view text) {
  IndirectString result;
  const std::size_t comma = text.rfind(L',');
  if (comma != std::wstring_view::npos) {
    if (const std::optional<std::int32_t> number = ParseNumber(text.substr(comma + 1))) {
      result.number = *number;
      text = text.substr(0, comma);
    }
  }
  result.file = ExpandEnvironment(DequoteText(Trim(text)));
  return result;
}

}  // namespace smh
