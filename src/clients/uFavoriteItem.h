// One default program: a client registered for a kind, or a path that the host added.
//
// Lock order: the collection's lock (favorite_list.h), an item's lock. Under an item's lock nothing
// else is entered.
#pragma once

#include "infra/runtime/critical_section.h"
#include "model/item_details.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace smh {

// What is known of an entry from the beginning.
struct FavoriteIdentity {
  std::int32_t kind = 0;
  // Below HKEY_LOCAL_MACHINE; empty for an added path.
  std::wstring keyPath;
  std::wstring name;
  // The open command; an added path itself.
  std::wstring command;
  // "file,index" as registered.
  std::wstring iconLocation;
};

// The icon at index 0 of a collection's lists is the unknown file's.
inline constexpr int kFavoriteImageUnknown = 0;

// Name and command, and nothing else. Takes no lock; fails only for want of memory.
ItemDetails InitialClientDetails(const FavoriteIdentity& client);

class TFavoriteItem {
 public:
  TFavoriteItem(FavoriteIdentity identity, int position);
  TFavoriteItem(const TFavoriteItem&) = delete;
  TFavoriteItem& operator=(const TFavoriteItem&) = delete;

  const FavoriteIdentity& Identity() const noexcept { return identity_; }
  int Position() const noexcept { return position_; }

  // Reads the details under the item's lock. Name, command and icon are there from the beginning.
  template <typename Read>
  auto Get(Read&& read) const {
    ScopedLock lock(lock_);
    return read(details_);
  }
  bool NeedsDetails() const;
  // Takes the details over and marks the item as changed. The caller holds the collection's lock.
  void TakeDetails(ItemDetails details);

  // Takes and clears the changed mark.
  bool TakeChangedMark() noexcept { return state_.exchange(0) != 0; }

 private:
  const FavoriteIdentity identity_;
  const int position_;
  mutable CriticalSection lock_;
  ItemDetails details_ SMH_GUARDED_BY(lock_);
  bool needsDetails_ SMH_GUARDED_BY(lock_) = true;
  std::atomic<std::int32_t> state_{0};
};

}  // namespace smh
