// What is found out about the default programs: from the clients' keys below
// HKEY_LOCAL_MACHINE\Software\Clients, and then from the program that each of them names: its file, the texts
// of that file's version record, its icon.
//
// Any thread may call, without holding a lock: registry, disk and basekit's services are asked, and what
// those raise passes.
#pragma once

#include "clients/uFavoriteItem.h"
#include "model/image_lists.h"

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace smh {

// Literals, indexed by FavoriteKind; empty for a kind without key.
std::span<const wchar_t* const> ClientKindKeys() noexcept;

// The names of a kind's clients in one view (0 or KEY_WOW64_64KEY), in enumeration order; none when the kind
// has no key there. Raises EOSError.
std::vector<std::wstring> ClientNames(std::int32_t kind, REGSAM view);

// What a client's key says, the 64-bit view first on a 64-bit Windows. None for a client without command.
// Raises ERegistryException and EOSError when the key changes meanwhile or cannot be read.
std::optional<FavoriteIdentity> ReadClient(std::int32_t kind, const std::wstring& keyPath);

// The entry of a path that the host added. Does not look at the file.
FavoriteIdentity IdentityOfPath(const std::wstring& path);

// Completes details made by InitialClientDetails, and appends the icon to `icons`, unless there is no
// `source` for it. On a thread with COM initialised.
void LoadClientDetails(const FavoriteIdentity& client, IconLists& icons, IconSource* source,
                       ItemDetails& details);

}  // namespace smh
