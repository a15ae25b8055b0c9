// Copies of what the library says about the default programs. The records own their texts: they stay as they
// are when the library's collection goes on or is released. Any thread may call; nothing here takes a lock of
// the hosts.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/library.h"

#include <span>
#include <string>
#include <vector>

namespace smh {

// One default program. Texts that the library does not know are empty.
struct ClientRecord {
  std::int32_t index = -1;            // position in the collection; it never changes
  std::int32_t kind = kFavoritePath;  // a FavoriteKind
  std::wstring name;
  std::wstring command;
  std::wstring file;        // the file that the command starts, and that the texts below are of
  std::wstring servedFile;  // what rundll32 is told to load; empty for other programs
  bool fileFound = false;
  std::int32_t reachability = kFileMissing;  // a FileReachability
  std::wstring description;
  std::wstring company;
  std::wstring version;
  std::int32_t imageIndex = -1;  // in the collection's image lists; 0 is the unknown file
  std::wstring keyPath;          // below HKEY_LOCAL_MACHINE; empty for an added path
  bool isDefault = false;  // Windows takes it for its kind: the user's choice, without one the machine's
};

// Reads the default programs and, after them or among them, the entries of `addedPaths`, each a path that is
// not empty; blocks until the details of every one are there. Raises HostError when the library refuses, and
// when that takes more than a minute.
std::vector<ClientRecord> ReadClients(const Library& library, std::span<const std::wstring> addedPaths);
// The same of a collection that the caller owns and keeps as long as it draws with its image lists. Takes the
// changed marks of the entries: of two callers at once each would miss what the other has taken.
std::vector<ClientRecord> ReadClients(IFavoriteItemCollection& clients);

// "mail", "media", "browser", "contacts", "calendar", "internetCall", "messaging"; "path" for an added one.
std::wstring_view ClientKindName(std::int32_t kind) noexcept;

using ClientField = Field<ClientRecord>;
// All columns in the order of output; valid for ever.
std::span<const ClientField> ClientFields() noexcept;

}  // namespace smh
