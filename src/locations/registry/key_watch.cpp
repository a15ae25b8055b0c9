#include "locations/registry/key_watch.h"

#include "infra/exceptions.h"
#include "infra/registry_values.h"
#include "sysutil/uWinVersionInfo.h"

namespace smh {

KeyWatch::KeyWatch(std::vector<WatchedKey> keys)
    : keys_(std::move(keys)), event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  if (!event_) RaiseLastOSError();
  Rearm();
}

bool KeyWatch::IsSignalled() const noexcept {
  return WaitForSingleObject(event_.Get(), 0) == WAIT_OBJECT_0;
}

void KeyWatch::Rearm() {
  // Closing a watched key may signal the event: close first.
  handles_.clear();
  ResetEvent(event_.Get());
  for (const WatchedKey& key : keys_) {
    Watch(key, 0);
    if (WinVersionInfo::IsWow64()) Watch(key, KEY_WOW64_64KEY);
  }
}

void KeyWatch::Watch(const WatchedKey& key, REGSAM view) {
  constexpr DWORD kFilter = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_ATTRIBUTES |
                            REG_NOTIFY_CHANGE_LAST_SET | REG_NOTIFY_CHANGE_SECURITY;
  ScopedKey handle = OpenRegistryKey(key.root, key.path, view | KEY_READ);
  if (!handle) return;
  if (RegNotifyChangeKeyValue(handle.Get(), TRUE, kFilter, event_.Get(), TRUE) == ERROR_SUCCESS) {
    handles_.push_back(std::move(handle));
  }
}

}  // namespace smh
