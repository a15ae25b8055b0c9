#include "locations/registry/entry_store.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/registry/registry_tree.h"
#include "infra/runtime/exceptions.h"
#include "locations/registry/uSafeguardRegistry.h"

namespace smh {

namespace {

bool IsMissing(LSTATUS status) noexcept {
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND || status == ERROR_KEY_DELETED;
}

// Opened for one recorded change.
class RecordedKey {
 public:
  explicit RecordedKey(const RegistryValueAddress& address) : registry_(&DLLGlobals::Safeguard()) {
    registry_.SetRootKey(address.root);
    registry_.SetAccess(address.viewBits | KEY_ALL_ACCESS);
  }
  ~RecordedKey() { registry_.CloseKey(); }
  RecordedKey(const RecordedKey&) = delete;
  RecordedKey& operator=(const RecordedKey&) = delete;
  TSgRegistryEx* operator->() noexcept { return &registry_; }

 private:
  TSgRegistryEx registry_;
};

struct RecordableType {
  DWORD type;
  SgDataKind kind;
};
// The types that the service can be asked to write as they are.
constexpr RecordableType kRecordableTypes[] = {
    {REG_SZ, SgDataKind::kString},     {REG_EXPAND_SZ, SgDataKind::kExpandString},
    {REG_DWORD, SgDataKind::kInteger}, {REG_BINARY, SgDataKind::kBinary},
    {REG_NONE, SgDataKind::kUnknown},
};

// Failures are not told apart: reading back shows that nothing arrived.
void WriteRecorded(const RegistryValueAddress& address, const RegistryData& data) {
  for (const RecordableType& row : kRecordableTypes) {
    if (row.type != data.type) continue;
    RecordedKey key(address);
    key->OpenKey(address.key, true);
    key->PutData(address.valueName, data.bytes.data(), row.kind, static_cast<DWORD>(data.bytes.size()));
  }
}

ScopedKey MakePlainKey(const RegistryValueAddress& address) {
  ScopedKey key;
  CheckStatus(RegCreateKeyExW(address.root, address.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                              address.viewBits | KEY_ALL_ACCESS, nullptr, key.Put(), nullptr));
  return key;
}

void WriteValue(bool recorded, const RegistryValueAddress& address, const RegistryData& data) {
  if (recorded) {
    WriteRecorded(address, data);
    return;
  }
  const ScopedKey key = MakePlainKey(address);
  CheckStatus(RegSetValueExW(key.Get(), address.valueName.c_str(), 0, data.type,
                             reinterpret_cast<const BYTE*>(data.bytes.data()),
                             static_cast<DWORD>(data.bytes.size())));
}

void MakeKey(bool recorded, const RegistryValueAddress& address) {
  if (recorded) {
    RecordedKey(address)->OpenKey(address.key, true);
  } else {
    MakePlainKey(address);
  }
}

void DeleteValue(bool recorded, const RegistryValueAddress& address) {
  if (recorded) {
    RecordedKey key(address);
    if (!key->KeyExists(address.key)) return;
    key->OpenKey(address.key, false);
    if (key->ValueExists(address.valueName)) key->DeleteValue(address.valueName);
    return;
  }
  ScopedKey key;
  const LSTATUS opened =
      RegOpenKeyExW(address.root, address.key.c_str(), 0, address.viewBits | KEY_ALL_ACCESS, key.Put());
  if (IsMissing(opened)) return;
  CheckStatus(opened);
  const LSTATUS deleted = RegDeleteValueW(key.Get(), address.valueName.c_str());
  if (deleted != ERROR_FILE_NOT_FOUND) CheckStatus(deleted);
}

// The default value of a subkey.
RegistryValueAddress DefaultValueOf(RegistryValueAddress address) {
  address.valueName.clear();
  return address;
}

// Links are left out: what they lead to is somebody else's.
void KeepKey(KeptEntry& kept, HKEY parent, const std::wstring& name, RegistryValueAddress address,
             int depth) {
  if (depth > kDeepestKey || IsRegistryLink(parent, name, address.viewBits)) return;
  const ScopedKey key = OpenForReading(parent, name, address.viewBits);
  if (!key) return;
  const std::size_t own = kept.size();
  address.valueName.clear();
  kept.push_back({address, std::nullopt});
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    const std::span<const std::byte> data = values.Data();
    address.valueName = values.Name();
    KeptValue value{address, RegistryData{values.Type(), {data.begin(), data.end()}}};
    if (address.valueName.empty()) {
      kept[own] = std::move(value);
    } else {
      kept.push_back(std::move(value));
    }
  }
  const std::wstring path = address.key;
  address.valueName.clear();
  for (const std::wstring& sub : SubKeyNames(key.Get())) {
    address.key = std::wstring(path).append(L"\\").append(sub);
    KeepKey(kept, key.Get(), sub, address, depth + 1);
  }
}

}  // namespace

ScopedKey OpenForReading(HKEY root, const std::wstring& path, REGSAM view) {
  ScopedKey key = OpenRegistryKey(root, path, view | KEY_READ);
  if (!key && !IsMissing(static_cast<LSTATUS>(GetLastError()))) RaiseLastOSError();
  return key;
}

bool ValueExists(const RegistryValueAddress& address) {
  const ScopedKey key = OpenRegistryKey(address.root, address.key, address.viewBits | KEY_READ);
  return key && QueryRegistryValue(key.Get(), address.valueName).has_value();
}

bool EntryStore::WriteConfirmed(const RegistryValueAddress& address, const std::wstring& text) const {
  const RegistryData data = StringData(text);
  Write(recorded_, address, data);
  return Read(address) == data;
}

bool EntryStore::DeleteConfirmed(const RegistryValueAddress& address) const {
  Delete(recorded_, address);
  return !Read(address).has_value();
}

bool EntryStore::TryRestore(bool recorded, const RegistryValueAddress& address, const KeptEntry& kept) const {
  if (kept.empty()) Delete(recorded, address);
  for (const KeptValue& value : kept) {
    if (value.data) {
      WriteValue(recorded, value.address, *value.data);
    } else {
      MakeKey(recorded, value.address);
      DeleteValue(recorded, value.address);
    }
  }
  return Keep(address) == kept;
}

bool EntryStore::RestoreConfirmed(const RegistryValueAddress& address, const KeptEntry& kept) const {
  return Keep(address) == kept || TryRestore(recorded_, address, kept) ||
         (recorded_ && TryRestore(false, address, kept));
}

std::optional<RegistryData> ValueStore::Read(const RegistryValueAddress& address) const {
  const ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  if (!key) return std::nullopt;
  return QueryRegistryValue(key.Get(), address.valueName);
}

KeptEntry ValueStore::Keep(const RegistryValueAddress& address) const {
  std::optional<RegistryData> data = Read(address);
  return data ? KeptEntry{{address, std::move(data)}} : KeptEntry();
}

void ValueStore::Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const {
  WriteValue(recorded, address, data);
}

void ValueStore::Delete(bool recorded, const RegistryValueAddress& address) const {
  DeleteValue(recorded, address);
}

std::optional<RegistryData> SubkeyStore::Read(const RegistryValueAddress& address) const {
  const ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  if (!key) return std::nullopt;
  return QueryRegistryValue(key.Get(), {}).value_or(RegistryData{});
}

KeptEntry SubkeyStore::Keep(const RegistryValueAddress& address) const {
  KeptEntry kept;
  KeepKey(kept, address.root, address.key, address, 1);
  return kept;
}

void SubkeyStore::Write(bool recorded, const RegistryValueAddress& address, const RegistryData& data) const {
  WriteValue(recorded, DefaultValueOf(address), data);
}

void SubkeyStore::Delete(bool recorded, const RegistryValueAddress& address) const {
  if (recorded) {
    RecordedKey key(address);
    if (key->KeyExists(address.key)) key->DeleteKey(address.key);
    return;
  }
  TRegistry registry(address.viewBits | KEY_ALL_ACCESS);
  registry.SetRootKey(address.root);
  if (!registry.DeleteKey(address.key) && !IsMissing(static_cast<LSTATUS>(GetLastError())))
    RaiseLastOSError();
}

}  // namespace smh
