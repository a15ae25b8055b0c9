#include "locations/registry/server_file.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/format.h"
#include "locations/registry/kept_entry.h"

#include <objbase.h>

namespace smh {

namespace {

std::wstring ServerPath(const std::wstring& identifier) {
  return Format(L"CLSID\\%s\\InprocServer32", identifier);
}

}  // namespace

bool IsClassIdentifier(const std::wstring& text) {
  // Without braces the platform would take the text for the name of a class.
  if (!text.starts_with(L'{') || !text.ends_with(L'}')) return false;
  CLSID identifier;
  return SUCCEEDED(CLSIDFromString(text.c_str(), &identifier));
}

std::wstring ServerFile(const std::wstring& identifier, REGSAM view) {
  if (!IsClassIdentifier(identifier)) return {};
  const ScopedKey key = OpenRegistryKey(HKEY_CLASSES_ROOT, ServerPath(identifier), view | KEY_READ);
  return key ? QueryRegistryText(key.Get(), {}) : std::wstring();
}

std::wstring RequireServerFile(const std::wstring& identifier, REGSAM view) {
  if (!IsClassIdentifier(identifier)) return {};
  const ScopedKey key = OpenForReading(HKEY_CLASSES_ROOT, ServerPath(identifier), view);
  return key ? QueryRegistryText(key.Get(), {}) : std::wstring();
}

}  // namespace smh
