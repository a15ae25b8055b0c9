#include "locations/registry/server_file.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "locations/registry/key_opening.h"

#include <objbase.h>

#include <memory>
#include <utility>

namespace smh {

// Stays open as long as somebody looks through it, whoever lets go of it meanwhile.
using SharedKey = std::shared_ptr<const ScopedKey>;

struct NativeClasses {
  // A leaf.
  CriticalSection lock;
  SharedKey identifiers SMH_GUARDED_BY(lock);
};

constinit ModuleGlobal<NativeClasses> g_nativeClasses(L"server_file");

namespace {

constexpr wchar_t kIdentifiers[] = L"CLSID";

// Empty with the error that says why.
struct OpenedKey {
  ScopedKey key;
  DWORD error = ERROR_SUCCESS;
};

OpenedKey Open(HKEY root, const std::wstring& path, REGSAM view) {
  OpenedKey opened{OpenRegistryKey(root, path, view | KEY_READ)};
  if (!opened.key) opened.error = GetLastError();
  return opened;
}

// The key of all classes in another view than the process's own, which stays open: Wine keeps a handle for
// good at every opening from HKEY_CLASSES_ROOT. Opened anew when `dead` is it. Null when it cannot be opened.
SharedKey NativeIdentifiers(REGSAM view, const SharedKey& dead) {
  const ScopedLock lock(g_nativeClasses->lock);
  SharedKey& shared = g_nativeClasses->identifiers;
  if (shared == dead) {
    shared = nullptr;
    ScopedKey key = OpenRegistryKey(HKEY_CLASSES_ROOT, kIdentifiers, view | KEY_READ);
    if (key) shared = std::make_shared<const ScopedKey>(std::move(key));
  }
  return shared;
}

// Whether the key itself is why nothing below it opens: it may be the user's own, and have been deleted.
bool IsDead(HKEY key, DWORD error) {
  if (error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return false;
  return error == ERROR_KEY_DELETED ||
         RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                          nullptr, nullptr, nullptr) != ERROR_SUCCESS;
}

OpenedKey OpenServer(const std::wstring& identifier, REGSAM view) {
  const std::wstring path = identifier + L"\\InprocServer32";
  const SharedKey kept = view == 0 ? nullptr : NativeIdentifiers(view, nullptr);
  if (kept != nullptr) {
    OpenedKey opened = Open(kept->Get(), path, view);
    if (!IsDead(kept->Get(), opened.error)) return opened;
    if (const SharedKey again = NativeIdentifiers(view, kept)) return Open(again->Get(), path, view);
  }
  return Open(HKEY_CLASSES_ROOT, std::wstring(kIdentifiers).append(L"\\").append(path), view);
}

}  // namespace

bool IsClassIdentifier(const std::wstring& text) {
  // Without braces the platform would take the text for the name of a class.
  if (!text.starts_with(L'{') || !text.ends_with(L'}')) return false;
  CLSID identifier;
  return SUCCEEDED(CLSIDFromString(text.c_str(), &identifier));
}

std::optional<std::wstring> ServerFile(const std::wstring& identifier, REGSAM view) {
  if (!IsClassIdentifier(identifier)) return std::wstring();
  const OpenedKey server = OpenServer(identifier, view);
  if (server.key) return QueryRegistryText(server.key.Get(), {});
  if (MayOpenLater(server.error)) return std::nullopt;
  return std::wstring();
}

std::wstring RequireServerFile(const std::wstring& identifier, REGSAM view) {
  if (!IsClassIdentifier(identifier)) return {};
  const OpenedKey server = OpenServer(identifier, view);
  if (server.key) return QueryRegistryText(server.key.Get(), {});
  if (!IsMissingKey(server.error)) RaiseOSError(server.error);
  return {};
}

}  // namespace smh
