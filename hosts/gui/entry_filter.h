// The filters of the list: each leaves only the entries that somebody looks for. Pure, for any thread;
// literals are valid for ever.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/text.h"

#include <bitset>
#include <cstddef>
#include <span>
#include <string>

namespace smh {

// One filter: what it is called, and which entries it keeps.
struct EntryFilter {
  unsigned command;      // CMD_FILTER_ and CMD_HIDE_VERIFIED of resource.h: its menu item and its button
  Text title;            // on its button: "Not starting"
  const wchar_t* saved;  // the name of its setting; see window_settings.h
  Text tip;              // what is left, as a sentence without an end
  bool (*keeps)(const ItemRecord& item);
};

inline constexpr std::size_t kFilterCount = 5;
// The filters that are on, by their index in EntryFilters.
using FilterSet = std::bitset<kFilterCount>;

// In the order of their buttons.
std::span<const EntryFilter> EntryFilters() noexcept;
// The index of the filter of that command; kFilterCount for any other command.
std::size_t FilterOf(unsigned command) noexcept;
// Whether the entry passes every filter that is on. What is not known of an entry yet, as the signature of
// its file, keeps it from filters that look for it, and does not hide it.
bool PassesFilters(const FilterSet& filters, const ItemRecord& item);
// For sentences: "“Missing” and “Risky”"; empty for none.
std::wstring FilterTitles(const FilterSet& filters);

}  // namespace smh
