#include "infra/uRegistryUtils.h"

#include "infra/registry_values.h"
#include "infra/text.h"
#include "sysutil/uWinVersionInfo.h"

namespace smh {

namespace {

constexpr std::wstring_view kViewPrefixes[] = {L"(x32)", L"(x64)"};

struct RootName {
  std::uint32_t handle;
  std::wstring_view name;
};

constexpr RootName kRootNames[] = {
    {0x80000000, L"HKEY_CLASSES_ROOT"},     {0x80000001, L"HKEY_CURRENT_USER"},
    {0x80000002, L"HKEY_LOCAL_MACHINE"},    {0x80000003, L"HKEY_USERS"},
    {0x80000004, L"HKEY_PERFORMANCE_DATA"}, {0x80000005, L"HKEY_CURRENT_CONFIG"},
    {0x80000006, L"HKEY_DYN_DATA"},
};

HKEY RootHandle(std::uint32_t handle) noexcept {
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(handle)));
}

// One lookup with another access mask; the key is closed afterwards.
class ScopedLookup {
 public:
  ScopedLookup(TRegistry& registry, REGSAM access) noexcept
      : registry_(registry), before_(registry.Access()) {
    registry_.SetAccess(access);
  }
  ~ScopedLookup() {
    registry_.CloseKey();
    registry_.SetAccess(before_);
  }
  ScopedLookup(const ScopedLookup&) = delete;
  ScopedLookup& operator=(const ScopedLookup&) = delete;

 private:
  TRegistry& registry_;
  const REGSAM before_;
};

// The access masks of the views to look in, in order.
std::vector<REGSAM> LookupViews(REGSAM access, bool try64, bool try32) {
  std::vector<REGSAM> views;
  if (try64 && WinVersionInfo::IsWow64()) views.push_back(access | KEY_WOW64_64KEY);
  if (try32) views.push_back(access);
  return views;
}

}  // namespace

std::wstring_view RootKeyName(HKEY root) noexcept {
  for (const RootName& row : kRootNames) {
    if (RootHandle(row.handle) == root) return row.name;
  }
  return {};
}

std::wstring BuildFullValuePath(REGSAM access, HKEY root, std::wstring_view keyPath,
                                std::wstring_view valueName) {
  std::wstring path(kViewPrefixes[(access & KEY_WOW64_64KEY) != 0 ? 1 : 0]);
  path.append(RootKeyName(root));
  if (!keyPath.starts_with(L'\\')) path.append(1, L'\\');
  return WithTrailingBackslash(path.append(keyPath)).append(valueName);
}

void ParseFullValuePath(std::wstring_view path, REGSAM& viewBits, std::wstring& valueName,
                        std::wstring& keyPath, HKEY& root) {
  if (StartsText(kViewPrefixes[0], path)) {
    viewBits = 0;
    path.remove_prefix(kViewPrefixes[0].size());
  } else if (StartsText(kViewPrefixes[1], path)) {
    viewBits = KEY_WOW64_64KEY;
    path.remove_prefix(kViewPrefixes[1].size());
  }
  const std::size_t nameAt = path.rfind(L'\\') + 1;
  valueName = path.substr(nameAt);
  std::wstring_view key = path.substr(0, nameAt);
  for (const RootName& row : kRootNames) {
    if (!StartsText(row.name, key)) continue;
    root = RootHandle(row.handle);
    key.remove_prefix(row.name.size());
    break;
  }
  keyPath = key;
}

std::wstring TRegistryEx::FullValuePath(std::wstring_view valueName) const {
  return BuildFullValuePath(Access(), RootKey(), CurrentPath(), valueName);
}

bool TRegistryEx::IsMultiSz(const std::wstring& name) const {
  DWORD type = REG_NONE;
  return RegQueryValueExW(CurrentKey(), name.c_str(), nullptr, &type, nullptr, nullptr) == ERROR_SUCCESS &&
         type == REG_MULTI_SZ;
}

std::wstring TRegistryEx::ReadMultiSz(const std::wstring& name, std::wstring_view separator) const {
  if (DataSize(name) <= 0) return {};
  if (DataKind(name) != RegistryDataKind::kUnknown) RaiseInvalidDataType(name);
  const std::optional<RegistryData> data = QueryRegistryValue(CurrentKey(), name);
  if (!data) return {};
  return JoinTextList(data->bytes, separator);
}

bool TRegistryEx::ValueExistsEx(bool try64, bool try32) {
  for (const REGSAM view : LookupViews(Access(), try64, try32)) {
    const ScopedLookup lookup(*this, view);
    if (!KeyExists(KeyPath) || !OpenKeyReadOnly(KeyPath)) continue;
    return ValueExists(ValueName) && AcceptedTypes.contains(DataKind(ValueName));
  }
  return false;
}

std::wstring TRegistryEx::ReadStringEx(bool try64, bool try32) {
  for (const REGSAM view : LookupViews(Access(), try64, try32)) {
    const ScopedLookup lookup(*this, view);
    if (OpenKeyReadOnly(KeyPath)) return ReadString(ValueName);
  }
  RaiseFailedToGetData(ValueName);
}

}  // namespace smh
