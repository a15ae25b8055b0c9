#include "hosts/cli/suggestion.h"

#include "hosts/cli/texts/usage_texts.h"
#include "infra/runtime/ascii_text.h"

#include <algorithm>
#include <vector>

namespace smh {

namespace {

// No name that is known is longer.
constexpr std::size_t kLongestName = 64;

}  // namespace

std::size_t EditDistance(std::wstring_view a, std::wstring_view b) {
  const std::wstring from = AsciiLowerCase(a);
  const std::wstring to = AsciiLowerCase(b);
  const std::size_t width = to.size() + 1;
  std::vector<std::size_t> cells((from.size() + 1) * width);
  const auto at = [&](std::size_t i, std::size_t j) -> std::size_t& { return cells[i * width + j]; };
  for (std::size_t i = 0; i <= from.size(); ++i) {
    for (std::size_t j = 0; j <= to.size(); ++j) {
      if (i == 0 || j == 0) {
        at(i, j) = i + j;
        continue;
      }
      const std::size_t replaced = at(i - 1, j - 1) + (from[i - 1] == to[j - 1] ? 0 : 1);
      at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, replaced});
      const bool isExchanged =
          i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1] && from[i - 1] != to[j - 1];
      if (isExchanged) at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
    }
  }
  return at(from.size(), to.size());
}

std::wstring DidYouMean(std::wstring_view given, std::span<const std::wstring> known) {
  if (given.size() > kLongestName) return {};
  const std::wstring* nearest = nullptr;
  std::size_t least = given.size() / 3 + 2;
  for (const std::wstring& name : known) {
    const std::size_t distance = EditDistance(given, name);
    if (distance >= least) continue;
    least = distance;
    nearest = &name;
  }
  return nearest == nullptr ? std::wstring() : Format(texts::kDidYouMean, *nearest);
}

}  // namespace smh
