#include "infra/log/log_registry_dump.h"

#include "infra/log/uStatisticsLog.h"
#include "infra/registry/registry_tree.h"
#include "infra/registry/registry_values.h"
#include "infra/registry/uRegistryUtils.h"

#include <algorithm>
#include <cstring>

namespace smh {

namespace {

// Four bytes; missing ones count as zero and further ones not at all.
std::uint32_t IntegerOf(std::span<const std::byte> data) noexcept {
  std::uint32_t number = 0;
  std::memcpy(&number, data.data(), std::min(data.size(), sizeof(number)));
  return number;
}

void LogValue(const RegistryValueReader& value) {
  std::wstring type;
  std::wstring data;
  if (value.IsText()) {
    // Kept on purpose: expand-strings carry the same label.
    type = L"REG_SZ";
    data = value.Text();
  } else if (value.Type() == REG_DWORD) {
    type = L"REG_DWORD";
    data = std::to_wstring(IntegerOf(value.Data()));
  } else if (value.Type() == REG_MULTI_SZ) {
    type = L"REG_MULTISZ";
    data = JoinTextList(value.Data(), L", ");
  }
  LogFormat(L"%s (%s) = \"%s\"", value.Name(), type, data);
}

void LogKey(REGSAM view, HKEY root, bool recurse, const std::wstring& key, int depth) {
  TRegistryEx registry(KEY_READ | view);
  registry.SetRootKey(root);
  if (!registry.OpenKey(key, false)) return;
  LogLine(registry.FullValuePath({}));
  RegistryValueReader values(registry.CurrentKey());
  while (values.Next()) LogValue(values);
  LogLine({});
  if (!recurse || depth == kDeepestKey) return;
  const std::vector<std::wstring> names = registry.KeyNames();
  registry.CloseKey();
  for (const std::wstring& name : names) {
    const std::wstring below = std::wstring(key).append(L"\\").append(name);
    // What a link leads to lies elsewhere, and may lead back here.
    if (!IsRegistryLink(root, below, view)) LogKey(view, root, recurse, below, depth + 1);
  }
}

}  // namespace

void LogRegistryKey(REGSAM view, HKEY root, bool recurse, const std::wstring& key) {
  const LogScope scope;
  LogKey(view, root, recurse, key, 1);
}

}  // namespace smh
