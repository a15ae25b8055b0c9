#include "effective/rule_key.h"

#include "infra/runtime/text.h"
#include "locations/registry/key_opening.h"
#include "sysutil/version/uWinVersionInfo.h"

namespace smh {

REGSAM SystemView() {
  return WinVersionInfo::IsWow64() ? KEY_WOW64_64KEY : 0;
}

RuleKey OpenRuleKey(HKEY parent, const std::wstring& path, REGSAM view) noexcept {
  RuleKey rules{OpenRegistryKey(parent, path, view | KEY_READ)};
  rules.isUntold = !rules.key && !IsMissingKey(GetLastError());
  return rules;
}

bool NameLess::operator()(std::wstring_view a, std::wstring_view b) const noexcept {
  return CompareText(a, b) < 0;
}

}  // namespace smh
