// A read-only registry helper with the two-view lookup.
#pragma once

#include "infra/registry/full_value_path.h"
#include "infra/registry/registry.h"

#include <set>

namespace smh {

// As TRegistry, for one thread.
class TRegistryEx : public TRegistry {
 public:
  using TRegistry::TRegistry;

  // What ValueExistsEx and ReadStringEx look for, and the kinds that count as found.
  std::wstring KeyPath;
  std::wstring ValueName;
  std::set<RegistryDataKind> AcceptedTypes;

  // Of a value of the open key, see full_value_path.h.
  std::wstring FullValuePath(std::wstring_view valueName) const;
  // Whether the value of the open key is of type REG_MULTI_SZ.
  bool IsMultiSz(const std::wstring& name) const;
  // Every string of the list, up to the first empty one, followed by `separator`; empty for a missing value
  // or one without data. Raises ERegistryException for texts, integers and binary data.
  std::wstring ReadMultiSz(const std::wstring& name, std::wstring_view separator) const;
  // First the 64-bit view (when `try64` on a 64-bit Windows), then (when `try32`) the plain one. The first
  // view that has the key answers, whether or not it holds the value. No key is open afterwards, here and
  // below; the access mask is what it was.
  bool ValueExistsEx(bool try64, bool try32);
  // Raises ERegistryException when nothing is found.
  std::wstring ReadStringEx(bool try64, bool try32);
};

}  // namespace smh
