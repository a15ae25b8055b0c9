// What tells that a watched key was made, deleted or replaced: the keys above it.
//
// A key's own notification does not reliably tell that the key is gone, and none can be had for one that is
// missing. So the keys above it are watched, up to the first part of its path, for the keys directly in them
// that come and go; each once per view for all who ask. Each is armed before those in it are looked for, so
// what comes after is signalled by the one above.
#pragma once

#include "infra/runtime/handle.h"
#include "infra/runtime/module_global.h"

#include <string>
#include <string_view>

namespace smh {

// One key in one view: open, with a notification armed, as long as it is there and may be read.
class NotifyingKey {
 public:
  enum class Scope {
    kKeysInIt,    // keys directly in it that come and go
    kEverything,  // whatever changes in it and below
  };
  // Arms nothing yet. Raises EOSError when an event cannot be made.
  NotifyingKey(HKEY root, REGSAM view, std::wstring path, Scope scope);

  // Signalled by a change until the next Arm. Arming resets it, so it is nobody else's: a shared event would
  // lose the signals of keys armed before, which then never signal again.
  HANDLE Event() const noexcept { return event_.Get(); }
  bool IsOpen() const noexcept { return static_cast<bool>(handle_); }
  bool IsSignalled() const noexcept;
  // The key seems to be there and could not be opened, or not be watched, when that was tried last: nobody
  // tells when it can.
  bool IsBlocked() const noexcept { return isBlocked_; }
  // Whether the key that is open is gone or replaced, or one is there since.
  bool IsAnother() noexcept;
  // Opens the key anew and arms its notification.
  void Arm() noexcept;

 private:
  ScopedKey Open() noexcept;

  const HKEY root_;
  const REGSAM view_;
  const std::wstring path_;
  const Scope scope_;
  ScopedHandle event_;
  // Closing it may signal the event.
  ScopedKey handle_;
  bool isBlocked_ = false;
};

// A key above others. What has seen its Touches looks at the keys in it again when that number has grown.
// Not shared between threads at the same time.
class KeyAbove {
 public:
  // Armed from the beginning. `above` is null for the first part of a path, and outlives the object. Raises
  // EOSError when an event cannot be made.
  KeyAbove(HKEY root, REGSAM view, std::wstring path, KeyAbove* above);

  KeyAbove* Above() const noexcept { return above_; }
  HANDLE Event() const noexcept { return key_.Event(); }
  unsigned Touches() const noexcept { return touches_; }
  // Whether Look has something to do though the event is not signalled. Always for one that is blocked, and
  // for a missing one with none above: nobody would tell that it came.
  bool IsOverdue() const noexcept;
  // Takes a signal and arms anew; after Look of the one above.
  void Look() noexcept;

 private:
  NotifyingKey key_;
  KeyAbove* const above_;
  unsigned aboveSeen_ = 0;
  unsigned touches_ = 0;
};

// The key above that path, made on first use, borrowed until the module's stop; null for a path of one part.
// Never while another thread asks or looks: the locations are made before their reader. Raises EOSError.
KeyAbove* FindKeyAbove(HKEY root, REGSAM view, std::wstring_view path);

struct KeysAbove;
extern ModuleGlobal<KeysAbove> g_keysAbove;

}  // namespace smh
