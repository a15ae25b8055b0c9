// The entries of one collection, what they are shown with, and the reader that fills them in.
#pragma once

#include "clients/uFavoriteItem.h"
#include "core/contracts/StartupManagerHelper.h"
#include "model/image_lists.h"
#include "model/parkable_thread.h"

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
  CriticalSection& Lock() noexcept SMH_ANSWERS_LOCK(lock_) { return lock_; }
  IconLists& Icons() noexcept { return icons_; }

  // The operations below take the collection's lock. Entries stay the list's.
  int Count() const;
  // Null outside the list.
  TFavoriteItem* At(int index) const;
  // At the end, without details yet. Raises std::bad_alloc, and then nothing is appended.
  void Append(FavoriteIdentity identity);
  // Whether an entry has that key, ignoring case.
  bool HasKey(std::wstring_view keyPath) const;
  // Those whose details were not read yet, in the order of the list.
  std::vector<TFavoriteItem*> ItemsWithoutDetails() const;
  // Gives an entry of the list its details; takes the item's lock too.
  void SetDetails(TFavoriteItem& item, ItemDetails details);

  // How far the reader got. Without a lock.
  std::atomic<ReadState> State{kReadStateReading};

 private:
  mutable CriticalSection lock_;
  IconLists icons_;
  std::vector<std::unique_ptr<TFavoriteItem>> items_ SMH_GUARDED_BY(lock_);
};

// What a collection's reader does: every kind's keys, then the details of the entries, then the wait for a
// path that is added. On its thread from beginning to end.
class FavoriteReader {
 public:
  // Lives on `thread`; that and the list outlive it.
  FavoriteReader(FavoriteList& list, const ParkableThread& thread) noexcept : list_(list), thread_(thread) {}

  // Returns when the reader was asked to end. A failure that nothing below has caught is logged and survived.
  void Execute() noexcept;

 private:
  void ReadAll();
  void ReadKind(std::int32_t kind, REGSAM view);
  void AddEntry(std::int32_t kind, const std::wstring& keyPath);
  void LoadDetails();
  void LoadDetails(TFavoriteItem& item, IconSource* icons);
  void WaitForWork();

  FavoriteList& list_;
  const ParkableThread& thread_;
};

}  // namespace smh
