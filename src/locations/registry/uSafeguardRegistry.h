// Registry changes through the backup service, which performs and records them. Failures show in results
// only; without the service no key opens and nothing changes. Instances are short-lived and not shared
// between threads: set root and access, one or two operations, CloseKey.
#pragma once

#include "core/contracts/intf_safeguard.h"
#include "infra/runtime/com_ptr.h"

#include <string>
#include <string_view>
#include <vector>

namespace smh {

// How PutData names its data; written as REG_SZ, REG_EXPAND_SZ, REG_DWORD and REG_BINARY, any other as
// REG_NONE. Kept on purpose: reading knows REG_MULTI_SZ, writing does not.
enum class SgDataKind { kUnknown, kString, kMultiString, kExpandString, kInteger, kBinary };

// What RegQueryInfoKeyW says: names in code units, data in bytes.
struct SgKeyInfo {
  DWORD subKeyCount = 0;
  DWORD longestSubKey = 0;
  DWORD valueCount = 0;
  DWORD longestValueName = 0;
  DWORD longestValueData = 0;
  FILETIME lastWrite = {};
};

// Owns the open key, but for one thing: it is closed through the service, so callers close it before the end
// of the object.
class TSgRegistry {
 public:
  // `safeguard` may be null, and need not outlive the object.
  explicit TSgRegistry(ISafeguard* safeguard);
  virtual ~TSgRegistry();
  TSgRegistry(const TSgRegistry&) = delete;
  TSgRegistry& operator=(const TSgRegistry&) = delete;

  HKEY RootKey() const noexcept { return rootKey_; }
  // A predefined key. Another one than before closes the open key.
  void SetRootKey(HKEY root);
  REGSAM Access() const noexcept { return access_; }
  void SetAccess(REGSAM access) noexcept { access_ = access; }
  // Whether closing a key leaves the writing to the disk to the system, as at first, or waits for it.
  bool LazyWrite() const noexcept { return lazyWrite_; }
  void SetLazyWrite(bool lazy) noexcept { lazyWrite_ = lazy; }
  // Borrowed until the next open or close; null without an open key.
  HKEY CurrentKey() const noexcept { return currentKey_; }
  const std::wstring& CurrentPath() const noexcept { return currentPath_; }

  // Relative to the open key unless `key` begins with "\". Closes the key that was open, also when it fails.
  bool OpenKey(std::wstring_view key, bool canCreate);
  void CloseKey();
  // Whether the key can be opened for reading.
  bool KeyExists(std::wstring_view key);
  // What the open key holds; false, and zeros, without one.
  bool GetKeyInfo(SgKeyInfo& info) const;
  // The names of the open key's values, in enumeration order; those that cannot be read are left out.
  void GetValueNames(std::vector<std::wstring>& names) const;
  // Kind and size in bytes of a value of the open key; false, unknown and 0 for a missing one.
  bool GetDataInfo(const std::wstring& name, SgDataKind& kind, DWORD& size) const;
  bool ValueExists(const std::wstring& name) const;
  // As REG_SZ with its terminating NUL.
  bool WriteString(const std::wstring& name, const std::wstring& text);
  // `size` in bytes; see SgDataKind.
  bool PutData(const std::wstring& name, const void* data, SgDataKind kind, DWORD size);
  // The same with any type of the registry's, as it stands.
  bool PutRaw(const std::wstring& name, DWORD type, const void* data, DWORD size);
  // False for a missing value too.
  bool DeleteValue(const std::wstring& name);
  // With everything below it, deepest keys first; the service's status for the key itself. A tree that holds
  // a registry link is refused whole (ERROR_NOT_SUPPORTED): what a link leads to is somebody else's.
  LSTATUS DeleteKey(std::wstring_view key);
  // One key without subkeys, in one call of the service.
  LSTATUS DeleteEmptyKey(std::wstring_view key);

 private:
  HKEY BaseKey(bool relative) const noexcept;
  // Both answer null on failure.
  HKEY OpenBelow(HKEY base, const std::wstring& key, REGSAM access);
  HKEY CreateBelow(HKEY base, const std::wstring& key);
  LSTATUS DeleteTree(HKEY base, const std::wstring& key);
  // Of the current key: its subkeys, then its values.
  void DeleteContents();

  ComPtr<IRegAccess> regAccess_;
  HKEY currentKey_ = nullptr;
  HKEY rootKey_ = HKEY_CURRENT_USER;
  bool lazyWrite_ = true;
  std::wstring currentPath_;
  REGSAM access_ = KEY_ALL_ACCESS;
};

// What the locations instantiate.
class TSgRegistryEx : public TSgRegistry {
 public:
  using TSgRegistry::TSgRegistry;
};

}  // namespace smh
