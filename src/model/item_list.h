// The module-wide owning list of start-up items, with an index by (location, name).
#pragma once

#include "infra/runtime/module_global.h"
#include "model/uStartupItem.h"

#include <functional>
#include <unordered_map>
#include <vector>

namespace smh {

// Every operation but Lock and Clear expects the caller to hold the lock and raises EAssertionFailed
// otherwise. Finding an item is O(1) at any count. Names are compared ignoring the case of ASCII letters; no
// two listed items of a location share one. Items outlive their place in the list as long as somebody holds
// them.
class TItemList {
 public:
  // The item-list lock: recursive, taken before any item's lock.
  CriticalSection& Lock() noexcept SMH_ANSWERS_LOCK(lock_) { return lock_; }

  // How many items are listed now.
  int Count() const SMH_NEEDS_LOCK(lock_);
  // Null outside the list.
  ItemRef At(int index) const SMH_NEEDS_LOCK(lock_);
  // Null when none is listed.
  ItemRef Find(TTypeStartupLocation location, std::wstring_view name) const SMH_NEEDS_LOCK(lock_);
  // A copy of the list, for walks without the lock: its items may leave the list meanwhile.
  std::vector<ItemRef> Snapshot() const SMH_NEEDS_LOCK(lock_);

  // The position of the new item. An item of the same location and name leaves the list first: it is stale.
  int Append(ItemRef item) SMH_NEEDS_LOCK(lock_);
  // The index is clamped to the list; as Append otherwise.
  int Insert(int index, ItemRef item) SMH_NEEDS_LOCK(lock_);
  // The position the item had; -1 when it was not listed.
  int Remove(TStartupItem& item) SMH_NEEDS_LOCK(lock_);
  // Removes every item for which `drop` holds; it is asked from the last to the first, under the lock, and
  // must not change the list. What it raises ends the removal and passes.
  void RemoveIf(const std::function<bool(const TStartupItem&)>& drop) SMH_NEEDS_LOCK(lock_);
  // Removes all items, at the end of the module's life; the caller holds the lock.
  void Clear() noexcept SMH_NEEDS_LOCK(lock_);

  // Gives a listed item its new name, text, place and state, and marks it changed. An item that names its own
  // file as command or file follows it to the new name. Takes the item's lock, which the caller may hold.
  void Relocate(TStartupItem& item, const FoundEntry& entry) SMH_NEEDS_LOCK(lock_);

 private:
  // The name is the listed item's own, or one that is looked for. Names are long: each is hashed once.
  struct Key {
    Key(TTypeStartupLocation of, std::wstring_view text) noexcept;
    bool operator==(const Key& other) const noexcept;

    TTypeStartupLocation location;
    std::wstring_view name;
    std::size_t hash;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const noexcept { return key.hash; }
  };

  static Key KeyOf(const TStartupItem& item) noexcept;
  ItemRef Find(const Key& key) const SMH_NEEDS_LOCK(lock_);
  void Renumber(std::size_t from) noexcept SMH_NEEDS_LOCK(lock_);
  void DropStale(const Key& key, const TStartupItem* except) SMH_NEEDS_LOCK(lock_);

  mutable CriticalSection lock_ SMH_TAKEN_BEFORE(&TStartupItem::Lock);
  std::vector<ItemRef> items_ SMH_GUARDED_BY(lock_);
  std::unordered_map<Key, TStartupItem*, KeyHash> index_ SMH_GUARDED_BY(lock_);
};

extern ModuleGlobal<TItemList> g_items;

// The list of the module. Raises EAssertionFailed before the module's start and after its stop, as do all
// below.
inline TItemList& Items() {
  return *g_items;
}
// Enter and leave the item-list lock for a host: from one call of it to another, which nobody can check.
inline void LockItems() SMH_UNCHECKED_LOCKS {
  Items().Lock().Enter();
}
inline void UnlockItems() SMH_UNCHECKED_LOCKS {
  Items().Lock().Leave();
}
// First item of that location with that name; null when none is listed. Takes the item-list lock.
ItemRef FindItem(TTypeStartupLocation location, std::wstring_view name);

}  // namespace smh
