#include "hosts/gui/entry_filter.h"

#include "hosts/gui/entry_words.h"
#include "hosts/gui/resource.h"

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
    {CMD_FILTER_NOT_STARTING, L"Not starting", L"OnlyNotStarting",
     L"Only entries that Windows does not start",
     [](const ItemRecord& item) { return item.starts == kStartsNo; }},
    {CMD_FILTER_MISSING, L"Missing", L"OnlyMissing", L"Only entries whose file is missing or out of reach",
     [](const ItemRecord& item) { return IsFileMissing(item) || IsFileUnreachable(item); }},
    {CMD_FILTER_UNSIGNED, L"Unsigned or broken", L"OnlyUnsigned",
     L"Only entries whose file is not signed, or whose signature does not hold", IsUnsignedOrBroken},
    {CMD_FILTER_RISKY, L"Risky", L"OnlyRisky",
     L"Only entries that are a danger: risky, or with a broken or withdrawn signature", IsDanger},
    {CMD_HIDE_VERIFIED, L"Hide verified", L"HideVerified",
     L"Without entries that are signed by a maker who is known to be trusted",
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
    text.append(1, L'\u201C').append(kFilters[i].title).append(1, L'\u201D');
    --left;
    if (left > 0) text += left == 1 ? L" and " : L", ";
  }
  return text;
}

}  // namespace smh
