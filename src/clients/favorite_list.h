// The entries of one collection and what they are shown with.
#pragma once

#include "clients/uFavoriteItem.h"
#include "core/contracts/StartupManagerHelper.h"
#include "model/icon_lists.h"

#include <memory>
#include <vector>

namespace smh {

// Entries are only appended, so that references to them stay valid as long as the list. May be used from any
// thread.
class FavoriteList {
 public:
  // Makes the image lists. Raises EOSError.
  FavoriteList();
  FavoriteList(const FavoriteList&) = delete;
  FavoriteList& operator=(const FavoriteList&) = delete;

  // The collection's lock: recursive, taken before an item's lock. Nothing that touches registry or disk is
  // done under it.
  CriticalSection& Lock() noexcept { return lock_; }
  IconLists& Icons() noexcept { return icons_; }

  int Count() const;
  // Null outside the list.
  TFavoriteItem* At(int index) const;
  void Append(FavoriteIdentity identity);
  // Whether an entry has that key, ignoring case.
  bool HasKey(std::wstring_view keyPath) const;
  std::vector<TFavoriteItem*> ItemsWithoutDetails() const;
  void SetDetails(TFavoriteItem& item, ItemDetails details);

  std::atomic<ReadState> State{kReadStateReading};

 private:
  mutable CriticalSection lock_;
  IconLists icons_;
  std::vector<std::unique_ptr<TFavoriteItem>> items_;
};

}  // namespace smh
