// Copies of what the library says about the default programs.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/library.h"

#include <span>
#include <string>
#include <vector>

namespace smh {

struct ClientRecord {
  std::int32_t index = -1;
  std::int32_t kind = kFavoritePath;
  std::wstring name;
  std::wstring command;
  std::wstring file;  // that the command starts
  bool fileFound = false;
  std::wstring description;
  std::wstring company;
  std::wstring version;
  std::int32_t imageIndex = -1;
  std::wstring keyPath;
};

// Reads the default programs and, after them or among them, the entries of `addedPaths`; waits until every
// one is complete. Raises HostError when that takes more than two minutes.
std::vector<ClientRecord> ReadClients(const Library& library, std::span<const std::wstring> addedPaths);
// The same of a collection that the caller keeps, with the images that belong to it.
std::vector<ClientRecord> ReadClients(const Library& library, IFavoriteItemCollection& clients);

// "mail", "media", "browser", "contacts", "calendar", "internetCall", "messaging"; "path" for an added one.
std::wstring_view ClientKindName(std::int32_t kind) noexcept;

struct ClientField {
  std::wstring_view key;
  FieldValue (*read)(const ClientRecord& client);
};

// In the order of output.
std::span<const ClientField> ClientFields() noexcept;

}  // namespace smh
