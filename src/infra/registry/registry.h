// A registry key with a current position, in the manner of the language runtime that the file formats and
// texts of this system come from: a root, an access mask whose view bits choose the registry view, and one
// open key. Not shared between threads. Names that hold a NUL count as missing and are never written.
#pragma once

#include "infra/registry/registry_values.h"
#include "infra/runtime/handle.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// REG_SZ, REG_EXPAND_SZ, REG_DWORD and REG_BINARY; unknown is any other type and a missing value.
enum class RegistryDataKind { kUnknown, kString, kExpandString, kInteger, kBinary };

// Owns the open key. Names and paths are relative to it or, without one, to the root; keys are opened with
// the access mask.
class TRegistry {
 public:
  // At HKEY_CURRENT_USER, without an open key.
  explicit TRegistry(REGSAM access = KEY_ALL_ACCESS) noexcept : access_(access) {}
  virtual ~TRegistry() = default;
  TRegistry(const TRegistry&) = delete;
  TRegistry& operator=(const TRegistry&) = delete;

  // Keys are below it while none is open, and whenever their text begins with "\".
  HKEY RootKey() const noexcept { return root_; }
  // A predefined key. Another one than before closes the open key.
  void SetRootKey(HKEY root);
  REGSAM Access() const noexcept { return access_; }
  void SetAccess(REGSAM access) noexcept { access_ = access; }
  // Borrowed until the next open or close; null without an open key. Its path below the root is empty then.
  HKEY CurrentKey() const noexcept { return current_.Get(); }
  const std::wstring& CurrentPath() const noexcept { return path_; }

  // Relative to the open key unless `key` begins with "\". A failed open keeps the old key and answers false;
  // the thread's last error then says why.
  bool OpenKey(std::wstring_view key, bool canCreate);
  // With KEY_READ in the view of the access mask.
  bool OpenKeyReadOnly(std::wstring_view key);
  void CloseKey() noexcept;
  // Whether the key can be opened for reading: one that may not be read counts as missing.
  bool KeyExists(std::wstring_view key) const;
  // With everything below it, in the view of the access mask; a registry link goes itself, not what it leads
  // to. An empty key text is refused. The thread's last error says why it failed.
  bool DeleteKey(std::wstring_view key);

  // Of the open key: whether the value is there, of whatever type.
  bool ValueExists(const std::wstring& name) const;
  RegistryDataKind DataKind(const std::wstring& name) const;
  // Data size in bytes, -1 for a missing value.
  int DataSize(const std::wstring& name) const;
  // Unexpanded, cut at the first NUL; "" for a missing value. Raises ERegistryException "Invalid data type
  // for '%s'" for any type but REG_SZ and REG_EXPAND_SZ.
  std::wstring ReadString(const std::wstring& name) const;
  // Raises ERegistryException "Invalid data type for '%s'" unless REG_DWORD, "Failed to get data for '%s'"
  // for a missing value and for data that are not four bytes.
  std::uint32_t ReadInteger(const std::wstring& name) const;
  // Raise EOSError on failure.
  void WriteString(const std::wstring& name, std::wstring_view text);
  void WriteInteger(const std::wstring& name, std::uint32_t value);
  // Of the open key; the thread's last error says why it failed.
  bool DeleteValue(const std::wstring& name);

  // In enumeration order; empty without an open key. Raise EOSError.
  std::vector<std::wstring> KeyNames() const;
  std::vector<std::wstring> ValueNames() const;

 private:
  bool Open(std::wstring_view key, bool canCreate, REGSAM access);
  void Write(const std::wstring& name, DWORD type, const void* data, std::size_t size);

  HKEY root_ = HKEY_CURRENT_USER;
  REGSAM access_;
  ScopedKey current_;
  std::wstring path_;
};

// A key text is relative unless it begins with "\".
inline bool IsRelativeKey(std::wstring_view key) noexcept {
  return !key.starts_with(L'\\');
}
// Without that one "\".
inline std::wstring RelativeKeyText(std::wstring_view key) {
  return std::wstring(IsRelativeKey(key) ? key : key.substr(1));
}

// ERegistryException with the texts above.
[[noreturn]] void RaiseInvalidDataType(std::wstring_view name);
[[noreturn]] void RaiseFailedToGetData(std::wstring_view name);

}  // namespace smh
