#include "locations/registry/uSafeguardRegistry.h"

#include "infra/log/uAxDebug.h"
#include "infra/registry/registry.h"
#include "infra/registry/registry_tree.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"

#include <iterator>
#include <utility>

namespace smh {

namespace {

struct KindRow {
  SgDataKind kind;
  DWORD writtenAs;
  DWORD readFrom;
};

// REG_NONE reads as unknown, whatever row it stands in.
constexpr KindRow kKinds[] = {
    {SgDataKind::kUnknown, REG_NONE, REG_NONE},
    {SgDataKind::kString, REG_SZ, REG_SZ},
    {SgDataKind::kMultiString, REG_NONE, REG_MULTI_SZ},
    {SgDataKind::kExpandString, REG_EXPAND_SZ, REG_EXPAND_SZ},
    {SgDataKind::kInteger, REG_DWORD, REG_DWORD},
    {SgDataKind::kBinary, REG_BINARY, REG_BINARY},
};

constexpr REGSAM kLookAccess = STANDARD_RIGHTS_READ | KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS;

DWORD WrittenType(SgDataKind kind) noexcept {
  for (const KindRow& row : kKinds) {
    if (row.kind == kind) return row.writtenAs;
  }
  return REG_NONE;
}

SgDataKind ReadKind(DWORD type) noexcept {
  for (const KindRow& row : kKinds) {
    if (row.readFrom == type) return row.kind;
  }
  return SgDataKind::kUnknown;
}

}  // namespace

TSgRegistry::TSgRegistry(ISafeguard* safeguard) {
  if (safeguard == nullptr) return;
  // Kept on purpose: the service is asked twice, and the second answer is the one that is used.
  ComPtr<IRegAccess> first;
  if (FAILED(safeguard->GetRegAccess(first.Put())) || !first) return;
  if (FAILED(safeguard->GetRegAccess(regAccess_.Put()))) regAccess_.Reset();
}

TSgRegistry::~TSgRegistry() {
  // Kept on purpose: without the service a key still open is forgotten, not closed; callers close it first.
  regAccess_.Reset();
  CloseKey();
}

void TSgRegistry::SetRootKey(HKEY root) {
  if (root == rootKey_) return;
  rootKey_ = root;
  CloseKey();
}

void TSgRegistry::CloseKey() {
  if (currentKey_ == nullptr) return;
  if (!lazyWrite_) RegFlushKey(currentKey_);
  if (regAccess_) regAccess_->CloseKey(currentKey_);
  currentKey_ = nullptr;
  currentPath_.clear();
}

HKEY TSgRegistry::BaseKey(bool relative) const noexcept {
  return currentKey_ != nullptr && relative ? currentKey_ : rootKey_;
}

HKEY TSgRegistry::OpenBelow(HKEY base, const std::wstring& key, REGSAM access) {
  HKEY opened = nullptr;
  if (!regAccess_ || HoldsNul(key)) return nullptr;
  return regAccess_->OpenKey(base, key.c_str(), &opened, access, 0) == ERROR_SUCCESS ? opened : nullptr;
}

HKEY TSgRegistry::CreateBelow(HKEY base, const std::wstring& key) {
  HKEY created = nullptr;
  DWORD ignored = 0;
  if (!regAccess_ || HoldsNul(key)) return nullptr;
  const LSTATUS status = regAccess_->CreateKey(base, key.c_str(), &ignored, &created, 0, access_, 0, 0, 0);
  return status == ERROR_SUCCESS ? created : nullptr;
}

bool TSgRegistry::OpenKey(std::wstring_view key, bool canCreate) {
  const bool relative = IsRelativeKey(key);
  const std::wstring text = RelativeKeyText(key);
  const HKEY base = BaseKey(relative);
  const HKEY opened = canCreate && !text.empty() ? CreateBelow(base, text) : OpenBelow(base, text, access_);
  std::wstring path = currentKey_ != nullptr && relative ? WithTrailingBackslash(currentPath_) + text : text;
  CloseKey();
  currentKey_ = opened;
  currentPath_ = std::move(path);
  return opened != nullptr;
}

bool TSgRegistry::KeyExists(std::wstring_view key) {
  const HKEY opened =
      OpenBelow(BaseKey(IsRelativeKey(key)), RelativeKeyText(key), (access_ & kViewBits) | kLookAccess);
  if (opened != nullptr) regAccess_->CloseKey(opened);
  return opened != nullptr;
}

bool TSgRegistry::GetKeyInfo(SgKeyInfo& info) const {
  info = {};
  return RegQueryInfoKeyW(currentKey_, nullptr, nullptr, nullptr, &info.subKeyCount, &info.longestSubKey,
                          nullptr, &info.valueCount, &info.longestValueName, &info.longestValueData, nullptr,
                          &info.lastWrite) == ERROR_SUCCESS;
}

void TSgRegistry::GetValueNames(std::vector<std::wstring>& names) const {
  names.clear();
  SgKeyInfo info;
  if (!GetKeyInfo(info)) return;
  std::wstring buffer(info.longestValueName + 1, L'\0');
  for (DWORD index = 0; index < info.valueCount; ++index) {
    auto length = static_cast<DWORD>(buffer.size());
    if (RegEnumValueW(currentKey_, index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr) ==
        ERROR_SUCCESS) {
      names.emplace_back(buffer, 0, length);
    }
  }
}

bool TSgRegistry::GetDataInfo(const std::wstring& name, SgDataKind& kind, DWORD& size) const {
  DWORD type = REG_NONE;
  kind = SgDataKind::kUnknown;
  size = 0;
  if (HoldsNul(name) ||
      RegQueryValueExW(currentKey_, name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
    return false;
  }
  kind = ReadKind(type);
  return true;
}

bool TSgRegistry::ValueExists(const std::wstring& name) const {
  SgDataKind kind;
  DWORD size;
  return GetDataInfo(name, kind, size);
}

bool TSgRegistry::WriteString(const std::wstring& name, const std::wstring& text) {
  return PutData(name, text.c_str(), SgDataKind::kString,
                 static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

bool TSgRegistry::PutData(const std::wstring& name, const void* data, SgDataKind kind, DWORD size) {
  return PutRaw(name, WrittenType(kind), data, size);
}

bool TSgRegistry::PutRaw(const std::wstring& name, DWORD type, const void* data, DWORD size) {
  return regAccess_ && !HoldsNul(name) &&
         regAccess_->SetValue(currentKey_, name.c_str(), size, data, type, 0) == ERROR_SUCCESS;
}

bool TSgRegistry::DeleteValue(const std::wstring& name) {
  return regAccess_ && !HoldsNul(name) && regAccess_->DeleteValue(currentKey_, name.c_str()) == ERROR_SUCCESS;
}

LSTATUS TSgRegistry::DeleteKey(std::wstring_view key) {
  const std::wstring text = RelativeKeyText(key);
  if (!regAccess_) return ERROR_NOT_READY;
  // An empty text would name the base key itself, with all that it holds.
  if (text.empty() || HoldsNul(text)) return ERROR_INVALID_PARAMETER;
  const HKEY base = BaseKey(IsRelativeKey(key));
  const LSTATUS status = CheckKeyTree(base, text, access_ & kViewBits);
  return status == ERROR_SUCCESS ? DeleteTree(base, text) : status;
}

LSTATUS TSgRegistry::DeleteEmptyKey(std::wstring_view key) {
  const std::wstring text = RelativeKeyText(key);
  if (!regAccess_) return ERROR_NOT_READY;
  if (text.empty() || HoldsNul(text)) return ERROR_INVALID_PARAMETER;
  return regAccess_->DeleteKey(BaseKey(IsRelativeKey(key)), text.c_str(), access_ & kViewBits, 0);
}

LSTATUS TSgRegistry::DeleteTree(HKEY base, const std::wstring& key) {
  const DebugScope trace(this, L"DeleteKey", {key.c_str()});
  if (const HKEY opened = OpenBelow(base, key, access_)) {
    const HKEY remembered = std::exchange(currentKey_, opened);
    DeleteContents();
    currentKey_ = remembered;
    regAccess_->CloseKey(opened);
  }
  return regAccess_->DeleteKey(base, key.c_str(), access_ & kViewBits, 0);
}

void TSgRegistry::DeleteContents() {
  const HKEY key = currentKey_;
  SgKeyInfo info;
  GetKeyInfo(info);
  DebugLog()->Message(L"delete subkeys");
  // Backwards: a deletion does not shift the keys still to visit.
  std::wstring name(info.longestSubKey + 1, L'\0');
  for (DWORD index = info.subKeyCount; index > 0; --index) {
    auto length = static_cast<DWORD>(name.size());
    if (RegEnumKeyExW(key, index - 1, name.data(), &length, nullptr, nullptr, nullptr, nullptr) ==
        ERROR_SUCCESS) {
      DeleteTree(key, name.substr(0, length));
    }
  }
  DebugLog()->Message(L"delete values");
  if (info.valueCount == 0) return;
  std::vector<std::wstring> names;
  GetValueNames(names);
  for (const std::wstring& value : names) DeleteValue(value);
}

}  // namespace smh
