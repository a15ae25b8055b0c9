#include "hosts/common/entry_place.h"

#include "core/contracts/disabled_places.h"
#include "core/contracts/location_table.h"
#include "core/contracts/product_names.h"
#include "hosts/common/host_error.h"
#include "hosts/common/texts/failure_texts.h"
#include "infra/files/file_facts.h"
#include "infra/registry/full_value_path.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/text.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <shlobj.h>

#include <algorithm>

namespace smh {

namespace {

constexpr std::int32_t kOwnView = 64;

// A command changes entries of a few keys by turns; handlers have a key each.
constexpr std::size_t kKeptKeys = 8;

bool IsMissing(DWORD error) noexcept {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_KEY_DELETED;
}

[[noreturn]] void RaiseUnseen(const std::wstring& place, DWORD error) {
  throw HostError(Say(texts::kCannotLook, place, SystemErrorText(HRESULT_FROM_WIN32(error))));
}

Standing LookAtFile(const std::wstring& file) {
  if (AttributesOf(file) != INVALID_FILE_ATTRIBUTES) return Standing::kSame;
  const DWORD error = GetLastError();
  if (!IsMissing(error)) RaiseUnseen(file, error);
  return Standing::kNothing;
}

std::wstring KeyText(const ItemRecord& item) {
  return item.root + L'\\' + item.key + L':' + std::to_wstring(item.view);
}

// Empty for a missing one.
ScopedKey OpenPlace(const ItemRecord& item) {
  const HKEY root = item.root == RootKeyName(HKEY_CURRENT_USER) ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  const REGSAM view = item.view == kOwnView ? KEY_WOW64_64KEY : 0;
  ScopedKey key = OpenRegistryKey(root, item.key, view | KEY_QUERY_VALUE);
  const DWORD error = GetLastError();
  if (!key && !IsMissing(error)) RaiseUnseen(item.root + L'\\' + item.key, error);
  return key;
}

}  // namespace

Standing EntryPlaces::LookAtValue(const ItemRecord& item) {
  const std::wstring place = KeyText(item);
  RegistryData data;
  for (;;) {
    const auto known = std::ranges::find(rows_, place, &Row::place);
    const bool isKnown = known != rows_.end();
    Row row = isKnown ? std::move(*known) : Row{place, OpenPlace(item)};
    if (isKnown) rows_.erase(known);
    if (!row.key) return Standing::kNothing;
    const LSTATUS status = ReadRegistryValue(row.key.Get(), *item.value, data);
    if (isKnown && status == ERROR_KEY_DELETED) continue;
    if (status != ERROR_KEY_DELETED) rows_.push_back(std::move(row));
    if (rows_.size() > kKeptKeys) rows_.erase(rows_.begin());
    if (status == ERROR_SUCCESS) break;
    if (IsMissing(static_cast<DWORD>(status))) return Standing::kNothing;
    RaiseUnseen(item.root + L'\\' + item.key, static_cast<DWORD>(status));
  }
  // Elsewhere a value names a class, whose command the record has.
  if (LocationRowOf(item.location).family != LocationFamily::kRunKey) return Standing::kSame;
  return data.Text() == item.command ? Standing::kSame : Standing::kOther;
}

Standing EntryPlaces::LookAt(const ItemRecord& item) {
  if (item.root.empty()) return LookAtFile(item.name);
  if (item.value) return LookAtValue(item);
  return OpenPlace(item) ? Standing::kSame : Standing::kNothing;
}

std::vector<std::wstring> PlacesOfFile(std::int32_t location, const std::wstring& name) {
  const bool isUsers = LocationRowOf(location).root == LocationRoot::kUser;
  const std::wstring startup = ShellFolder(isUsers ? CSIDL_STARTUP : CSIDL_COMMON_STARTUP);
  const std::wstring data = ShellFolder(isUsers ? CSIDL_APPDATA : CSIDL_COMMON_APPDATA);
  if (startup.empty() || data.empty()) return {};
  std::wstring own(kVendorName);
  own.append(L"\\").append(kProductName).append(L"\\").append(kDisabledByThis);
  std::vector<std::wstring> files{WithTrailingBackslash(startup) + name};
  files.push_back(WithTrailingBackslash(data) + own + name);
  files.push_back(WithTrailingBackslash(startup).append(kDisabledInStartup) + name);
  files.push_back(WithTrailingBackslash(data).append(kDisabledByOthers) + name);
  return files;
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
