#include "hosts/common/entry_place.h"

#include "core/contracts/location_table.h"
#include "hosts/common/host_error.h"
#include "infra/files/file_facts.h"
#include "infra/registry/full_value_path.h"
#include "infra/registry/registry_values.h"
#include "sysutil/version/uWinVersionInfo.h"

namespace smh {

namespace {

constexpr std::int32_t kOwnView = 64;

bool IsMissing(DWORD error) noexcept {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

[[noreturn]] void RaiseUnseen(const std::wstring& place, DWORD error) {
  throw HostError(L"Cannot look at " + place + L": " + SystemErrorText(HRESULT_FROM_WIN32(error)));
}

Standing LookAtFile(const std::wstring& file) {
  if (AttributesOf(file) != INVALID_FILE_ATTRIBUTES) return Standing::kSame;
  const DWORD error = GetLastError();
  if (!IsMissing(error)) RaiseUnseen(file, error);
  return Standing::kNothing;
}

}  // namespace

Standing LookAtPlace(const ItemRecord& item) {
  if (item.root.empty()) return LookAtFile(item.name);
  const HKEY root = item.root == RootKeyName(HKEY_CURRENT_USER) ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  const REGSAM view = item.view == kOwnView ? KEY_WOW64_64KEY : 0;
  const ScopedKey key = OpenRegistryKey(root, item.key, view | KEY_QUERY_VALUE);
  if (!key) {
    const DWORD error = GetLastError();
    if (!IsMissing(error)) RaiseUnseen(item.root + L'\\' + item.key, error);
    return Standing::kNothing;
  }
  if (!item.value) return Standing::kSame;
  const std::optional<RegistryData> data = QueryRegistryValue(key.Get(), *item.value);
  if (!data) return Standing::kNothing;
  // Elsewhere a value names a class, whose command the record has.
  if (LocationRowOf(item.location).family != LocationFamily::kRunKey) return Standing::kSame;
  return data->Text() == item.command ? Standing::kSame : Standing::kOther;
}

ItemRecord PlaceOfNewValue(std::int32_t location, const std::wstring& name) {
  const LocationRow& row = LocationRowOf(location);
  ItemRecord place;
  place.location = location;
  place.root = RootKeyName(row.root == LocationRoot::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE);
  place.view = WinVersionInfo::IsWow64() ? kOwnView : 32;
  place.key = row.place;
  place.value = name;
  return place;
}

}  // namespace smh
