// Registry changes through the backup service, which performs and records them. Failures show in results
// only; without the service no key opens and nothing changes. Instances are short-lived and not shared
// between threads: set root and access, one or two operations, CloseKey.
#pragma once

#include "infra/runtime/com_ptr.h"
#include "core/contracts/intf_safeguard.h"

#include <string>
#include <string_view>
#include <vector>

namespace smh {

// How PutData names its data; written as REG_SZ, REG_EXPAND_SZ, REG_DWORD and REG_BINARY, any other as
// REG_NONE. Kept on purpose: reading knows REG_MULTI_SZ, writing does not.
enum class SgDataKind { kUnknown, kString, kMultiString, kExpandString, kInteger, kBinary };

struct SgKeyInfo {
  DWORD subKeyCount = 0;
  DWORD longestSubKey = 0;
  DWORD valueCount = 0;
  DWORD longestValueName = 0;
  DWORD longestValueData = 0;
  FILETIME lastWrite = {};
};

class TSgRegistry {
 public:
  // `safeguard` may be null.
  explicit TSgRegistry(ISafeguard* safeguard);
  virtual ~TSgRegistry();
  TSgRegistry(const TSgRegistry&) = delete;
  TSgRegistry& operator=(const TSgRegistry&) = delete;

  HKEY RootKey() const noexcept { return rootKey_; }
  void SetRootKey(HKEY root);
  REGSAM Access() const noexcept { return access_; }
  void SetAccess(REGSAM access) noexcept { access_ = access; }
  bool LazyWrite() const noexcept { return lazyWrite_; }
  void SetLazyWrite(bool lazy) noexcept { lazyWrite_ = lazy; }
  HKEY CurrentKey() const noexcept { return currentKey_; }
  const std::wstring& CurrentPath() const noexcept { return currentPath_; }

  bool OpenKey(std::wstring_view key, bool canCreate);
  void CloseKey();
  bool KeyExists(std::wstring_view key);
  bool GetKeyInfo(SgKeyInfo& info) const;
  void GetValueNames(std::vector<std::wstring>& names) const;
  bool GetDataInfo(const std::wstring& name, SgDataKind& kind, DWORD& size) const;
  bool ValueExists(const std::wstring& name) const;
  bool WriteString(const std::wstring& name, const std::wstring& text);
  bool PutData(const std::wstring& name, const void* data, SgDataKind kind, DWORD size);
  bool DeleteValue(const std::wstring& name);
  // With everything below it, deepest keys first; the service's status for the key itself. A tree that holds
  // a registry link is refused whole (ERROR_NOT_SUPPORTED): what a link leads to is somebody else's.
  LSTATUS DeleteKey(std::wstring_view key);

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
  bool closeRootKey_ = false;
  REGSAM access_ = KEY_ALL_ACCESS;
};

// What the locations instantiate.
class TSgRegistryEx : public TSgRegistry {
 public:
  using TSgRegistry::TSgRegistry;
};

}  // namespace smh
