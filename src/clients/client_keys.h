// The registered clients: their keys below HKEY_LOCAL_MACHINE\Software\Clients, and what those say.
#pragma once

#include "clients/uFavoriteItem.h"

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace smh {

// Indexed by FavoriteKind; empty for a kind without key.
std::span<const wchar_t* const> ClientKindKeys() noexcept;

// The names of a kind's clients in one view (0 or KEY_WOW64_64KEY), in enumeration order; none when the kind
// has no key there. Raises EOSError.
std::vector<std::wstring> ClientNames(std::int32_t kind, REGSAM view);

// What a client's key says, the 64-bit view first on a 64-bit Windows. None for a client without command.
// Raises ERegistryException and EOSError when the key changes meanwhile or cannot be read.
std::optional<FavoriteIdentity> ReadClient(std::int32_t kind, const std::wstring& keyPath);

// The entry of a path that the host added.
FavoriteIdentity IdentityOfPath(const std::wstring& path);

}  // namespace smh
