#include "tests/support/registry_fixture.h"

#include "infra/runtime/import_function.h"

#include <winternl.h>
#include <sddl.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace smh::test {

namespace {

constexpr DWORD kLongestName = 16'384;

void Check(LSTATUS status, const char* what) {
  if (status != ERROR_SUCCESS) throw std::runtime_error(std::string(what) + ": " + std::to_string(status));
}

ScopedKey OpenForReading(HKEY root, const std::wstring& path, REGSAM view) {
  ScopedKey key;
  RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, key.Put());
  return key;
}

RawValue TextValue(DWORD type, std::wstring_view text) {
  return {type, UnitBytes(std::wstring(text) + L'\0')};
}

RawValue BytesValue(DWORD type, const void* data, std::size_t size) {
  const auto* const bytes = static_cast<const std::byte*>(data);
  return {type, Bytes(bytes, bytes + size)};
}

// Without names that hold NULs, which no caller of the plain calls could use.
std::vector<std::wstring> NamesOf(HKEY key, bool values) {
  std::vector<std::wstring> names;
  std::vector<wchar_t> buffer(kLongestName);
  for (DWORD index = 0; key != nullptr; ++index) {
    DWORD length = kLongestName;
    const LSTATUS status =
        values ? RegEnumValueW(key, index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr)
               : RegEnumKeyExW(key, index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr);
    if (status != ERROR_SUCCESS) break;
    names.emplace_back(buffer.data(), length);
  }
  return names;
}

UNICODE_STRING CountedText(std::wstring_view text) {
  const auto bytes = static_cast<USHORT>(text.size() * sizeof(wchar_t));
  return {bytes, bytes, const_cast<wchar_t*>(text.data())};
}

template <typename... Arguments>
NTSTATUS CallNative(const char* name, Arguments... arguments) {
  using Function = NTSTATUS(NTAPI*)(Arguments...);
  return ImportFunction<Function>(GetModuleHandleW(L"ntdll.dll"), name)(arguments...);
}

void ApplyRights(HKEY key, const wchar_t* text) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &descriptor, nullptr)) {
    throw std::runtime_error("a security descriptor cannot be made");
  }
  const LSTATUS status = RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor);
  LocalFree(descriptor);
  Check(status, "the rights of a key cannot be set");
}

}  // namespace

Bytes UnitBytes(std::wstring_view units) {
  return BytesValue(REG_NONE, units.data(), units.size() * sizeof(wchar_t)).bytes;
}

std::wstring TextOf(const std::optional<RawValue>& value) {
  if (!value) return L"(none)";
  const auto* const units = reinterpret_cast<const wchar_t*>(value->bytes.data());
  return std::wstring(units, std::max<std::size_t>(value->bytes.size() / sizeof(wchar_t), 1) - 1);
}

RawValue Sz(std::wstring_view text) {
  return TextValue(REG_SZ, text);
}

RawValue ExpandSz(std::wstring_view text) {
  return TextValue(REG_EXPAND_SZ, text);
}

RawValue MultiSz(const std::vector<std::wstring>& texts) {
  std::wstring all;
  for (const std::wstring& text : texts) all.append(text).append(1, L'\0');
  return TextValue(REG_MULTI_SZ, all);
}

RawValue Dword(DWORD number) {
  return BytesValue(REG_DWORD, &number, sizeof(number));
}

RawValue Binary(std::string_view bytes) {
  return BytesValue(REG_BINARY, bytes.data(), bytes.size());
}

ScopedKey MakeKey(HKEY root, const std::wstring& path, REGSAM view) {
  ScopedKey key;
  Check(
      RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view, nullptr, key.Put(), nullptr),
      "a key cannot be made");
  return key;
}

bool KeyIsThere(HKEY root, const std::wstring& path, REGSAM view) {
  ScopedKey key;
  return RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, key.Put()) != ERROR_FILE_NOT_FOUND;
}

void DeleteKeyTree(HKEY root, const std::wstring& path, REGSAM view) {
  ScopedKey key;
  const LSTATUS status =
      RegOpenKeyExW(root, path.c_str(), REG_OPTION_OPEN_LINK, KEY_ALL_ACCESS | view, key.Put());
  if (status == ERROR_FILE_NOT_FOUND) return;
  Check(status, "a key to delete cannot be opened");
  for (const std::wstring& name : NamesOf(key.Get(), false)) DeleteKeyTree(key.Get(), name, view);
  // Those who watch the key are told by Windows that it goes, and by Wine only of a change before.
  RegSetValueExW(key.Get(), L"going", 0, REG_NONE, nullptr, 0);
  Check(CallNative("NtDeleteKey", key.Get()), "a key cannot be deleted");
}

void MakeLink(HKEY root, const std::wstring& path, HKEY target, REGSAM view) {
  std::vector<std::byte> information(4096);
  ULONG size = 0;
  // The length in bytes, then the path.
  constexpr ULONG kKeyNameInformation = 3;
  Check(CallNative("NtQueryKey", target, kKeyNameInformation, information.data(),
                   static_cast<ULONG>(information.size()), &size),
        "the path of a key is not told");
  ULONG bytes = 0;
  std::memcpy(&bytes, information.data(), sizeof(bytes));
  ScopedKey link;
  Check(RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS | view,
                        nullptr, link.Put(), nullptr),
        "a link cannot be made");
  Check(RegSetValueExW(link.Get(), L"SymbolicLinkValue", 0, REG_LINK,
                       reinterpret_cast<const BYTE*>(information.data()) + sizeof(bytes), bytes),
        "a link cannot be directed");
}

std::vector<std::wstring> SubKeys(HKEY root, const std::wstring& path, REGSAM view) {
  return NamesOf(OpenForReading(root, path, view).Get(), false);
}

std::vector<std::wstring> Values(HKEY root, const std::wstring& path, REGSAM view) {
  return NamesOf(OpenForReading(root, path, view).Get(), true);
}

void SetValue(HKEY root, const std::wstring& path, const std::wstring& name, const RawValue& value,
              REGSAM view) {
  const ScopedKey key = MakeKey(root, path, view);
  Check(RegSetValueExW(key.Get(), name.c_str(), 0, value.type,
                       reinterpret_cast<const BYTE*>(value.bytes.data()),
                       static_cast<DWORD>(value.bytes.size())),
        "a value cannot be set");
}

std::optional<RawValue> GetValue(HKEY root, const std::wstring& path, const std::wstring& name, REGSAM view) {
  const ScopedKey key = OpenForReading(root, path, view);
  if (!key) return std::nullopt;
  DWORD size = 0;
  if (RegQueryValueExW(key.Get(), name.c_str(), nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  RawValue value{REG_NONE, Bytes(size)};
  Check(RegQueryValueExW(key.Get(), name.c_str(), nullptr, &value.type,
                         reinterpret_cast<BYTE*>(value.bytes.data()), &size),
        "a value cannot be read");
  value.bytes.resize(size);
  return value;
}

void RemoveValue(HKEY root, const std::wstring& path, const std::wstring& name, REGSAM view) {
  Check(RegDeleteValueW(MakeKey(root, path, view).Get(), name.c_str()), "a value cannot be deleted");
}

void SetCountedValue(HKEY key, std::wstring_view name, const RawValue& value) {
  UNICODE_STRING counted = CountedText(name);
  Check(CallNative("NtSetValueKey", key, &counted, ULONG{0}, value.type, value.bytes.data(),
                   static_cast<ULONG>(value.bytes.size())),
        "a counted value cannot be set");
}

void RemoveCountedValue(HKEY key, std::wstring_view name) {
  UNICODE_STRING counted = CountedText(name);
  Check(CallNative("NtDeleteValueKey", key, &counted), "a counted value cannot be deleted");
}

RegistryTree::RegistryTree(std::wstring path, HKEY root, REGSAM view)
    : path_(std::move(path)), root_(root), view_(view) {
  DeleteKeyTree(root_, path_, view_);
  MakeKey(root_, path_, view_);
}

RegistryTree::~RegistryTree() {
  try {
    DeleteKeyTree(root_, path_, view_);
  } catch (const std::exception&) {
    // The next test's constructor meets the same key and says so.
  }
}

std::wstring RegistryTree::PathOf(std::wstring_view sub) const {
  return sub.empty() ? path_ : path_ + L'\\' + std::wstring(sub);
}

SavedKey::SavedKey(HKEY root, std::wstring path, REGSAM view)
    : root_(root), path_(std::move(path)), view_(view) {
  Gather(path_);
}

void SavedKey::Gather(const std::wstring& path) {
  if (!KeyIsThere(root_, path, view_)) return;
  Node node{path, {}};
  for (const std::wstring& name : Values(root_, path, view_)) {
    if (std::optional<RawValue> value = GetValue(root_, path, name, view_)) {
      node.values.emplace_back(name, *std::move(value));
    }
  }
  nodes_.push_back(std::move(node));
  for (const std::wstring& name : SubKeys(root_, path, view_)) Gather(path + L'\\' + name);
}

SavedKey::~SavedKey() {
  try {
    DeleteKeyTree(root_, path_, view_);
    for (const Node& node : nodes_) {
      MakeKey(root_, node.path, view_);
      for (const auto& [name, value] : node.values) SetValue(root_, node.path, name, value, view_);
    }
  } catch (const std::exception&) {
    // Reported by the tests that then find a foreign key.
  }
}

EmptiedKeys::EmptiedKeys(const std::vector<std::wstring>& paths) {
  std::vector<REGSAM> views{0};
  if (HasTwoViews()) views.push_back(KEY_WOW64_64KEY);
  // Everything is saved before anything goes: two views may show one key.
  for (const bool saving : {true, false}) {
    for (const std::wstring& path : paths) {
      for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        for (const REGSAM view : views) {
          if (saving) {
            saved_.push_back(std::make_unique<SavedKey>(root, path, view));
          } else {
            DeleteKeyTree(root, path, view);
          }
        }
      }
    }
  }
}

LimitedKey::LimitedKey(HKEY root, const std::wstring& path, Rights rights, REGSAM view)
    : key_(MakeKey(root, path, view)) {
  ApplyRights(key_.Get(), rights == Rights::kReadOnly ? L"D:(A;OICI;KR;;;WD)" : L"D:");
}

LimitedKey::~LimitedKey() {
  try {
    ApplyRights(key_.Get(), L"D:(A;OICI;KA;;;WD)");
  } catch (const std::exception&) {
    // The tree's own deletion fails next and is seen by the next test.
  }
}

bool HasTwoViews() {
  BOOL wow64 = FALSE;
  return IsWow64Process(GetCurrentProcess(), &wow64) && wow64;
}

REGSAM OwnView() {
  return HasTwoViews() ? KEY_WOW64_64KEY : 0;
}

}  // namespace smh::test
