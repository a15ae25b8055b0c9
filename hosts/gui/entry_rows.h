// What the list of entries shows: its columns, and as its rows a snapshot of all entries, their order, and
// what the filter leaves of them. Has no window and takes no lock.
#pragma once

#include "core/contracts/location_table.h"
#include "hosts/common/entry_watch.h"

#include <bitset>
#include <compare>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace smh {

// A column's title, its first width, and its printable text for an entry. The functions on columns and single
// entries are pure, for any thread.
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
// Whether it may be there, on a share or network drive that did not answer.
bool IsFileUnreachable(const ItemRecord& item) noexcept;
// Whether neither its state nor its existence can be changed by this account.
bool IsLocked(const ItemRecord& item) noexcept;
// "On", "Off, file missing", "On, locked".
std::wstring StatusText(const ItemRecord& item);
// "Trusted", "Unknown", "Risky".
std::wstring RatingText(const ItemRecord& item);
// The file's or, without one, the value's name when the entry has no caption.
std::wstring CaptionText(const ItemRecord& item);

// Location and name are an entry's identity.
struct EntryKey {
  std::int32_t location = sulNone;
  std::wstring name;
  auto operator<=>(const EntryKey&) const = default;
};

// The identity of the entry that the record was read from.
inline EntryKey KeyOf(const ItemRecord& item) {
  return {item.location, item.name};
}

using LocationSet = std::bitset<kLastLocation + 1>;

// A row keeps its number for as long as its entry is listed, under whatever name.
using RowId = std::uint64_t;

// An entry with what searching and sorting compare.
struct EntryRow {
  RowId id = 0;
  ItemRecord item;
  std::wstring searched;  // lower case
  std::string sortKey;    // of the column that sorts; compares byte by byte
};

// Owns the rows; used by one thread. Every change rebuilds order and filter: pointers to rows stay valid
// until Apply, positions until any change.
class EntryRows {
 public:
  // Takes in the events of one look. The row of an entry that got another name, as it does when it is
  // disabled, stays the same.
  void Apply(std::vector<WatchEvent> events);
  // Shows rows of those locations only; at first all.
  void ShowLocations(LocationSet locations);
  // Shows rows that have every word of `text` somewhere in what the user reads of them, case ignored; without
  // words all.
  void Search(std::wstring_view text);
  // `column` is an index of EntryColumns. Rows that are equal there stay in the order of location and name.
  void Sort(std::size_t column, bool descending);

  // An index of EntryColumns, and the direction: what Sort was told last.
  std::size_t SortColumn() const noexcept { return column_; }
  bool Descending() const noexcept { return descending_; }
  // All rows, and those of one location, whatever the filter shows.
  std::size_t Total() const noexcept { return rows_.size(); }
  std::size_t CountOf(std::int32_t location) const noexcept { return counts_[location]; }
  // The rows that are shown, in their order. Valid until the next change.
  const std::vector<const EntryRow*>& Shown() const noexcept { return shown_; }

  // Of positions among those shown; one beyond the end is passed over.
  std::vector<RowId> IdsAt(const std::vector<std::size_t>& positions) const;
  // The positions of those rows that are still shown, in rising order.
  std::vector<std::size_t> PositionsOf(const std::set<RowId>& ids) const;

 private:
  using Rows = std::map<EntryKey, EntryRow>;

  void Put(ItemRecord item);
  void Remove(const EntryKey& key);
  void Rename(const EntryKey& from, ItemRecord to);
  void Arrange();
  void Filter();

  Rows rows_;
  std::vector<const EntryRow*> order_;  // all rows, sorted
  std::vector<const EntryRow*> shown_;
  std::size_t counts_[kLastLocation + 1] = {};
  LocationSet locations_ = LocationSet().set();
  std::vector<std::wstring> words_;
  std::size_t column_ = kNameColumn;
  bool descending_ = false;
  RowId lastId_ = 0;
};

}  // namespace smh
