// The columns that the list of entries can show. Pure but for the user's forms of dates and order of letters;
// any thread.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/text.h"

#include <cstddef>
#include <span>
#include <string>

namespace smh {

// A column's title, its first width, whether it is shown at first, and its printable text for an entry.
struct EntryColumn {
  Text title;
  int width;  // at 96 DPI
  bool isShownFirst;
  std::wstring (*text)(const ItemRecord& item);
  // What it sorts by, in a form that compares byte by byte; null for the text.
  std::string (*sortKey)(const ItemRecord& item);
};

// The columns that others name. Numbers of columns are kept in the user's settings.
inline constexpr std::size_t kNameColumn = 0;
inline constexpr std::size_t kStatusColumn = 1;
inline constexpr std::size_t kTrustColumn = 3;
inline constexpr std::size_t kCommandColumn = 4;
inline constexpr std::size_t kSignerColumn = 8;
inline constexpr std::size_t kStartsColumn = 9;

// In the order in which they are offered; valid for ever.
std::span<const EntryColumn> EntryColumns() noexcept;
// What an entry sorts by in that column: compares byte by byte.
std::string SortKeyOf(const ItemRecord& item, std::size_t column);

// Empty before the file was checked, and for one without a signature.
std::wstring SignerText(const ItemRecord& item);
// "64-bit" or "32-bit" for an entry of the registry, both for one that is the same in either view.
std::wstring ViewText(const ItemRecord& item);

}  // namespace smh
