#include "locations/registry/registry_writer.h"

#include "infra/runtime/exceptions.h"
#include "infra/runtime/import_function.h"
#include "locations/registry/recorded_key.h"

namespace smh {

namespace {

ScopedKey MakePlainKey(const RegistryValueAddress& address, bool& isNew) {
  ScopedKey key;
  DWORD disposition = 0;
  CheckStatus(RegCreateKeyExW(address.root, address.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                              address.viewBits | KEY_ALL_ACCESS, nullptr, key.Put(), &disposition));
  isNew = disposition == REG_CREATED_NEW_KEY;
  return key;
}

void SetPlain(HKEY key, const std::wstring& name, const RegistryData& data) {
  // The platform adds a NUL that it finds behind a text: there must be none, or other bytes get stored.
  std::vector<std::byte> padded = data.bytes;
  padded.resize(padded.size() + 2 * sizeof(wchar_t), std::byte{0xFF});
  CheckStatus(RegSetValueExW(key, name.c_str(), 0, data.type, reinterpret_cast<const BYTE*>(padded.data()),
                             static_cast<DWORD>(data.bytes.size())));
}

bool IsMissing(LSTATUS status) noexcept {
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND || status == ERROR_KEY_DELETED;
}

// A 32-bit Windows may lack the function with the view, and has one view.
LSTATUS DeletePlainKey(const RegistryValueAddress& address) noexcept {
  const auto deleteKey =
      ImportFunction<decltype(&RegDeleteKeyExW)>(GetModuleHandleW(L"advapi32.dll"), "RegDeleteKeyExW");
  return deleteKey == nullptr ? RegDeleteKeyW(address.root, address.key.c_str())
                              : deleteKey(address.root, address.key.c_str(), address.viewBits, 0);
}

}  // namespace

void RegistryWriter::SetValue(const RegistryValueAddress& address, const RegistryData& data,
                              const LastLook& look) const {
  if (recorded_) return Put(address, data, look);
  bool isNew = false;
  const SharedKey key = Share(MakePlainKey(address, isNew));
  keys_.Use(address, key);
  RequireStill(look);
  SetPlain(key.get(), address.valueName, data);
}

bool RegistryWriter::DeleteValue(const RegistryValueAddress& address, const LastLook& look) const {
  if (recorded_) return Remove(address, look);
  ScopedKey key;
  const LSTATUS opened =
      RegOpenKeyExW(address.root, address.key.c_str(), 0, address.viewBits | KEY_ALL_ACCESS, key.Put());
  if (IsMissing(opened)) return true;
  CheckStatus(opened);
  const SharedKey shared = Share(std::move(key));
  keys_.Use(address, shared);
  RequireStill(look);
  const LSTATUS deleted = RegDeleteValueW(shared.get(), address.valueName.c_str());
  if (!IsMissing(deleted)) CheckStatus(deleted);
  return true;
}

bool RegistryWriter::DeleteKey(const RegistryValueAddress& address, const LastLook& look) const {
  // A deleted key would stay until it is closed.
  keys_.Forget(address);
  if (recorded_) {
    const ScopedLook last(look);
    const bool isDone = RecordedKey(address)->DeleteEmptyKey(address.key) == ERROR_SUCCESS;
    last.RequireKept();
    return isDone;
  }
  RequireStill(look);
  const LSTATUS deleted = DeletePlainKey(address);
  if (!IsMissing(deleted)) CheckStatus(deleted);
  return true;
}

void RegistryWriter::Put(const RegistryValueAddress& address, const RegistryData& data,
                         const LastLook& look) const {
  const ScopedLook last(look);
  const auto put = [&](const std::shared_ptr<RecordedKey>& key) {
    return (*key)->PutRaw(address.valueName, data.type, data.bytes.data(),
                          static_cast<DWORD>(data.bytes.size()));
  };
  std::shared_ptr<RecordedKey> key = keys_.Writable(address, true);
  if (key && !put(key) && key->IsDeleted()) {
    keys_.Forget(address);
    key = keys_.Writable(address, true);
    if (key) put(key);
  }
  last.RequireKept();
}

bool RegistryWriter::Remove(const RegistryValueAddress& address, const LastLook& look) const {
  const ScopedLook last(look);
  const std::shared_ptr<RecordedKey> key = keys_.Writable(address, false);
  if (!key) return !RecordedKey(address)->KeyExists(address.key);
  const bool isDone = (*key)->DeleteValue(address.valueName);
  last.RequireKept();
  return isDone;
}

void MakePiece(const KeptPiece& piece) {
  bool isNew = false;
  const ScopedKey key = MakePlainKey(piece.address, isNew);
  try {
    if (piece.data) SetPlain(key.Get(), piece.address.valueName, *piece.data);
  } catch (...) {
    // A key without its data would be another one, which nobody takes for what was deleted.
    if (isNew) DeletePlainKey(piece.address);
    throw;
  }
  if (!isNew || piece.rights.empty()) return;
  std::vector<std::byte> rights = piece.rights;
  RegSetKeySecurity(key.Get(), DACL_SECURITY_INFORMATION, rights.data());
}

}  // namespace smh
