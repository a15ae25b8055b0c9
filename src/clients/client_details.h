// What is found out about a default program after it was listed: its file, the texts of that file's version
// record, its icon.
#pragma once

#include "clients/uFavoriteItem.h"
#include "model/icon_lists.h"

namespace smh {

// The icon at index 0 of a collection's lists is the unknown file's.
inline constexpr int kFavoriteImageUnknown = 0;

// Name and command, and nothing else.
ItemDetails InitialClientDetails(const FavoriteIdentity& client);

// Completes details made by InitialClientDetails. Touches the disk; call it without holding a lock, on a
// thread with COM initialised.
void LoadClientDetails(const FavoriteIdentity& client, IconLists& icons, ItemDetails& details);

}  // namespace smh
