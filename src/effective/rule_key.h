// The keys that hold the system's rules: opened and read so that what cannot be read is not taken for
// nothing.
#pragma once

#include "infra/registry/registry_values.h"
#include "infra/runtime/exceptions.h"

#include <string>
#include <string_view>

namespace smh {

// Where most of them lie.
inline constexpr wchar_t kCurrentVersion[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\";

// The view of the system's own programs.
REGSAM SystemView();

struct RuleKey {
  // Empty for a key that is missing, or that cannot be read.
  ScopedKey key;
  bool isUntold = false;
};
// `parent` may be an open key. Raises nothing.
RuleKey OpenRuleKey(HKEY parent, const std::wstring& path, REGSAM view) noexcept;

// Runs `read` with the key; false for one that is or becomes unreadable, of which nothing counts then.
template <typename Read>
bool ReadRules(const RuleKey& rules, Read&& read) {
  if (!rules.key) return !rules.isUntold;
  try {
    read(rules.key.Get());
    return true;
  } catch (const EOSError&) {
    return false;
  }
}

// Sorts names as the registry compares them.
struct NameLess {
  bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
};

}  // namespace smh
