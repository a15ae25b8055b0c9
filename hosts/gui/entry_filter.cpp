#include "hosts/gui/entry_filter.h"

#include "hosts/gui/entry_words.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/filter_texts.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

bool IsUnsignedOrBroken(const ItemRecord& item) {
  if (!item.trust) return false;
  switch (item.trust->signature) {
    case kSignatureNone:
    case kSignatureBroken:
    case kSignatureUntrusted:
    case kSignatureExpired:
    case kSignatureDistrusted:
      return true;
    default:
      return false;
  }
}

constexpr EntryFilter kFilters[kFilterCount] = {
    {CMD_FILTER_NOT_STARTING, texts::kNotStarting, L"OnlyNotStarting", texts::kNotStartingTip,
     [](const ItemRecord& item) { return item.starts == kStartsNo; }},
    {CMD_FILTER_MISSING, texts::kMissing, L"OnlyMissing", texts::kMissingTip,
     [](const ItemRecord& item) { return IsFileMissing(item) || IsFileUnreachable(item); }},
    {CMD_FILTER_UNSIGNED, texts::kUnsigned, L"OnlyUnsigned", texts::kUnsignedTip, IsUnsignedOrBroken},
    {CMD_FILTER_RISKY, texts::kRiskyFilter, L"OnlyRisky", texts::kRiskyTip, IsDanger},
    {CMD_HIDE_VERIFIED, texts::kHideVerified, L"HideVerified", texts::kHideVerifiedTip,
     [](const ItemRecord& item) { return !item.trust || item.trust->word != TrustWord::kVerified; }},
};

}  // namespace

std::span<const EntryFilter> EntryFilters() noexcept {
  return kFilters;
}

std::size_t FilterOf(unsigned command) noexcept {
  const auto* const filter =
      std::find_if(std::begin(kFilters), std::end(kFilters),
                   [command](const EntryFilter& each) { return each.command == command; });
  return static_cast<std::size_t>(filter - std::begin(kFilters));
}

bool PassesFilters(const FilterSet& filters, const ItemRecord& item) {
  for (std::size_t i = 0; i < kFilterCount; ++i) {
    if (filters[i] && !kFilters[i].keeps(item)) return false;
  }
  return true;
}

std::wstring FilterTitles(const FilterSet& filters) {
  std::wstring text;
  std::size_t left = filters.count();
  for (std::size_t i = 0; i < kFilterCount; ++i) {
    if (!filters[i]) continue;
    const std::wstring title = Format(texts::kQuoted, kFilters[i].title.Get());
    --left;
    text = text.empty() ? title : Format(left == 0 ? texts::kListAnd : texts::kListComma, text, title);
  }
  return text;
}

}  // namespace smh
