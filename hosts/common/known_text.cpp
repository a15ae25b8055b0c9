#include "hosts/common/known_text.h"

namespace smh {

namespace {

std::wstring Filled(std::wstring_view text, const std::vector<std::wstring>& arguments) {
  const auto at = [&arguments](std::size_t index) {
    return index < arguments.size() ? std::wstring_view(arguments[index]) : std::wstring_view();
  };
  return FillIn(text, {at(0), at(1), at(2)});
}

}  // namespace

std::optional<std::vector<std::wstring>> ArgumentsIn(const Text& row, std::wstring_view text) {
  std::wstring_view pattern = row.In(Language::kEnglish);
  std::vector<std::wstring> arguments;
  for (;;) {
    const std::size_t mark = pattern.find(L'%');
    const std::wstring_view literal = pattern.substr(0, mark);
    if (!text.starts_with(literal)) return std::nullopt;
    text.remove_prefix(literal.size());
    if (mark == std::wstring_view::npos) break;
    pattern.remove_prefix(mark + 2);
    // Up to what follows; the last one takes the rest but that.
    const std::wstring_view next = pattern.substr(0, pattern.find(L'%'));
    const bool isLast = next.size() == pattern.size();
    const std::size_t end =
        isLast ? (text.ends_with(next) ? text.size() - next.size() : text.npos) : text.find(next);
    if (end == text.npos) return std::nullopt;
    arguments.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return text.empty() ? std::optional(std::move(arguments)) : std::nullopt;
}

Phrase Known(std::span<const Text> rows, std::wstring_view text) {
  for (const Text& row : rows) {
    if (const auto arguments = ArgumentsIn(row, text)) {
      return {std::wstring(text), Filled(row.Get(), *arguments)};
    }
  }
  return text;
}

}  // namespace smh
