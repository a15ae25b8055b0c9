#include "infra/registry/registry_values.h"

#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"

#include <algorithm>
#include <cstring>

namespace smh {

namespace {

// The longest name of a value is 16,383 units.
constexpr std::size_t kNameUnits = 16'384;
constexpr std::size_t kSubKeyNameUnits = 256;
constexpr std::size_t kDataBytes = 4096;
// Nearly all texts fit here.
constexpr std::size_t kUsualUnits = 512;

// An odd last byte does not count.
std::wstring UnitsOf(std::span<const std::byte> bytes) {
  std::wstring units(bytes.size() / sizeof(wchar_t), L'\0');
  if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * sizeof(wchar_t));
  return units;
}

std::wstring TextOf(std::span<const std::byte> bytes) {
  std::wstring text = UnitsOf(bytes);
  text.resize(UpToNul(text).size());
  return text;
}

std::wstring_view TextUpToNul(const wchar_t* units, DWORD bytes) noexcept {
  return UpToNul({units, bytes / sizeof(wchar_t)});
}

bool IsMissing(LSTATUS status) noexcept {
  return status == ERROR_FILE_NOT_FOUND || status == ERROR_KEY_DELETED;
}

bool IsEnd(LSTATUS status) noexcept {
  return status == ERROR_NO_MORE_ITEMS || status == ERROR_KEY_DELETED;
}

// `enumerate` is called with index, buffer and length as the platform's enumeration functions take them.
template <typename Enumerate>
std::vector<std::wstring> CollectNames(std::size_t units, Enumerate&& enumerate) {
  std::vector<std::wstring> names;
  std::vector<wchar_t> buffer(units);
  for (;;) {
    auto length = static_cast<DWORD>(buffer.size());
    const LSTATUS status = enumerate(static_cast<DWORD>(names.size()), buffer.data(), &length);
    if (IsEnd(status)) return names;
    if (status == ERROR_MORE_DATA && buffer.size() < 2 * kNameUnits) {
      buffer.resize(buffer.size() * 2);
      continue;
    }
    CheckStatus(status);
    names.emplace_back(buffer.data(), length);
  }
}

}  // namespace

std::wstring RegistryData::Text() const {
  return IsText() ? TextOf(bytes) : std::wstring();
}

RegistryData StringData(std::wstring_view text) {
  RegistryData data{REG_SZ, std::vector<std::byte>((text.size() + 1) * sizeof(wchar_t))};
  if (!text.empty()) std::memcpy(data.bytes.data(), text.data(), text.size() * sizeof(wchar_t));
  return data;
}

std::wstring JoinTextList(std::span<const std::byte> data, std::wstring_view separator) {
  const std::wstring units = UnitsOf(data);
  std::wstring result;
  for (std::size_t at = 0; at < units.size() && units[at] != L'\0';) {
    const std::size_t end = std::min(units.find(L'\0', at), units.size());
    result.append(units, at, end - at).append(separator);
    at = end + 1;
  }
  return result;
}

RegistryValueReader::RegistryValueReader(HKEY key)
    : key_(key), name_(kNameUnits), data_(kDataBytes / sizeof(wchar_t)) {}

bool RegistryValueReader::Next() {
  for (;;) {
    auto nameLength = static_cast<DWORD>(name_.size());
    const auto room = static_cast<DWORD>(data_.size() * sizeof(wchar_t));
    DWORD dataSize = room;
    const LSTATUS status = RegEnumValueW(key_, index_, name_.data(), &nameLength, nullptr, &type_,
                                         reinterpret_cast<BYTE*>(data_.data()), &dataSize);
    if (status == ERROR_SUCCESS) {
      ++index_;
      nameLength_ = nameLength;
      dataSize_ = dataSize;
      return true;
    }
    nameLength_ = dataSize_ = 0;
    if (IsEnd(status)) return false;
    if (status != ERROR_MORE_DATA) RaiseOSError(static_cast<DWORD>(status));
    // The needed size may be out of date by the next attempt, hence never less than double.
    if (dataSize > room) {
      data_.resize(std::max<std::size_t>(dataSize / sizeof(wchar_t) + 1, data_.size() * 2));
    } else if (name_.size() < 2 * kNameUnits) {
      name_.resize(name_.size() * 2);
    } else {
      RaiseOSError(ERROR_MORE_DATA);
    }
  }
}

std::wstring_view RegistryValueReader::Text() const noexcept {
  return IsText() ? TextUpToNul(data_.data(), dataSize_) : std::wstring_view();
}

ScopedKey OpenRegistryKey(HKEY root, const std::wstring& path, REGSAM access) noexcept {
  ScopedKey key;
  const LSTATUS status =
      !HoldsNul(path) ? RegOpenKeyExW(root, path.c_str(), 0, access, key.Put()) : ERROR_INVALID_NAME;
  if (status != ERROR_SUCCESS) {
    key.Release();
    SetLastError(static_cast<DWORD>(status));
  }
  return key;
}

std::vector<std::wstring> SubKeyNames(HKEY key) {
  return CollectNames(kSubKeyNameUnits, [key](DWORD index, wchar_t* name, DWORD* length) {
    return RegEnumKeyExW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
  });
}

std::vector<std::wstring> RegistryValueNames(HKEY key) {
  return CollectNames(kNameUnits, [key](DWORD index, wchar_t* name, DWORD* length) {
    return RegEnumValueW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
  });
}

LSTATUS ReadRegistryValue(HKEY key, const std::wstring& name, RegistryData& data) {
  if (HoldsNul(name)) return ERROR_FILE_NOT_FOUND;
  data.bytes.resize(kDataBytes);
  for (;;) {
    auto size = static_cast<DWORD>(data.bytes.size());
    const LSTATUS status = RegQueryValueExW(key, name.c_str(), nullptr, &data.type,
                                            reinterpret_cast<BYTE*>(data.bytes.data()), &size);
    if (status == ERROR_MORE_DATA) {
      data.bytes.resize(std::max<std::size_t>(size, data.bytes.size() * 2));
      continue;
    }
    if (status == ERROR_SUCCESS) data.bytes.resize(size);
    return status;
  }
}

std::optional<RegistryData> QueryRegistryValue(HKEY key, const std::wstring& name) {
  RegistryData data;
  const LSTATUS status = ReadRegistryValue(key, name, data);
  if (IsMissing(status)) return std::nullopt;
  CheckStatus(status);
  return data;
}

std::wstring QueryRegistryText(HKEY key, const std::wstring& name) {
  wchar_t units[kUsualUnits];
  DWORD size = sizeof(units);
  DWORD type = REG_NONE;
  if (HoldsNul(name)) return {};
  const LSTATUS status =
      RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(units), &size);
  if (IsMissing(status)) return {};
  if (status == ERROR_MORE_DATA) return QueryRegistryValue(key, name).value_or(RegistryData{}).Text();
  CheckStatus(status);
  return IsTextType(type) ? std::wstring(TextUpToNul(units, size)) : std::wstring();
}

}  // namespace smh
