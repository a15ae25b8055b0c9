#include "hosts/common/short_id.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace smh {

namespace {

constexpr std::size_t kWholeDigits = 16;

class Hash {
 public:
  void Add(std::uint32_t number, int bytes) noexcept {
    for (int i = 0; i < bytes; ++i) state_ = (state_ ^ (number >> 8 * i & 0xFF)) * 0x100000001B3;
  }
  // The last units alone would reach the first digits hardly.
  std::uint64_t Mixed() const noexcept {
    const std::uint64_t once = (state_ ^ state_ >> 32) * 0xD6E8FEB86659FD93;
    return once ^ once >> 32;
  }

 private:
  std::uint64_t state_ = 0xCBF29CE484222325;
};

std::size_t CommonDigits(std::wstring_view a, std::wstring_view b) noexcept {
  return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

}  // namespace

std::wstring WholeId(std::int32_t location, std::wstring_view name) {
  Hash hash;
  hash.Add(static_cast<std::uint32_t>(location), 4);
  for (const wchar_t unit : name) hash.Add(unit, 2);
  std::wstring digits(kWholeDigits, L'0');
  std::uint64_t number = hash.Mixed();
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, number >>= 4) {
    *digit = L"0123456789abcdef"[number & 0xF];
  }
  return digits;
}

std::vector<std::wstring> ShortIds(const std::vector<std::wstring>& wholeIds) {
  std::vector<std::pair<std::wstring_view, std::size_t>> ids;
  for (std::size_t i = 0; i < wholeIds.size(); ++i) ids.emplace_back(wholeIds[i], i);
  std::ranges::sort(ids);
  std::vector<std::wstring> shortIds(wholeIds.size());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const auto& [id, index] = ids[i];
    std::size_t common = 0;
    if (i > 0) common = CommonDigits(id, ids[i - 1].first);
    if (i + 1 < ids.size()) common = std::max(common, CommonDigits(id, ids[i + 1].first));
    shortIds[index] = id.substr(0, std::max(common + 1, kShortIdDigits));
  }
  return shortIds;
}

bool IsIdText(std::wstring_view text) noexcept {
  return text.size() >= kShortIdDigits && text.size() <= kWholeDigits &&
         text.find_first_not_of(L"0123456789abcdefABCDEF") == std::wstring_view::npos;
}

}  // namespace smh
