#include "clients/favorite_list.h"

#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

constexpr FixedIcon kFixedIcons[] = {kUnknownFileIcon};

}  // namespace

FavoriteList::FavoriteList() : icons_(kFixedIcons) {
  icons_.Large();
}

int FavoriteList::Count() const {
  ScopedLock lock(lock_);
  return static_cast<int>(items_.size());
}

TFavoriteItem* FavoriteList::At(int index) const {
  ScopedLock lock(lock_);
  return index < 0 || index >= Count() ? nullptr : items_[static_cast<std::size_t>(index)].get();
}

void FavoriteList::Append(FavoriteIdentity identity) {
  ScopedLock lock(lock_);
  items_.push_back(std::make_unique<TFavoriteItem>(std::move(identity), Count()));
}

bool FavoriteList::HasKey(std::wstring_view keyPath) const {
  ScopedLock lock(lock_);
  return std::ranges::any_of(
      items_, [keyPath](const auto& item) { return SameText(item->Identity().keyPath, keyPath); });
}

std::vector<TFavoriteItem*> FavoriteList::ItemsWithoutDetails() const {
  ScopedLock lock(lock_);
  std::vector<TFavoriteItem*> result;
  for (const auto& item : items_) {
    if (item->NeedsDetails()) result.push_back(item.get());
  }
  return result;
}

void FavoriteList::SetDetails(TFavoriteItem& item, ItemDetails details) {
  ScopedLock lock(lock_);
  item.TakeDetails(std::move(details));
}

}  // namespace smh
