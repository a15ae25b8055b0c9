// Registry values read with as few calls as the platform allows: one per value, name, type and data together.
// Keys that come in stay the caller's. Sizes are bytes unless they are called code units.
#pragma once

#include "infra/runtime/handle.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// What an access mask says about the registry view.
inline constexpr REGSAM kViewBits = KEY_WOW64_64KEY | KEY_WOW64_32KEY;

// REG_SZ and REG_EXPAND_SZ.
constexpr bool IsTextType(DWORD type) noexcept {
  return type == REG_SZ || type == REG_EXPAND_SZ;
}

// A value's type and bytes, as stored.
struct RegistryData {
  DWORD type = REG_NONE;
  std::vector<std::byte> bytes;

  bool IsText() const noexcept { return IsTextType(type); }
  // The text up to its first NUL, unexpanded; an odd last byte does not count. Empty for any other type.
  std::wstring Text() const;
  bool operator==(const RegistryData&) const = default;
};

// REG_SZ data with its terminating NUL.
RegistryData StringData(std::wstring_view text);

// The texts of REG_MULTI_SZ data up to the first empty one, each followed by `separator`.
std::wstring JoinTextList(std::span<const std::byte> data, std::wstring_view separator);

// Walks the values of an open key in the order the registry returns them, for one thread. Buffers grow as
// needed and are reused; what Name, Data and Text show is valid until the next call of Next.
class RegistryValueReader {
 public:
  // The key is open for reading as long as the object is used.
  explicit RegistryValueReader(HKEY key);
  // False at the end, and when the key was deleted meanwhile. Raises EOSError for any other failure.
  bool Next();
  // May hold NULs.
  std::wstring_view Name() const noexcept { return {name_.data(), nameLength_}; }
  DWORD Type() const noexcept { return type_; }
  // As stored.
  std::span<const std::byte> Data() const noexcept {
    return std::as_bytes(std::span(data_)).first(dataSize_);
  }
  bool IsText() const noexcept { return IsTextType(type_); }
  // As RegistryData::Text, without a copy.
  std::wstring_view Text() const noexcept;

 private:
  HKEY key_;
  DWORD index_ = 0;
  std::vector<wchar_t> name_;
  // As units, which most data are.
  std::vector<wchar_t> data_;
  std::size_t nameLength_ = 0;
  std::size_t dataSize_ = 0;
  DWORD type_ = REG_NONE;
};

// An open key, or an empty owner when it cannot be opened: the thread's last error then says why,
// ERROR_INVALID_NAME for a path that holds a NUL.
ScopedKey OpenRegistryKey(HKEY root, const std::wstring& path, REGSAM access) noexcept;
// The names of an open key's subkeys and values, in enumeration order. A key that was deleted meanwhile ends
// the list; any other failure raises EOSError.
std::vector<std::wstring> SubKeyNames(HKEY key);
std::vector<std::wstring> RegistryValueNames(HKEY key);
// A value of an open key, by the system's status: ERROR_KEY_DELETED when the key was deleted, what `data`
// holds does not count when it fails. A name that holds a NUL cannot be asked for and counts as missing.
// Raises std::bad_alloc.
LSTATUS ReadRegistryValue(HKEY key, const std::wstring& name, RegistryData& data);
// The same; none when the value is missing or its key was deleted. Raises EOSError for any other failure.
std::optional<RegistryData> QueryRegistryValue(HKEY key, const std::wstring& name);
// The text of a value, as RegistryData::Text; empty for a missing one. Fails as QueryRegistryValue.
std::wstring QueryRegistryText(HKEY key, const std::wstring& name);

}  // namespace smh
