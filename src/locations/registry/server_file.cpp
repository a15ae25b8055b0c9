#include "locations/registry/server_file.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/format.h"
#include "infra/runtime/handle.h"
#include "locations/registry/kept_entry.h"

#include <objbase.h>

namespace smh {

struct NativeClasses {
  // A leaf.
  CriticalSection lock;
  ScopedKey identifiers SMH_GUARDED_BY(lock);
};

constinit ModuleGlobal<NativeClasses> g_nativeClasses(L"server_file");

namespace {

// The key of all classes in another view than the process's own, which stays open: Wine keeps a handle for
// good at every opening from HKEY_CLASSES_ROOT. Null when it cannot be opened.
HKEY NativeIdentifiers(REGSAM view) {
  const ScopedLock lock(g_nativeClasses->lock);
  ScopedKey& key = g_nativeClasses->identifiers;
  if (!key) key = OpenRegistryKey(HKEY_CLASSES_ROOT, L"CLSID", view | KEY_READ);
  return key.Get();
}

// Opens, by `open`, the key of the class's server.
template <typename Open>
std::wstring ReadServer(const std::wstring& identifier, REGSAM view, Open&& open) {
  if (!IsClassIdentifier(identifier)) return {};
  const HKEY native = view == 0 ? nullptr : NativeIdentifiers(view);
  const std::wstring path =
      Format(native == nullptr ? L"CLSID\\%s\\InprocServer32" : L"%s\\InprocServer32", identifier);
  const ScopedKey key = open(native == nullptr ? HKEY_CLASSES_ROOT : native, path);
  return key ? QueryRegistryText(key.Get(), {}) : std::wstring();
}

}  // namespace

bool IsClassIdentifier(const std::wstring& text) {
  // Without braces the platform would take the text for the name of a class.
  if (!text.starts_with(L'{') || !text.ends_with(L'}')) return false;
  CLSID identifier;
  return SUCCEEDED(CLSIDFromString(text.c_str(), &identifier));
}

std::wstring ServerFile(const std::wstring& identifier, REGSAM view) {
  return ReadServer(identifier, view, [view](HKEY root, const std::wstring& path) {
    return OpenRegistryKey(root, path, view | KEY_READ);
  });
}

std::wstring RequireServerFile(const std::wstring& identifier, REGSAM view) {
  return ReadServer(identifier, view,
                    [view](HKEY root, const std::wstring& path) { return OpenForReading(root, path, view); });
}

}  // namespace smh
