#include "hosts/common/client_record.h"

#include "hosts/common/host_error.h"
#include "hosts/common/item_property.h"
#include "hosts/common/reading.h"
#include "hosts/common/texts/failure_texts.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/text.h"

#include <iterator>

namespace smh {

namespace {

// By FavoriteKind.
constexpr std::wstring_view kKindNames[] = {L"path",     L"mail",     L"media",        L"browser",
                                            L"contacts", L"calendar", L"internetCall", L"messaging"};
static_assert(std::size(kKindNames) == kFavoriteMessaging + 1);

using R = const ClientRecord&;

constexpr ClientField kClientFields[] = {
    {L"index", [](R client) { return FieldValue(std::int64_t(client.index)); }},
    {L"kind", [](R client) { return FieldValue(std::wstring(ClientKindName(client.kind))); }},
    {L"default", [](R client) { return FieldValue(client.isDefault); }},
    {L"name", [](R client) { return FieldValue(client.name); }},
    {L"command", [](R client) { return FieldValue(client.command); }},
    {L"file", [](R client) { return FieldValue(client.file); }},
    {L"fileFound", [](R client) { return FieldValue(client.fileFound); }},
    {L"description", [](R client) { return FieldValue(client.description); }},
    {L"company", [](R client) { return FieldValue(client.company); }},
    {L"version", [](R client) { return FieldValue(client.version); }},
    {L"imageIndex", [](R client) { return FieldValue(std::int64_t(client.imageIndex)); }},
    {L"key", [](R client) { return FieldValue(client.keyPath); }},
    {L"reachability",
     [](R client) { return FieldValue(std::wstring(ReachabilityName(client.reachability))); }},
    {L"servedFile",
     [](R client) { return client.servedFile.empty() ? FieldValue() : FieldValue(client.servedFile); }},
};

ComPtr<IFavoriteItem> ItemAt(IFavoriteItemCollection& clients, std::int32_t index) {
  ComPtr<IFavoriteItem> item;
  CheckResult(clients.GetItem(index, item.Put()), texts::kCannotGetProgram);
  if (!item) throw HostError(texts::kNoProgram);
  return item;
}

// The library marks an entry when its details are there; `complete` counts the entries up to the first
// without.
bool IsComplete(IFavoriteItemCollection& clients, std::int32_t& complete) {
  if (clients.GetReadState() != kReadStateComplete) return false;
  while (complete < clients.GetCount()) {
    if (!ItemAt(clients, complete)->ReadChanged()) return false;
    ++complete;
  }
  return true;
}

// The default value of a kind's key names the client's key.
std::wstring DefaultName(HKEY root, const std::wstring& kindKey) {
  const ScopedKey key = OpenRegistryKey(root, kindKey, KEY_QUERY_VALUE | KEY_WOW64_64KEY);
  return key ? QueryRegistryText(key.Get(), {}) : std::wstring();
}

bool IsDefault(std::wstring_view keyPath) {
  if (keyPath.empty()) return false;
  const std::wstring kindKey = WithoutTrailingBackslash(FolderPart(keyPath));
  std::wstring name = DefaultName(HKEY_CURRENT_USER, kindKey);
  if (name.empty()) name = DefaultName(HKEY_LOCAL_MACHINE, kindKey);
  return SameText(name, FileNamePart(keyPath));
}

ClientRecord ReadClient(IFavoriteItem& item) {
  ClientRecord record;
  record.index = item.GetIndex();
  record.kind = item.GetKind();
  record.name = TakeText([&](BoundaryText* name) { return item.GetName(name); });
  record.command = TextProperty(item, kPropertyCommand);
  const FactReader facts(item);
  record.file = facts.Text(kFactDescribedFile).value_or(std::wstring());
  record.servedFile = facts.Text(kFactServedFile).value_or(std::wstring());
  record.fileFound = FlagProperty(item, kPropertyFileFound);
  record.reachability =
      facts.Number(kFactReachability).value_or(record.fileFound ? kFileFound : kFileMissing);
  record.description = TextProperty(item, kPropertyDescription);
  record.company = TextProperty(item, kPropertyCompany);
  record.version = TextProperty(item, kPropertyVersion);
  record.imageIndex = item.GetImageIndex();
  record.keyPath = TextProperty(item, kFavoritePropertyKeyPath);
  record.isDefault = IsDefault(record.keyPath);
  return record;
}

}  // namespace

std::vector<ClientRecord> ReadClients(const Library& library, std::span<const std::wstring> addedPaths) {
  ComPtr<IFavoriteItemCollection> clients;
  CheckResult(library.Manager().GetFavoriteItems(clients.Put()), texts::kCannotReadDefaults);
  for (const std::wstring& path : addedPaths) {
    const HRESULT result = clients->AddPath(path.c_str());
    if (FAILED(result)) RaiseFailure(result, Say(texts::kCannotAddPath, path), LibrarySlot::kOther);
  }
  return ReadClients(*clients);
}

std::vector<ClientRecord> ReadClients(IFavoriteItemCollection& clients) {
  std::int32_t complete = 0;
  if (!WaitForReader([&] { return IsComplete(clients, complete); })) {
    throw HostError(texts::kDefaultsTooLong);
  }
  std::vector<ClientRecord> records;
  records.reserve(static_cast<std::size_t>(clients.GetCount()));
  for (std::int32_t index = 0; index < clients.GetCount(); ++index) {
    records.push_back(ReadClient(*ItemAt(clients, index)));
  }
  return records;
}

std::wstring_view ClientKindName(std::int32_t kind) noexcept {
  return kind >= 0 && kind <= kFavoriteMessaging ? kKindNames[kind] : std::wstring_view();
}

std::span<const ClientField> ClientFields() noexcept {
  return kClientFields;
}

}  // namespace smh
