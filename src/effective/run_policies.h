// The policies that keep the shell from starting programs, as they were read at one time: the values of
// Policies\Explorer.
#pragma once

#include "effective/switch_value.h"

#include <string>
#include <string_view>
#include <vector>

namespace smh {

// Constant once it is read; for any thread then. Neither disk nor registry is touched but by Read.
class RunPolicies {
 public:
  // One call of the registry for each root without policies. Raises std::bad_alloc.
  void Read();

  // Whether the policy of that name (a StartRow's) is set: a machine value decides, 0 too, else the user's.
  Told IsSet(std::wstring_view name) const noexcept;
  // Whether the user's DisallowRun and RestrictRun keep the shell from starting a program, by the name of its
  // file. The machine's are not documented: where they would, it is untold.
  Told IsDenied(std::wstring_view program) const noexcept;
  // EnforceShellExtensionSecurity, of which only the user's is documented.
  Told EnforcesApproval() const noexcept;

 private:
  struct Value {
    std::wstring name;
    Told isSet;
  };
  struct Root {
    // Those that are named as policies are.
    std::vector<Value> values;
    std::vector<std::wstring> disallowed;
    std::vector<std::wstring> allowed;
    bool isUntold = false;
    // The lists.
    bool areDisallowedUntold = false;
    bool areAllowedUntold = false;
  };

  static Root ReadRoot(HKEY root);
  static const Value* Find(const Root& root, std::wstring_view name) noexcept;
  static Told OneIsSet(const Root& root, std::wstring_view name) noexcept;
  static Told OneDenies(const Root& root, std::wstring_view program) noexcept;

  Root user_;
  Root machine_;
};

}  // namespace smh
