#include "locations/registry/kept_entry.h"

#include "infra/registry/registry_tree.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "locations/registry/key_opening.h"

namespace smh {

namespace {

std::vector<std::byte> RightsOf(HKEY key) {
  DWORD size = 0;
  if (RegGetKeySecurity(key, DACL_SECURITY_INFORMATION, nullptr, &size) != ERROR_INSUFFICIENT_BUFFER)
    return {};
  std::vector<std::byte> rights(size);
  const LSTATUS status = RegGetKeySecurity(key, DACL_SECURITY_INFORMATION, rights.data(), &size);
  return status == ERROR_SUCCESS ? rights : std::vector<std::byte>();
}

bool IsDeleted(HKEY key) noexcept {
  return RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                          nullptr, nullptr, nullptr) == ERROR_KEY_DELETED;
}

void KeepKey(KeptEntry& kept, HKEY parent, const std::wstring& name, RegistryValueAddress address,
             int depth) {
  if (depth > kDeepestKey || IsRegistryLink(parent, name, address.viewBits)) return;
  const ScopedKey key = OpenForReading(parent, name, address.viewBits);
  if (!key) return;
  const std::size_t own = kept.size();
  address.valueName.clear();
  kept.push_back({address, true, std::nullopt, RightsOf(key.Get())});
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    const std::span<const std::byte> data = values.Data();
    RegistryData value{values.Type(), {data.begin(), data.end()}};
    if (values.Name().empty()) {
      kept[own].data = std::move(value);
      continue;
    }
    address.valueName = values.Name();
    kept.push_back({address, false, std::move(value)});
  }
  // One that goes while it is read is not there; it would seem to be empty.
  if (IsDeleted(key.Get())) {
    kept.resize(own);
    return;
  }
  const std::wstring path = address.key;
  address.valueName.clear();
  for (const std::wstring& sub : SubKeyNames(key.Get())) {
    address.key = std::wstring(path).append(L"\\").append(sub);
    KeepKey(kept, key.Get(), sub, address, depth + 1);
  }
}

bool HoldsOnlyDefault(HKEY key) {
  RegistryValueReader values(key);
  while (values.Next()) {
    if (!values.Name().empty()) return false;
  }
  return SubKeyNames(key).empty();
}

}  // namespace

bool ValueExists(const RegistryValueAddress& address) {
  const ScopedKey key = OpenRegistryKey(address.root, address.key, address.viewBits | KEY_READ);
  return key && QueryRegistryValue(key.Get(), address.valueName).has_value();
}

std::optional<RegistryData> DataOf(const KeptEntry& kept) {
  if (kept.empty()) return std::nullopt;
  return kept.front().data.value_or(RegistryData{});
}

KeptEntry KeepValue(const RegistryValueAddress& address, ValueKeys& keys) {
  if (HoldsNul(address.valueName)) RaiseOSError(ERROR_NOT_SUPPORTED);
  std::optional<RegistryData> data = keys.Query(address);
  return data ? KeptEntry{{address, false, std::move(data)}} : KeptEntry();
}

KeptEntry KeepSubkey(const RegistryValueAddress& address) {
  KeptEntry kept;
  if (IsRegistryLink(address.root, address.key, address.viewBits)) RaiseOSError(ERROR_NOT_SUPPORTED);
  KeepKey(kept, address.root, address.key, address, 1);
  return kept;
}

bool Exists(const KeptPiece& piece, ValueKeys& keys) {
  const RegistryValueAddress& address = piece.address;
  if (!piece.isKey) return keys.Query(address).has_value();
  return static_cast<bool>(OpenForReading(address.root, address.key, address.viewBits));
}

bool Stands(const KeptPiece& piece, ValueKeys& keys) {
  const RegistryValueAddress& address = piece.address;
  if (!piece.isKey) return keys.Query(address) == piece.data;
  const ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
  return key && QueryRegistryValue(key.Get(), address.valueName) == piece.data;
}

bool StandsAlone(const KeptPiece& piece, ValueKeys& keys) {
  if (piece.isKey) {
    const RegistryValueAddress& address = piece.address;
    const ScopedKey key = OpenForReading(address.root, address.key, address.viewBits);
    if (!key || !HoldsOnlyDefault(key.Get())) return false;
  }
  // Last, so that nothing is read between its data and the change.
  return Stands(piece, keys);
}

LSTATUS CheckDeletable(const KeptEntry& kept) {
  if (kept.empty() || !kept.front().isKey) return ERROR_SUCCESS;
  for (const KeptPiece& piece : kept) {
    const RegistryValueAddress& address = piece.address;
    if (HoldsNul(address.valueName)) return ERROR_NOT_SUPPORTED;
    if (!piece.isKey && !IsKeyWritable(address.root, address.key, address.viewBits)) {
      return static_cast<LSTATUS>(GetLastError());
    }
  }
  const RegistryValueAddress& top = kept.front().address;
  return CheckKeyTree(top.root, top.key, top.viewBits);
}

}  // namespace smh
