#include "locations/registry/server_file.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/format.h"
#include "infra/runtime/handle.h"
#include "locations/registry/kept_entry.h"

#include <objbase.h>

namespace smh {

namespace {

std::wstring ServerPath(const std::wstring& identifier) {
  return Format(L"CLSID\\%s\\InprocServer32", identifier);
}

}  // namespace

struct NativeClasses {
  // A leaf.
  CriticalSection lock;
  ScopedKey key SMH_GUARDED_BY(lock);
};

constinit ModuleGlobal<NativeClasses> g_nativeClasses(L"server_file");

namespace {

// Classes in another view than the process's own are opened below a key that stays open: Wine keeps a handle
// for good at every opening from the predefined one.
HKEY ClassesOf(REGSAM view) {
  if (view == 0) return HKEY_CLASSES_ROOT;
  const ScopedLock lock(g_nativeClasses->lock);
  ScopedKey& key = g_nativeClasses->key;
  if (!key) key = OpenRegistryKey(HKEY_CLASSES_ROOT, {}, view | KEY_READ);
  return key ? key.Get() : HKEY_CLASSES_ROOT;
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
  const ScopedKey key = OpenRegistryKey(ClassesOf(view), ServerPath(identifier), view | KEY_READ);
  return key ? QueryRegistryText(key.Get(), {}) : std::wstring();
}

std::wstring RequireServerFile(const std::wstring& identifier, REGSAM view) {
  if (!IsClassIdentifier(identifier)) return {};
  const ScopedKey key = OpenForReading(ClassesOf(view), ServerPath(identifier), view);
  return key ? QueryRegistryText(key.Get(), {}) : std::wstring();
}

}  // namespace smh
