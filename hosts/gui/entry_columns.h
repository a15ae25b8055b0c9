// The columns of the list of entries. Pure functions over copies, for any thread. Texts are printable.
#pragma once

#include "hosts/common/item_record.h"

#include <span>
#include <string>

namespace smh {

// A column's title, its first width, and its text for an entry.
struct EntryColumn {
  const wchar_t* title;
  int width;  // at 96 DPI
  std::wstring (*text)(const ItemRecord& item);
};

// The columns with a picture.
inline constexpr std::size_t kNameColumn = 0;
inline constexpr std::size_t kRatingColumn = 3;

// In their order on the screen; valid for ever.
std::span<const EntryColumn> EntryColumns() noexcept;

// Whether the entry names a program that is not there.
bool IsFileMissing(const ItemRecord& item) noexcept;
// Whether neither its state nor its existence can be changed by this account.
bool IsLocked(const ItemRecord& item) noexcept;
// "On", "Off, file missing", "On, locked".
std::wstring StatusText(const ItemRecord& item);
// "Trusted", "Unknown", "Risky".
std::wstring RatingText(const ItemRecord& item);
// The file's or, without one, the value's name when the entry has no caption.
std::wstring CaptionText(const ItemRecord& item);

}  // namespace smh
