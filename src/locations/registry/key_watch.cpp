#include "locations/registry/key_watch.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/exceptions.h"
#include "sysutil/version/uWinVersionInfo.h"

namespace smh {

KeyWatch::Watch::Watch(const WatchedKey& watched, REGSAM viewBits)
    : key(watched), view(viewBits), event(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  if (!event) RaiseLastOSError();
}

void KeyWatch::Watch::Arm() noexcept {
  constexpr DWORD kFilter = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_ATTRIBUTES |
                            REG_NOTIFY_CHANGE_LAST_SET | REG_NOTIFY_CHANGE_SECURITY;
  handle.Reset();
  ResetEvent(event.Get());
  handle = OpenRegistryKey(key.root, key.path, view | KEY_READ);
  if (!handle) return;
  if (RegNotifyChangeKeyValue(handle.Get(), TRUE, kFilter, event.Get(), TRUE) != ERROR_SUCCESS)
    handle.Reset();
}

KeyWatch::KeyWatch(const std::vector<WatchedKey>& keys) {
  for (const WatchedKey& key : keys) {
    watches_.emplace_back(key, 0);
    if (WinVersionInfo::IsWow64()) watches_.emplace_back(key, KEY_WOW64_64KEY);
  }
  for (const Watch& watch : watches_) events_.push_back(watch.event.Get());
  Accept();
}

bool KeyWatch::IsDue() noexcept {
  const auto count = static_cast<DWORD>(events_.size());
  return WaitForMultipleObjects(count, events_.data(), FALSE, 0) < WAIT_OBJECT_0 + count;
}

void KeyWatch::Accept() noexcept {
  for (Watch& watch : watches_) watch.Arm();
}

}  // namespace smh
