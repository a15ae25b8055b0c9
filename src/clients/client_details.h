// What is found out about a default program after it was listed: its file, the texts of that file's version
// record, its icon.
#pragma once

#include "clients/uFavoriteItem.h"
#include "model/icon_lists.h"

namespace smh {

// Completes details made by InitialClientDetails. Touches the disk; call it without holding a lock, on a
// thread with COM initialised.
void LoadClientDetails(const FavoriteIdentity& client, IconLists& icons, ItemDetails& details);

}  // namespace smh
