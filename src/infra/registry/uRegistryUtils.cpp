#include "infra/registry/uRegistryUtils.h"

#include "infra/registry/registry_values.h"
#include "sysutil/version/uWinVersionInfo.h"

namespace smh {

namespace {

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
