#include "infra/registry/full_value_path.h"

#include "infra/runtime/text.h"

#include <cstdint>

namespace smh {

namespace {

constexpr std::wstring_view kViewPrefixes[] = {L"(x32)", L"(x64)"};

struct RootName {
  std::uint32_t handle;
  std::wstring_view name;
};

constexpr RootName kRootNames[] = {
    {0x80000000, L"HKEY_CLASSES_ROOT"},     {0x80000001, L"HKEY_CURRENT_USER"},
    {0x80000002, L"HKEY_LOCAL_MACHINE"},    {0x80000003, L"HKEY_USERS"},
    {0x80000004, L"HKEY_PERFORMANCE_DATA"}, {0x80000005, L"HKEY_CURRENT_CONFIG"},
    {0x80000006, L"HKEY_DYN_DATA"},
};

HKEY RootHandle(std::uint32_t handle) noexcept {
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(handle)));
}

}  // namespace

std::wstring_view RootKeyName(HKEY root) noexcept {
  for (const RootName& row : kRootNames) {
    if (RootHandle(row.handle) == root) return row.name;
  }
  return {};
}

void AssignFullValuePath(std::wstring& path, REGSAM access, HKEY root, std::wstring_view keyPath,
                         std::wstring_view valueName) {
  const std::wstring_view prefix = kViewPrefixes[(access & KEY_WOW64_64KEY) != 0 ? 1 : 0];
  const std::wstring_view rootName = RootKeyName(root);
  path.reserve(prefix.size() + rootName.size() + keyPath.size() + valueName.size() + 2);
  path.assign(prefix).append(rootName);
  if (!keyPath.starts_with(L'\\')) path += L'\\';
  path.append(keyPath);
  if (!path.ends_with(L'\\')) path += L'\\';
  path.append(valueName);
}

std::wstring BuildFullValuePath(REGSAM access, HKEY root, std::wstring_view keyPath,
                                std::wstring_view valueName) {
  std::wstring path;
  AssignFullValuePath(path, access, root, keyPath, valueName);
  return path;
}

void ParseFullValuePath(std::wstring_view path, REGSAM& viewBits, std::wstring& valueName,
                        std::wstring& keyPath, HKEY& root) {
  if (StartsText(kViewPrefixes[0], path)) {
    viewBits = 0;
    path.remove_prefix(kViewPrefixes[0].size());
  } else if (StartsText(kViewPrefixes[1], path)) {
    viewBits = KEY_WOW64_64KEY;
    path.remove_prefix(kViewPrefixes[1].size());
  }
  const std::size_t nameAt = path.rfind(L'\\') + 1;
  valueName = path.substr(nameAt);
  std::wstring_view key = path.substr(0, nameAt);
  for (const RootName& row : kRootNames) {
    if (!StartsText(row.name, key)) continue;
    root = RootHandle(row.handle);
    key.remove_prefix(row.name.size());
    break;
  }
  keyPath = key;
}

}  // namespace smh
