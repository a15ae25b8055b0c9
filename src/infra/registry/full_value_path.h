// Full value paths and root key names.
//
// A full value path names one registry value everywhere (item identity, logs): view prefix "(x32)" or
// "(x64)", root key name, key path, "\", value name. Value names may hold "\", so that the way back from a
// path is a guess; what needs the parts keeps the address. Pure functions, for any thread.
#pragma once

#include "core/contracts/shared_text.h"

#include <windows.h>

#include <string>
#include <string_view>

namespace smh {

// "HKEY_LOCAL_MACHINE" and its siblings, valid for ever; empty for any other handle.
std::wstring_view RootKeyName(HKEY root) noexcept;
// Of `access` only the view bits count: KEY_WOW64_64KEY gives "(x64)", anything else "(x32)". The key path
// may begin and end with "\".
std::wstring BuildFullValuePath(REGSAM access, HKEY root, std::wstring_view keyPath,
                                std::wstring_view valueName);
// The same into a text that keeps its memory, for those who build many.
void AssignFullValuePath(std::wstring& path, REGSAM access, HKEY root, std::wstring_view keyPath,
                         std::wstring_view valueName);
// The inverse, with what follows the last "\" as the value name. What the path does not tell (view, root)
// stays as it was; the key path keeps its leading and trailing "\".
void ParseFullValuePath(std::wstring_view path, REGSAM& viewBits, std::wstring& valueName,
                        std::wstring& keyPath, HKEY& root);

// Where one registry value lies. `viewBits` is KEY_WOW64_64KEY or 0, `root` a predefined key, `key` a path
// below it.
struct RegistryValueAddress {
  REGSAM viewBits = 0;
  HKEY root = nullptr;
  std::wstring key;
  std::wstring valueName;

  std::wstring FullPath() const { return BuildFullValuePath(viewBits, root, key, valueName); }
  bool operator==(const RegistryValueAddress&) const = default;
};

// The same for those who keep many: values of one key share its path.
struct SharedValueAddress {
  REGSAM viewBits = 0;
  HKEY root = nullptr;
  SharedText key;
  SharedText valueName;

  SharedValueAddress() noexcept = default;
  SharedValueAddress(REGSAM view, HKEY rootKey, SharedText keyPath, SharedText name) noexcept
      : viewBits(view), root(rootKey), key(std::move(keyPath)), valueName(std::move(name)) {}
  // Both ways copy the texts and raise std::bad_alloc.
  explicit SharedValueAddress(const RegistryValueAddress& address)
      : SharedValueAddress(address.viewBits, address.root, SharedText(address.key),
                           SharedText(address.valueName)) {}
  explicit operator RegistryValueAddress() const {
    return {viewBits, root, std::wstring(key), std::wstring(valueName)};
  }
};

}  // namespace smh
