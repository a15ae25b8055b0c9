// Full value paths, root key names, and a read-only registry helper with the two-view lookup.
//
// A full value path names one registry value everywhere (item identity, logs): view prefix "(x32)" or
// "(x64)", root key name, key path, "\", value name.
#pragma once

#include "infra/registry.h"

#include <set>

namespace smh {

// "HKEY_LOCAL_MACHINE" and its siblings; empty for any other handle.
std::wstring_view RootKeyName(HKEY root) noexcept;
std::wstring BuildFullValuePath(REGSAM access, HKEY root, std::wstring_view keyPath,
                                std::wstring_view valueName);
// The inverse. What the path does not tell (view, root) stays as it was; the key path keeps its leading and
// trailing "\".
void ParseFullValuePath(std::wstring_view path, REGSAM& viewBits, std::wstring& valueName,
                        std::wstring& keyPath, HKEY& root);

// Where one registry value lies.
struct RegistryValueAddress {
  REGSAM viewBits = 0;
  HKEY root = nullptr;
  std::wstring key;
  std::wstring valueName;

  std::wstring FullPath() const { return BuildFullValuePath(viewBits, root, key, valueName); }
  bool operator==(const RegistryValueAddress&) const = default;
};

class TRegistryEx : public TRegistry {
 public:
  using TRegistry::TRegistry;

  // What ValueExistsEx and ReadStringEx look for, and the kinds that count as found.
  std::wstring KeyPath;
  std::wstring ValueName;
  std::set<RegistryDataKind> AcceptedTypes;

  std::wstring FullValuePath(std::wstring_view valueName) const;
  bool IsMultiSz(const std::wstring& name) const;
  // Every string of the list, up to the first empty one, followed by `separator`; empty for a missing value
  // or one without data. Raises ERegistryException for texts, integers and binary data.
  std::wstring ReadMultiSz(const std::wstring& name, std::wstring_view separator) const;
  // First the 64-bit view (when `try64` on a 64-bit Windows), then (when `try32`) the plain one. The
  // first view that has the key answers, whether or not it holds the value.
  bool ValueExistsEx(bool try64, bool try32);
  // Raises ERegistryException when nothing is found.
  std::wstring ReadStringEx(bool try64, bool try32);
};

}  // namespace smh
