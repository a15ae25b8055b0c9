#include "locations/registry/uLocationRegistryStd.h"

#include "infra/text.h"
#include "infra/uInterfacesRoutines.h"
#include "model/reader_control.h"
#include "sysutil/uRegEditUtils.h"
#include "sysutil/uWinVersionInfo.h"

#include <algorithm>
#include <map>

namespace smh {

namespace {

HKEY RootHandle(RegistryRoot root) noexcept {
  return root == RegistryRoot::kCurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

std::vector<WatchedKey> KeysToWatch(const RunKeyClass& row) {
  const HKEY root = RootHandle(row.root);
  std::vector<WatchedKey> keys{{root, row.keyPath}};
  for (const wchar_t* path : row.disabledKeyPaths) keys.push_back({root, path});
  return keys;
}

bool IsSameValue(const RegistryValueAddress& a, const RegistryValueAddress& b) {
  return SameText(a.key, b.key) && SameText(a.valueName, b.valueName);
}

// A zero inside a name would end it everywhere: it is shown as its symbol, and the entry is protected.
bool ReplaceZeros(std::wstring& name) {
  const bool found = name.find(L'\0') != std::wstring::npos;
  std::replace(name.begin(), name.end(), L'\0', L'\x2400');
  return found;
}

}  // namespace

// One load: what it has found so far.
struct TLocationRegistryStd::Load {
  unsigned generation = 0;
  FoundNames found{};
  // Which value stands for a found name: two values may have one path.
  std::map<std::wstring, RegistryValueAddress> addresses{};
  // Listed names because of which a value was passed over. When one of them is pruned, that value's turn has
  // come.
  FoundNames skipCauses{};
  bool loadAgain = false;
};

TLocationRegistryStd::TLocationRegistryStd(const RunKeyClass& row)
    : TLocationStartup(row.type, Abilities{}),
      row_(row),
      root_(RootHandle(row.root)),
      watch_(KeysToWatch(row)) {}

REGSAM TLocationRegistryStd::OwnView() {
  return WinVersionInfo::IsWow64() ? KEY_WOW64_64KEY : 0;
}

bool TLocationRegistryStd::ItemExists(const TStartupItem& item) {
  const RegistryValueAddress address = AddressOf(item);
  const ScopedKey key = OpenRegistryKey(address.root, address.key, address.viewBits | KEY_READ);
  return key && QueryRegistryValue(key.Get(), address.valueName).has_value();
}

bool TLocationRegistryStd::IsChanged() {
  // A signal that comes while a change runs is kept for later.
  if (Gate().IsBusy()) return false;
  if (watch_.IsSignalled()) {
    watch_.Rearm();
    Gate().TakeLoadDue();
    return true;
  }
  return Gate().TakeLoadDue();
}

bool TLocationRegistryStd::CanAcceptItem(const TStartupItem& item) {
  if (!TLocationStartup::CanAcceptItem(item)) return false;
  if (item.Get([](const ItemState& state) { return state.details.FileFound; })) return true;
  switch (item.Location()) {
    case sulRegistryUserRun:
    case sulRegistryUserRunOnce:
    case sulRegistryCommonRun:
    case sulRegistryCommonRunOnce:
      return true;
    default:
      return false;
  }
}

void TLocationRegistryStd::ShowItemLocation(const TStartupItem& item) {
  const RegistryValueAddress address = AddressOf(item);
  RegEditUtils::OpenRegEdit(address.viewBits, address.root, address.valueName, address.key);
}

void TLocationRegistryStd::ReadItems() {
  try {
    LoadItems();
  } catch (const EAbort&) {
    throw;
  } catch (...) {
    LogCurrentException();
    LogFormat(L"Error load item list for location \"%s\".", MemberName());
  }
}

void TLocationRegistryStd::LoadItems() {
  // Twice at most: pruning can make room for values that were passed over.
  for (int pass = 0; pass < 2; ++pass) {
    const std::optional<unsigned> generation = BeginLoad();
    if (!generation) return;
    Load load{.generation = *generation};
    bool current = true;
    const auto read = [&](const wchar_t* path) {
      if (current && OwnView() != 0) current = ReadKey(load, path, OwnView());
      if (!current) return;
      CheckTerminated();
      current = ReadKey(load, path, 0);
      CheckTerminated();
    };
    read(row_.keyPath);
    for (const wchar_t* path : row_.disabledKeyPaths) read(path);
    if (!current || !Prune(load)) {
      Gate().MarkLoadDue();
      return;
    }
    if (!load.loadAgain) return;
  }
}

bool TLocationRegistryStd::ReadKey(Load& load, const wchar_t* path, REGSAM view) {
  const ScopedKey key = OpenRegistryKey(root_, path, view | KEY_READ);
  if (!key) return true;
  FoundEntry entry;
  entry.isProtected = !IsKeyWritable(root_, path, view);
  entry.isEnabled = SameText(path, row_.keyPath);
  entry.address = {view, root_, path, {}};
  RegistryValueReader values(key.Get());
  while (values.Next()) {
    CheckTerminated();
    if (!TakeValue(load, values, entry)) return false;
  }
  return true;
}

bool TLocationRegistryStd::TakeValue(Load& load, const RegistryValueReader& values, FoundEntry entry) {
  entry.address.valueName = values.Name();
  entry.caption = values.Name();
  if (ReplaceZeros(entry.caption)) entry.isProtected = true;
  RegistryValueAddress shown = entry.address;
  shown.valueName = entry.caption;
  entry.name = shown.FullPath();
  const std::wstring key = AsciiLowerCase(entry.name);

  const ItemRef own = FindItem(LocationType(), entry.name);
  if (own == nullptr && OwnView() != 0) {
    shown.viewBits ^= KEY_WOW64_64KEY;
    if (const std::wstring other = shown.FullPath(); FindItem(LocationType(), other) != nullptr) {
      load.skipCauses.insert(AsciiLowerCase(other));
      load.found.insert(key);
      return true;
    }
  }
  if ((own != nullptr && !IsSameValue(AddressOf(*own), entry.address)) || load.addresses.contains(key)) {
    LogFormat(L"Value \"%s\" of key \"%s\" in location \"%s\" has the same path as another.", entry.caption,
              entry.address.key, MemberName());
    load.skipCauses.insert(key);
    return true;
  }
  load.addresses.emplace(key, entry.address);
  load.found.insert(key);
  if (values.IsText()) entry.command = values.Text();
  return AddOrUpdateItem(std::move(entry), load.generation);
}

bool TLocationRegistryStd::Prune(Load& load) {
  if (!RemoveMissingItems(load.found, load.generation)) return false;
  for (const std::wstring& cause : load.skipCauses) {
    if (!load.found.contains(cause)) load.loadAgain = true;
  }
  return true;
}

}  // namespace smh
