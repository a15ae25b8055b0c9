#include "core/contracts/uDllGlobals.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/handle.h"

#include <atomic>
#include <utility>

namespace smh {

namespace {

struct ServiceCache {
  // Entered last: under it come only the lock of the sibling libraries' list and the loader's.
  CriticalSection lock;
  std::atomic<IHelper*> helper{nullptr};
  std::atomic<IGlobals*> globals{nullptr};
  std::atomic<IShellHelper*> shellHelper{nullptr};
  std::atomic<IShellDialogsHelper*> shellDialogs{nullptr};
  std::atomic<IFileRater*> fileRater{nullptr};
  std::atomic<ISafeguard*> safeguard{nullptr};
  std::atomic<ISettings*> settings{nullptr};
};

ServiceCache* g_cache = nullptr;

// A string resource longer than this is cut.
constexpr int kIndirectStringUnits = 260;

template <typename Service>
void NoInitialisation(Service&) {}

template <typename Service>
Service& Cached(std::atomic<Service*> ServiceCache::*slot, Service* (*fetch)(),
                void (*initialise)(Service&) = NoInitialisation<Service>) {
  std::atomic<Service*>& cached = g_cache->*slot;
  if (Service* const service = cached.load()) return *service;
  const ScopedLock lock(g_cache->lock);
  if (Service* const service = cached.load()) return *service;
  ComPtr<Service> service(fetch());
  initialise(*service);
  cached.store(service.Get());
  return *service.Detach();
}

template <typename Service>
void ReleaseCached(std::atomic<Service*>& cached) noexcept {
  if (Service* const service = cached.exchange(nullptr)) service->Release();
}

std::wstring StringResource(HMODULE module, std::int32_t number) {
  const auto id = static_cast<std::uint32_t>(number);
  wchar_t buffer[kIndirectStringUnits];
  const int length = LoadStringW(module, number < 0 ? 0 - id : id, buffer, kIndirectStringUnits);
  return length > 0 ? std::wstring(buffer, static_cast<std::size_t>(length)) : std::wstring();
}

}  // namespace

IHelper& DLLGlobals::Helper() {
  return Cached(&ServiceCache::helper, GetHelper);
}

IGlobals& DLLGlobals::Globals() {
  return Cached(&ServiceCache::globals, GetGlobals);
}

IShellHelper& DLLGlobals::ShellHelper() {
  return Cached(&ServiceCache::shellHelper, GetShellHelper);
}

IShellDialogsHelper& DLLGlobals::ShellDialogs() {
  return Cached(
      &ServiceCache::shellDialogs, GetShellDialogsHelper,
      +[](IShellDialogsHelper& dialogs) { dialogs.Initialize(); });
}

IFileRater& DLLGlobals::FileRater() {
  return Cached(&ServiceCache::fileRater, GetFileRater);
}

ISafeguard& DLLGlobals::Safeguard() {
  return Cached(&ServiceCache::safeguard, GetSafeguard);
}

ISettings& DLLGlobals::Settings() {
  return Cached(&ServiceCache::settings, GetSettings);
}

bool DLLGlobals::UseBackupCheckpoints() {
  ComPtr<IApplicationSettings> settings;
  // Without an answer changes are recorded: an undo too many does no harm.
  if (FAILED(Settings().GetApplicationSettings(settings.Put())) || !settings) return true;
  return settings->GetUseCheckpoints(kHostFileName) != FALSE;
}

std::wstring DLLGlobals::LoadIndirectString(std::wstring_view text) {
  if (!text.starts_with(L'@')) return std::wstring(text);
  const std::wstring reference(text.substr(1));
  std::int32_t number = 0;
  const std::wstring file = TakeText(
      [&](BoundaryText* out) { return Helper().SplitIndirectString(reference.c_str(), out, &number); });
  const ScopedModule module(LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_IMAGE_RESOURCE));
  return module ? StringResource(module.Get(), number) : std::wstring();
}

void StartDllGlobals() {
  g_cache = new ServiceCache;
}

void StopDllGlobals() noexcept {
  if (g_cache == nullptr) return;
  {
    const ScopedLock lock(g_cache->lock);
    ReleaseCached(g_cache->helper);
    ReleaseCached(g_cache->globals);
    ReleaseCached(g_cache->shellHelper);
    ReleaseCached(g_cache->shellDialogs);
    ReleaseCached(g_cache->fileRater);
    ReleaseCached(g_cache->safeguard);
    ReleaseCached(g_cache->settings);
  }
  delete std::exchange(g_cache, nullptr);
}

}  // namespace smh
