// What the list of entries shows: its columns, and as its rows a snapshot of all entries, their order, and
// what the filter leaves of them. Has no window and takes no lock.
#pragma once

#include "core/contracts/location_table.h"
#include "hosts/common/entry_watch.h"
#include "hosts/gui/comparison.h"
#include "hosts/gui/entry_columns.h"
#include "hosts/gui/entry_filter.h"
#include "hosts/gui/entry_words.h"

#include <bitset>
#include <compare>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace smh {

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
  std::wstring twinMark;   // what tells it from others of the same caption; empty when none has that
  std::wstring searched;   // lower case
  std::string sortKey;     // of the column that sorts; compares byte by byte
  std::string secondKey;   // of the column that decides among equals
  bool isChecked = false;  // whether the trust of its file was asked since it was last told to be
  // While Compare is on: how it differs from the saved state. A row of kRemoved is no entry.
  std::optional<EntryDifference> difference = {};

  bool IsGone() const noexcept { return difference && difference->kind == DifferenceKind::kRemoved; }
};

// Owns the rows; used by one thread. Every change rebuilds order and filter: pointers to rows stay valid
// until Apply, positions until any change.
class EntryRows {
 public:
  // An index of EntryColumns, and the direction.
  struct Order {
    std::size_t column = kNameColumn;
    bool descending = false;
    bool operator==(const Order&) const = default;
  };

  // Takes in the events of one look. The row of an entry that got another name, as it does when it is
  // disabled, stays the same.
  void Apply(std::vector<WatchEvent> events);
  // Shows rows of those locations only; at first all.
  void ShowLocations(LocationSet locations);
  // Shows rows that have every word of `text` somewhere in what the user reads of them, case ignored; without
  // words all.
  void Search(std::wstring_view text);
  // Shows rows that pass all of those filters.
  void SetFilters(const FilterSet& filters);
  // Marks what differs from that state, now and with every Apply, and adds a row for each entry that is only
  // there; null ends that. Total and CountOf go without those rows.
  void Compare(std::shared_ptr<const Snapshot> before);
  bool IsComparing() const noexcept { return before_ != nullptr; }
  // By DifferenceKind, whatever the filter shows.
  const DifferenceCounts& Differences() const noexcept { return differences_; }
  // Shows only rows that differ, as long as it compares.
  void ShowOnlyDifferent(bool only);
  bool ShowsOnlyDifferent() const noexcept { return before_ != nullptr && onlyDifferent_; }
  // The second order decides among rows that are equal in the first, then location and name do.
  void Sort(const Order& first, const Order& second);

  // What Sort was told last.
  const Order& FirstOrder() const noexcept { return first_; }
  const Order& SecondOrder() const noexcept { return second_; }
  // All rows, and those of one location, whatever the filter shows.
  std::size_t Total() const noexcept { return rows_.size(); }
  std::size_t CountOf(std::int32_t location) const noexcept { return counts_[location]; }
  const FilterSet& Filters() const noexcept { return filters_; }
  // Whether Search was told a word.
  bool IsSearched() const noexcept { return !words_.empty(); }
  // How many rows there would be if only those of the limits were set.
  enum class Limit { kLocations, kLocationsAndSearch, kSearchAndFilters };
  std::size_t Count(Limit limit) const;
  // The rows that are shown, in their order. Valid until the next change.
  const std::vector<const EntryRow*>& Shown() const noexcept { return shown_; }

  // What has to be checked, `most` entries of it: those that are seen first, `seen` rows from position
  // `first` on, then the others that are shown, then the rest.
  std::vector<ItemRecord> Unchecked(std::size_t first, std::size_t seen, std::size_t most) const;
  // Of all rows.
  std::size_t UncheckedCount() const noexcept;
  // Takes in the trust of entries as they were when it was asked; an entry that has another file by now waits
  // for its own answer. True when the rows that are shown, or their order, are other ones now.
  bool TakeTrust(const std::vector<ItemRecord>& checked);
  // Has all, or that one, checked once more; what is known of them is shown until then.
  void CheckAgain() noexcept;
  void CheckAgain(const EntryKey& key);

  // Of positions among those shown; one beyond the end is passed over.
  std::vector<RowId> IdsAt(const std::vector<std::size_t>& positions) const;
  // The positions of those rows that are still shown, in rising order.
  std::vector<std::size_t> PositionsOf(const std::set<RowId>& ids) const;

 private:
  using Rows = std::map<EntryKey, EntryRow>;

  void Put(ItemRecord item);
  void Fill(EntryRow& row, ItemRecord item) const;
  void Remove(const EntryKey& key);
  void Rename(const EntryKey& from, ItemRecord to);
  void CompareNow();
  void MarkTwins();
  void Arrange();
  void Filter();
  bool HasWords(const EntryRow& row) const;

  Rows rows_;
  std::vector<EntryRow> gone_;          // of the saved state alone
  std::vector<const EntryRow*> order_;  // all rows, sorted
  std::vector<const EntryRow*> shown_;
  std::size_t counts_[kLastLocation + 1] = {};
  LocationSet locations_ = LocationSet().set();
  std::vector<std::wstring> words_;
  Order first_;
  Order second_;
  FilterSet filters_;
  std::shared_ptr<const Snapshot> before_;
  DifferenceCounts differences_ = {};
  bool onlyDifferent_ = false;
  RowId lastId_ = 0;
};

}  // namespace smh
