#include "effective/switch_lists.h"

#include "core/contracts/startup_approved.h"
#include "effective/rule_key.h"
#include "locations/registry/key_opening.h"

#include <algorithm>
#include <utility>

namespace smh {

namespace {

constexpr wchar_t kExplorer[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer";
constexpr SwitchList kLists[] = {SwitchList::kRun, SwitchList::kRun32, SwitchList::kStartupFolder};

std::size_t IndexOf(SwitchList list) noexcept {
  return static_cast<std::size_t>(list) - 1;
}

const wchar_t* NameOf(SwitchList list) noexcept {
  return kApprovedLists[IndexOf(list)];
}

}  // namespace

std::wstring SwitchKeyPath(SwitchList list) {
  return std::wstring(kApprovedKey).append(L"\\").append(NameOf(list));
}

void SwitchLists::ReadList(HKEY parent, SwitchList list, List& into) {
  std::vector<NamedSwitch>& switches = into.switches;
  into.isUntold = !ReadRules(OpenRuleKey(parent, NameOf(list), SystemView()), [&](HKEY key) {
    RegistryValueReader values(key);
    while (values.Next()) {
      NamedSwitch one;
      one.name = values.Name();
      one.value = ReadSwitchValue(values.Type(), values.Data());
      switches.push_back(std::move(one));
    }
  });
  if (into.isUntold) switches.clear();
  std::ranges::sort(switches, NameLess(), &NamedSwitch::name);
}

SwitchLists::Root SwitchLists::ReadRoot(HKEY root) {
  Root read;
  ScopedKey all = OpenRegistryKey(root, std::wstring(kApprovedKey), SystemView() | KEY_ALL_ACCESS);
  const bool isMissing = !all && IsMissingKey(GetLastError());
  read.isWritable = static_cast<bool>(all);
  RuleKey approved{std::move(all), false};
  if (isMissing) {
    read.isWritable = static_cast<bool>(OpenRegistryKey(root, kExplorer, SystemView() | KEY_ALL_ACCESS));
  } else if (!read.isWritable) {
    approved = OpenRuleKey(root, std::wstring(kApprovedKey), SystemView());
  }
  for (const SwitchList list : kLists) {
    List& one = read.lists[IndexOf(list)];
    one.isUntold = approved.isUntold;
    if (approved.key) ReadList(approved.key.Get(), list, one);
  }
  return read;
}

void SwitchLists::Read() {
  user_ = ReadRoot(HKEY_CURRENT_USER);
  machine_ = ReadRoot(HKEY_LOCAL_MACHINE);
}

SwitchValue SwitchLists::Find(LocationRoot root, SwitchList list, std::wstring_view name) const noexcept {
  SwitchValue value;
  if (list == SwitchList::kNone) return value;
  const List& in = RootOf(root).lists[IndexOf(list)];
  if (in.isUntold) value.isOff = Told::kUntold;
  const auto found = std::ranges::lower_bound(in.switches, name, NameLess(), &NamedSwitch::name);
  const bool isThere = found != in.switches.end() && !NameLess()(name, found->name);
  return isThere ? found->value : value;
}

}  // namespace smh
