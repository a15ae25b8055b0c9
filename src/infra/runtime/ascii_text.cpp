#include "infra/runtime/ascii_text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace smh {

namespace {

constexpr wchar_t LowerCase(wchar_t unit) noexcept {
  return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
}

}  // namespace

std::wstring AsciiLowerCase(std::wstring_view text) {
  std::wstring result(text);
  std::ranges::transform(result, result.begin(), LowerCase);
  return result;
}

bool SameAsciiText(std::wstring_view a, std::wstring_view b) noexcept {
  return a.size() == b.size() && (a == b || std::ranges::equal(a, b, {}, LowerCase, LowerCase));
}

// FNV-1a over pairs of units. Without the bit that tells capitals; that other units then look alike does no
// harm.
std::size_t AsciiTextHash::operator()(std::wstring_view text) const noexcept {
  constexpr std::uint32_t kPrime = 16'777'619;
  constexpr std::uint32_t kMask = 0xFFDF'FFDF;
  std::uint32_t hash = 2'166'136'261;
  std::size_t i = 0;
  for (; i + 1 < text.size(); i += 2) {
    std::uint32_t pair;
    std::memcpy(&pair, text.data() + i, sizeof(pair));
    hash = (hash ^ (pair & kMask)) * kPrime;
    hash ^= hash >> 15;
  }
  if (i < text.size()) hash = (hash ^ (text[i] & kMask)) * kPrime;
  return hash;
}

}  // namespace smh
