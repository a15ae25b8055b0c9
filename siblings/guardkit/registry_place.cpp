#include "siblings/guardkit/registry_place.h"

#include "infra/registry/registry_tree.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/guardkit/native_registry.h"

#include <cstring>
#include <vector>

namespace smh {

namespace {

constexpr std::wstring_view kMachine = L"HKEY_LOCAL_MACHINE";
constexpr std::wstring_view kUsers = L"HKEY_USERS";

struct RootRow {
  std::wstring_view native;
  std::wstring_view name;
};
constexpr RootRow kRoots[] = {{L"\\REGISTRY\\MACHINE", kMachine}, {L"\\REGISTRY\\USER", kUsers}};

std::wstring NativeName(HKEY key) {
  std::vector<std::byte> buffer(1024);
  for (;;) {
    ULONG size = 0;
    const NTSTATUS status =
        NtQueryKey(key, KeyNameInformationClass, buffer.data(), static_cast<ULONG>(buffer.size()), &size);
    if (status >= 0) break;
    if (size <= buffer.size()) RaiseOSError(ERROR_INVALID_HANDLE);
    buffer.resize(size);
  }
  ULONG bytes = 0;
  std::memcpy(&bytes, buffer.data(), sizeof(bytes));
  if (bytes > buffer.size() - sizeof(bytes)) RaiseOSError(ERROR_INVALID_DATA);
  std::wstring name(bytes / sizeof(wchar_t), L'\0');
  std::memcpy(name.data(), buffer.data() + sizeof(bytes), name.size() * sizeof(wchar_t));
  return name;
}

ScopedKey OpenCurrentUser() {
  ScopedKey key;
  CheckStatus(RegOpenCurrentUser(KEY_QUERY_VALUE, key.Put()));
  return key;
}

struct SplitPlace {
  HKEY root = nullptr;
  std::vector<std::wstring> levels;
};

SplitPlace Split(const std::wstring& place) {
  SplitPlace split;
  const std::size_t rootEnd = std::min(place.find(L'\\'), place.size());
  const std::wstring_view root = std::wstring_view(place).substr(0, rootEnd);
  if (SameText(root, kMachine)) split.root = HKEY_LOCAL_MACHINE;
  if (SameText(root, kUsers)) split.root = HKEY_USERS;
  if (split.root == nullptr || HoldsNul(place)) RaiseOSError(ERROR_NOT_SUPPORTED);
  for (std::size_t at = rootEnd; at < place.size();) {
    const std::size_t end = std::min(place.find(L'\\', at + 1), place.size());
    if (end == at + 1) RaiseOSError(ERROR_NOT_SUPPORTED);
    split.levels.push_back(place.substr(at + 1, end - at - 1));
    at = end;
  }
  return split;
}

}  // namespace

std::wstring PlaceOf(HKEY key) {
  if (key == HKEY_LOCAL_MACHINE) return std::wstring(kMachine);
  if (key == HKEY_USERS) return std::wstring(kUsers);
  const std::wstring name = key == HKEY_CURRENT_USER ? NativeName(OpenCurrentUser().Get()) : NativeName(key);
  for (const RootRow& row : kRoots) {
    if (!StartsText(row.native, name)) continue;
    const std::wstring_view rest = std::wstring_view(name).substr(row.native.size());
    if (rest.empty() || rest.front() == L'\\') return std::wstring(row.name).append(rest);
  }
  RaiseOSError(ERROR_NOT_SUPPORTED);
}

ScopedKey OpenLevel(HKEY parent, const std::wstring& level, REGSAM access) {
  if (level.empty() || HoldsNul(level)) RaiseOSError(ERROR_NOT_SUPPORTED);
  if (IsRegistryLink(parent, level, KEY_WOW64_64KEY)) RaiseOSError(ERROR_CANT_ACCESS_FILE);
  ScopedKey key;
  // Opened as itself: a link that takes its place between the two calls is not followed either.
  const LSTATUS status =
      RegOpenKeyExW(parent, level.c_str(), REG_OPTION_OPEN_LINK, access | KEY_WOW64_64KEY, key.Put());
  if (status == ERROR_FILE_NOT_FOUND || status == ERROR_KEY_DELETED) return {};
  CheckStatus(status);
  return key;
}

ScopedKey OpenPlace(const std::wstring& place, REGSAM access) {
  const SplitPlace split = Split(place);
  ScopedKey key;
  for (std::size_t i = 0; i < split.levels.size(); ++i) {
    const HKEY parent = i == 0 ? split.root : key.Get();
    const REGSAM wanted = i + 1 == split.levels.size() ? access | KEY_QUERY_VALUE : KEY_QUERY_VALUE;
    ScopedKey next = OpenLevel(parent, split.levels[i], wanted);
    if (!next) return {};
    key = std::move(next);
  }
  return key;
}

std::wstring ParentPlace(const std::wstring& place) {
  const std::size_t end = place.rfind(L'\\');
  return end == std::wstring::npos ? std::wstring() : place.substr(0, end);
}

std::wstring LastLevel(const std::wstring& place) {
  return place.substr(place.rfind(L'\\') + 1);
}

std::wstring HiveOf(const std::wstring& place) {
  const std::size_t first = place.find(L'\\');
  if (first == std::wstring::npos) return place;
  return place.substr(0, place.find(L'\\', first + 1));
}

bool MayMakeKey(const std::wstring& place) {
  return !SameText(place, HiveOf(place)) && !SameText(LastLevel(place), L"Wow6432Node");
}

}  // namespace smh
