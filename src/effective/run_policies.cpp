#include "effective/run_policies.h"

#include "effective/rule_key.h"
#include "effective/start_rows.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <cstring>

namespace smh {

namespace {

constexpr wchar_t kDisallow[] = L"DisallowRun";
constexpr wchar_t kRestrict[] = L"RestrictRun";
constexpr wchar_t kEnforce[] = L"EnforceShellExtensionSecurity";

// A number, on old systems also as four bytes.
Told ToldBy(DWORD type, std::span<const std::byte> data) noexcept {
  DWORD number = 0;
  if ((type != REG_DWORD && type != REG_BINARY) || data.size() != sizeof(number)) return Told::kUntold;
  std::memcpy(&number, data.data(), sizeof(number));
  return number == 0 ? Told::kNo : Told::kYes;
}

// Whether all of it could be read.
bool ReadNames(HKEY parent, const wchar_t* list, std::vector<std::wstring>& names) {
  return ReadRules(OpenRuleKey(parent, list, SystemView()), [&](HKEY key) {
    RegistryValueReader values(key);
    while (values.Next()) names.emplace_back(values.Text());
    std::ranges::sort(names, NameLess());
  });
}

// What others have written there must not slow down every question.
bool IsPolicy(std::wstring_view name) noexcept {
  const auto isIt = [&](std::wstring_view policy) { return SameText(policy, name); };
  return isIt(kDisallow) || isIt(kRestrict) || isIt(kEnforce) ||
         (!name.empty() && std::ranges::any_of(kStartRows, isIt, &StartRow::policy));
}

}  // namespace

RunPolicies::Root RunPolicies::ReadRoot(HKEY root) {
  Root read;
  const RuleKey rules =
      OpenRuleKey(root, std::wstring(kCurrentVersion).append(L"Policies\\Explorer"), SystemView());
  read.isUntold = !ReadRules(rules, [&](HKEY key) {
    RegistryValueReader values(key);
    while (values.Next()) {
      if (!IsPolicy(values.Name())) continue;
      Value value;
      value.name = values.Name();
      value.isSet = ToldBy(values.Type(), values.Data());
      read.values.push_back(std::move(value));
    }
  });
  if (!rules.key || read.isUntold) return read;
  if (OneIsSet(read, kDisallow) != Told::kNo) {
    read.areDisallowedUntold = !ReadNames(rules.key.Get(), kDisallow, read.disallowed);
  }
  if (OneIsSet(read, kRestrict) != Told::kNo) {
    read.areAllowedUntold = !ReadNames(rules.key.Get(), kRestrict, read.allowed);
  }
  return read;
}

void RunPolicies::Read() {
  user_ = ReadRoot(HKEY_CURRENT_USER);
  machine_ = ReadRoot(HKEY_LOCAL_MACHINE);
}

const RunPolicies::Value* RunPolicies::Find(const Root& root, std::wstring_view name) noexcept {
  const auto found =
      std::ranges::find_if(root.values, [&](const Value& value) { return SameText(value.name, name); });
  return found == root.values.end() ? nullptr : &*found;
}

Told RunPolicies::OneIsSet(const Root& root, std::wstring_view name) noexcept {
  const Value* const value = Find(root, name);
  if (value != nullptr) return value->isSet;
  return root.isUntold ? Told::kUntold : Told::kNo;
}

Told RunPolicies::IsSet(std::wstring_view name) const noexcept {
  if (name.empty()) return Told::kNo;
  const bool decides = machine_.isUntold || Find(machine_, name) != nullptr;
  return OneIsSet(decides ? machine_ : user_, name);
}

Told RunPolicies::OneDenies(const Root& root, std::wstring_view program) noexcept {
  const Told disallows = OneIsSet(root, kDisallow);
  const Told restricts = OneIsSet(root, kRestrict);
  const bool isDisallowed =
      disallows != Told::kNo && std::ranges::binary_search(root.disallowed, program, NameLess());
  const bool isLeftOut =
      restricts != Told::kNo && !std::ranges::binary_search(root.allowed, program, NameLess());
  if ((isDisallowed && disallows == Told::kYes) ||
      (isLeftOut && restricts == Told::kYes && !root.areAllowedUntold)) {
    return Told::kYes;
  }
  const bool isUntold = isDisallowed || isLeftOut || root.isUntold || root.areDisallowedUntold;
  return isUntold ? Told::kUntold : Told::kNo;
}

Told RunPolicies::IsDenied(std::wstring_view program) const noexcept {
  const Told user = OneDenies(user_, program);
  if (user != Told::kNo) return user;
  return OneDenies(machine_, program) == Told::kNo ? Told::kNo : Told::kUntold;
}

Told RunPolicies::EnforcesApproval() const noexcept {
  const Told user = OneIsSet(user_, kEnforce);
  if (user != Told::kNo) return user;
  return OneIsSet(machine_, kEnforce) == Told::kNo ? Told::kNo : Told::kUntold;
}

}  // namespace smh
