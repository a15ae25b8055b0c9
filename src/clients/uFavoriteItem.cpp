#include "clients/uFavoriteItem.h"

namespace smh {

ItemDetails InitialClientDetails(const FavoriteIdentity& client) {
  ItemDetails details;
  details.Caption = SharedText(client.name);
  details.Command = SharedText(client.command);
  details.ImageIndex = kFavoriteImageUnknown;
  return details;
}

TFavoriteItem::TFavoriteItem(FavoriteIdentity identity, int position)
    : identity_(std::move(identity)), position_(position), details_(InitialClientDetails(identity_)) {}

bool TFavoriteItem::NeedsDetails() const {
  ScopedLock lock(lock_);
  return needsDetails_;
}

void TFavoriteItem::TakeDetails(ItemDetails details) {
  ScopedLock lock(lock_);
  details_ = std::move(details);
  needsDetails_ = false;
  state_.exchange(-1);
}

}  // namespace smh
