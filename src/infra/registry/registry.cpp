#include "infra/registry/registry.h"

#include "infra/registry/registry_tree.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"

#include <cstring>

namespace smh {

namespace {

// Type and size of a value, without its data.
struct ValueForm {
  DWORD type = REG_NONE;
  DWORD size = 0;
};

std::optional<ValueForm> QueryForm(HKEY key, const std::wstring& name) noexcept {
  ValueForm form;
  if (HoldsNul(name)) return std::nullopt;
  const LSTATUS status = RegQueryValueExW(key, name.c_str(), nullptr, &form.type, nullptr, &form.size);
  return status == ERROR_SUCCESS ? std::optional(form) : std::nullopt;
}

RegistryDataKind KindOf(DWORD type) noexcept {
  switch (type) {
    case REG_SZ:
      return RegistryDataKind::kString;
    case REG_EXPAND_SZ:
      return RegistryDataKind::kExpandString;
    case REG_DWORD:
      return RegistryDataKind::kInteger;
    case REG_BINARY:
      return RegistryDataKind::kBinary;
    default:
      return RegistryDataKind::kUnknown;
  }
}

bool Answer(LSTATUS status) noexcept {
  SetLastError(static_cast<DWORD>(status));
  return status == ERROR_SUCCESS;
}

}  // namespace

void RaiseInvalidDataType(std::wstring_view name) {
  throw ERegistryException(Format(L"Invalid data type for '%s'", name));
}

void RaiseFailedToGetData(std::wstring_view name) {
  throw ERegistryException(Format(L"Failed to get data for '%s'", name));
}

void TRegistry::SetRootKey(HKEY root) {
  if (root == root_) return;
  root_ = root;
  CloseKey();
}

bool TRegistry::OpenKey(std::wstring_view key, bool canCreate) {
  return Open(key, canCreate, access_);
}

bool TRegistry::OpenKeyReadOnly(std::wstring_view key) {
  return Open(key, false, KEY_READ | (access_ & kViewBits));
}

bool TRegistry::Open(std::wstring_view key, bool canCreate, REGSAM access) {
  const bool below = current_ && IsRelativeKey(key);
  const HKEY base = below ? current_.Get() : root_;
  const std::wstring text = RelativeKeyText(key);
  if (HoldsNul(text)) return Answer(ERROR_INVALID_NAME);
  ScopedKey opened;
  const LSTATUS status = canCreate && !text.empty()
                             ? RegCreateKeyExW(base, text.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                               access, nullptr, opened.Put(), nullptr)
                             : RegOpenKeyExW(base, text.c_str(), 0, access, opened.Put());
  if (status == ERROR_SUCCESS) {
    path_ = below ? WithTrailingBackslash(path_) + text : text;
    current_ = std::move(opened);
  }
  return Answer(status);
}

void TRegistry::CloseKey() noexcept {
  current_.Reset();
  path_.clear();
}

bool TRegistry::KeyExists(std::wstring_view key) const {
  const HKEY base = current_ && IsRelativeKey(key) ? current_.Get() : root_;
  return static_cast<bool>(OpenRegistryKey(base, RelativeKeyText(key), KEY_READ | (access_ & kViewBits)));
}

bool TRegistry::DeleteKey(std::wstring_view key) {
  const HKEY base = current_ && IsRelativeKey(key) ? current_.Get() : root_;
  const std::wstring text = RelativeKeyText(key);
  // An empty text would name the base key itself, with all that it holds.
  return Answer(text.empty() ? ERROR_INVALID_PARAMETER : DeleteKeyTree(base, text, access_ & kViewBits));
}

bool TRegistry::ValueExists(const std::wstring& name) const {
  return QueryForm(CurrentKey(), name).has_value();
}

RegistryDataKind TRegistry::DataKind(const std::wstring& name) const {
  const std::optional<ValueForm> form = QueryForm(CurrentKey(), name);
  return form ? KindOf(form->type) : RegistryDataKind::kUnknown;
}

int TRegistry::DataSize(const std::wstring& name) const {
  const std::optional<ValueForm> form = QueryForm(CurrentKey(), name);
  return form ? static_cast<int>(form->size) : -1;
}

std::wstring TRegistry::ReadString(const std::wstring& name) const {
  if (!current_) return {};
  const std::optional<RegistryData> data = QueryRegistryValue(CurrentKey(), name);
  if (!data) return {};
  if (!data->IsText()) RaiseInvalidDataType(name);
  return data->Text();
}

std::uint32_t TRegistry::ReadInteger(const std::wstring& name) const {
  const std::optional<RegistryData> data =
      current_ ? QueryRegistryValue(CurrentKey(), name) : std::optional<RegistryData>();
  if (!data) RaiseFailedToGetData(name);
  if (data->type != REG_DWORD) RaiseInvalidDataType(name);
  std::uint32_t number = 0;
  if (data->bytes.size() != sizeof(number)) RaiseFailedToGetData(name);
  std::memcpy(&number, data->bytes.data(), sizeof(number));
  return number;
}

void TRegistry::Write(const std::wstring& name, DWORD type, const void* data, std::size_t size) {
  if (HoldsNul(name)) RaiseOSError(ERROR_INVALID_NAME);
  CheckStatus(RegSetValueExW(CurrentKey(), name.c_str(), 0, type, static_cast<const BYTE*>(data),
                             static_cast<DWORD>(size)));
}

void TRegistry::WriteString(const std::wstring& name, std::wstring_view text) {
  const RegistryData data = StringData(text);
  Write(name, data.type, data.bytes.data(), data.bytes.size());
}

void TRegistry::WriteInteger(const std::wstring& name, std::uint32_t value) {
  Write(name, REG_DWORD, &value, sizeof(value));
}

bool TRegistry::DeleteValue(const std::wstring& name) {
  return Answer(HoldsNul(name) ? ERROR_FILE_NOT_FOUND : RegDeleteValueW(CurrentKey(), name.c_str()));
}

std::vector<std::wstring> TRegistry::KeyNames() const {
  return current_ ? SubKeyNames(CurrentKey()) : std::vector<std::wstring>();
}

std::vector<std::wstring> TRegistry::ValueNames() const {
  return current_ ? RegistryValueNames(CurrentKey()) : std::vector<std::wstring>();
}

}  // namespace smh
