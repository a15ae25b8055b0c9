// How a location brings the list up to date with what it reads: the half of a location that its loads use.
#pragma once

#include "model/change_gate.h"
#include "model/item_list.h"

#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace smh {

// How closely a load looks at what is listed already: at the commands, as a poll does, or at the files too.
enum class Look { kForChanges, kAgain };

// What stands in the list is changed on the reader's thread only, for moments of the item-list lock.
class LocationLoading {
 public:
  LocationLoading(const LocationLoading&) = delete;
  LocationLoading& operator=(const LocationLoading&) = delete;

  // The row of the location table, valid for ever.
  const LocationRow& Row() const noexcept { return row_; }
  TTypeStartupLocation LocationType() const noexcept { return row_.location; }
  std::wstring_view MemberName() const noexcept { return row_.memberName; }

 protected:
  // `row` lives as long as the module.
  explicit LocationLoading(const LocationRow& row) noexcept : row_(row) {}
  ~LocationLoading() = default;

  ChangeGate& Gate() noexcept { return gate_; }

  // The load could not look at all there is, for a reason that may pass: it is to be tried again. The mark is
  // the reader's thread's; taking clears it.
  void MarkIncomplete() noexcept { isIncomplete_ = true; }
  bool TakeIncomplete() noexcept { return std::exchange(isIncomplete_, false); }

  // One load of this location. Items that it finds are marked with its number; at its end those without it
  // are removed.
  struct Load {
    unsigned generation = 0;
    unsigned number = 0;
    Look look = Look::kForChanges;
  };
  // None, and the load stays due, when a change is under way. The load looks again as well when the last one
  // that was asked to has not come to its end. Takes the item-list lock.
  std::optional<Load> BeginLoad(Look look);
  // Takes over what the load has found. All take the item-list lock for their look and touch disk and
  // registry without; all answer false, and leave the list alone, when a change of this location began after
  // the load. A failure to describe an entry, and a shortcut that somebody holds, leave it incomplete.
  bool AddOrUpdateItem(FoundEntry entry, const Load& load);
  // The two halves of AddOrUpdateItem: for an item that is listed, and for an entry that is not.
  bool UpdateItem(TStartupItem& item, std::wstring_view command, bool isProtected, const Load& load);
  bool ListEntry(FoundEntry entry, const Load& load);
  // For an item whose place the load has found another entry in.
  bool RemoveItem(TStartupItem& item, const Load& load);
  // Of one that nobody can tell whether it stands there still.
  void KeepItem(TStartupItem& item, const Load& load) noexcept { item.MarkFound(load.number); }
  // The end of a load: removes the items of this location that it has not found. `lookFor` is called for each
  // before that, without a lock: it takes over what an item's name leads to by itself, and answers as these.
  // It is not called for one that has been found under the same name in other letters.
  bool RemoveMissingItems(const Load& load, const std::function<bool(TStartupItem&)>& lookFor);
  // Behind that, for a location in two views: ends the twins of the items of which the load has found none.
  void EndTwins(const Load& load);

 private:
  bool IsCurrent(const Load& load) const noexcept;
  std::vector<ItemRef> ItemsToLookFor(const Load& load) const;
  void LogRemoval(const TStartupItem& item) const;

  const LocationRow& row_;
  ChangeGate gate_;
  // Under the item-list lock.
  unsigned loads_ = 0;
  bool owesLook_ = false;
  bool isIncomplete_ = false;
};

}  // namespace smh
