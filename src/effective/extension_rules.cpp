#include "effective/extension_rules.h"

#include "effective/rule_key.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace smh {

namespace {

constexpr wchar_t kExtensions[] = L"Shell Extensions\\";
constexpr wchar_t kSettings[] = L"Ext\\Settings";
constexpr wchar_t kPolicies[] = L"Policies\\Ext";
constexpr wchar_t kBrowser[] = L"Software\\Microsoft\\Internet Explorer\\Main";

constexpr std::wstring_view kPattern = L"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";

int DigitOf(wchar_t unit) noexcept {
  if (unit >= L'0' && unit <= L'9') return unit - L'0';
  const wchar_t lower = unit | 0x20;
  return lower >= L'a' && lower <= L'f' ? lower - L'a' + 10 : -1;
}

std::wstring Path(std::wstring_view rest) {
  return std::wstring(kCurrentVersion).append(rest);
}

struct ClassLess {
  bool operator()(const GUID& a, const GUID& b) const noexcept { return std::memcmp(&a, &b, sizeof(a)) < 0; }
};

// A number in the form that most values have.
Told IsSet(const std::optional<RegistryData>& value, DWORD bits) noexcept {
  if (!value) return Told::kNo;
  DWORD number = 0;
  if (value->type != REG_DWORD || value->bytes.size() != sizeof(number)) return Told::kUntold;
  std::memcpy(&number, value->bytes.data(), sizeof(number));
  return (number & bits) != 0 ? Told::kYes : Told::kNo;
}

// "0" is denied, "1" allowed, "2" the user's choice.
Told IsDenial(std::wstring_view text) noexcept {
  if (text == L"0") return Told::kYes;
  return text == L"1" || text == L"2" ? Told::kNo : Told::kUntold;
}

Told IsNo(HKEY root) {
  Told answer = Told::kNo;
  const bool isRead = ReadRules(OpenRuleKey(root, kBrowser, SystemView()), [&](HKEY key) {
    const std::optional<RegistryData> value = QueryRegistryValue(key, L"Enable Browser Extensions");
    if (!value) return;
    const std::wstring text = value->Text();
    answer = SameText(text, L"no") ? Told::kYes : SameText(text, L"yes") ? Told::kNo : Told::kUntold;
  });
  return isRead ? answer : Told::kUntold;
}

}  // namespace

std::optional<GUID> ClassIn(std::wstring_view text) noexcept {
  if (text.size() != kPattern.size()) return std::nullopt;
  unsigned char bytes[16] = {};
  std::size_t digits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (kPattern[i] != L'x') {
      if (text[i] != kPattern[i]) return std::nullopt;
      continue;
    }
    const int digit = DigitOf(text[i]);
    if (digit < 0) return std::nullopt;
    unsigned char& byte = bytes[digits++ / 2];
    byte = static_cast<unsigned char>(byte * 16 + digit);
  }
  // The order of the text is not that of the structure: only equality counts here.
  GUID identifier;
  std::memcpy(&identifier, bytes, sizeof(identifier));
  return identifier;
}

const ExtensionRules::NamedClass* ExtensionRules::Find(const ClassList& list,
                                                       const GUID& identifier) noexcept {
  const auto found = std::ranges::lower_bound(list.classes, identifier, ClassLess(), &NamedClass::identifier);
  const bool isThere = found != list.classes.end() && found->identifier == identifier;
  return isThere ? &*found : nullptr;
}

Told ExtensionRules::IsIn(const ClassList& list, const GUID& identifier) noexcept {
  if (const NamedClass* const found = Find(list, identifier)) return found->told;
  return list.isUntold ? Told::kUntold : Told::kNo;
}

Told ExtensionRules::IsIn(const ViewedList& list, const GUID& identifier, LoaderView view) noexcept {
  const Told user = IsIn(list.user, identifier);
  const Told machine = IsIn(list.machine[static_cast<std::size_t>(view)], identifier);
  if (user == Told::kYes || machine == Told::kYes) return Told::kYes;
  return user == Told::kNo && machine == Told::kNo ? Told::kNo : Told::kUntold;
}

Told ExtensionRules::IsBlocked(const GUID& identifier, LoaderView view) const noexcept {
  return IsIn(blocked_, identifier, view);
}

Told ExtensionRules::IsApproved(const GUID& identifier, LoaderView view) const noexcept {
  return IsIn(approved_, identifier, view);
}

Told ExtensionRules::IsSwitchedOff(const GUID& identifier) const noexcept {
  const Told isOff = IsIn(switchedOff_, identifier);
  // Nothing tells that a policy takes back what the user had chosen before.
  return isOff == Told::kYes && IsAllowed(identifier) ? Told::kUntold : isOff;
}

bool ExtensionRules::IsAllowed(const GUID& identifier) const noexcept {
  for (const AddOnPolicy* policy : {&machinePolicy_, &userPolicy_}) {
    if (const NamedClass* const found = Find(policy->classes, identifier)) return found->isFixed;
  }
  return false;
}

// What the machine says of the class decides, else what the user does.
Told ExtensionRules::IsForbidden(const GUID& identifier) const noexcept {
  for (const AddOnPolicy* policy : {&machinePolicy_, &userPolicy_}) {
    if (const NamedClass* const found = Find(policy->classes, identifier)) return found->told;
    if (policy->isListOnly != Told::kNo) return policy->isListOnly;
    if (policy->classes.isUntold) return Told::kUntold;
  }
  return Told::kNo;
}

ExtensionRules::ClassList ExtensionRules::ReadClasses(HKEY root, std::wstring_view list, REGSAM view) {
  ClassList read;
  read.isUntold = !ReadRules(OpenRuleKey(root, Path(kExtensions).append(list), view), [&](HKEY key) {
    RegistryValueReader values(key);
    while (values.Next()) {
      const std::optional<GUID> identifier = ClassIn(values.Name());
      if (identifier) read.classes.push_back({*identifier, Told::kYes});
    }
  });
  std::ranges::sort(read.classes, ClassLess(), &NamedClass::identifier);
  return read;
}

ExtensionRules::ViewedList ExtensionRules::ReadViews(std::wstring_view list) {
  ViewedList read;
  read.user = ReadClasses(HKEY_CURRENT_USER, list, SystemView());
  read.machine[static_cast<std::size_t>(LoaderView::k32)] = ReadClasses(HKEY_LOCAL_MACHINE, list, 0);
  if (SystemView() != 0) {
    read.machine[static_cast<std::size_t>(LoaderView::k64)] =
        ReadClasses(HKEY_LOCAL_MACHINE, list, SystemView());
  }
  return read;
}

ExtensionRules::AddOnPolicy ExtensionRules::ReadPolicy(HKEY root) {
  AddOnPolicy policy;
  ClassList& list = policy.classes;
  bool areClassesRead = true;
  const bool isRead = ReadRules(OpenRuleKey(root, Path(kPolicies), SystemView()), [&](HKEY key) {
    policy.isListOnly = IsSet(QueryRegistryValue(key, L"RestrictToList"), ~DWORD{0});
    areClassesRead = ReadRules(OpenRuleKey(key, L"CLSID", SystemView()), [&](HKEY listed) {
      RegistryValueReader values(listed);
      while (values.Next()) {
        const std::optional<GUID> identifier = ClassIn(values.Name());
        const std::wstring_view text = values.Text();
        if (identifier) list.classes.push_back({*identifier, IsDenial(text), text == L"1"});
      }
    });
  });
  list.isUntold = !isRead || !areClassesRead;
  std::ranges::sort(list.classes, ClassLess(), &NamedClass::identifier);
  return policy;
}

ExtensionRules::ClassList ExtensionRules::ReadSwitchedOff() {
  ClassList read;
  read.isUntold = !ReadRules(OpenRuleKey(HKEY_CURRENT_USER, Path(kSettings), SystemView()), [&](HKEY key) {
    for (const std::wstring& name : SubKeyNames(key)) {
      const std::optional<GUID> identifier = ClassIn(name);
      if (!identifier) continue;
      Told isOff = Told::kNo;
      const bool isRead = ReadRules(OpenRuleKey(key, name, SystemView()), [&](HKEY settings) {
        isOff = IsSet(QueryRegistryValue(settings, L"Flags"), 1);
      });
      read.classes.push_back({*identifier, isRead ? isOff : Told::kUntold});
    }
  });
  std::ranges::sort(read.classes, ClassLess(), &NamedClass::identifier);
  return read;
}

// Only the user's is documented.
Told ExtensionRules::ReadObjectsOff() {
  const Told user = IsNo(HKEY_CURRENT_USER);
  if (user != Told::kNo) return user;
  return IsNo(HKEY_LOCAL_MACHINE) == Told::kNo ? Told::kNo : Told::kUntold;
}

void ExtensionRules::Read(bool approved) {
  blocked_ = ReadViews(L"Blocked");
  if (approved) approved_ = ReadViews(L"Approved");
  switchedOff_ = ReadSwitchedOff();
  userPolicy_ = ReadPolicy(HKEY_CURRENT_USER);
  machinePolicy_ = ReadPolicy(HKEY_LOCAL_MACHINE);
  areObjectsOff_ = ReadObjectsOff();
}

}  // namespace smh
