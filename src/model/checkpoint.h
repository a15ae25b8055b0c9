// Backup checkpoints around changes, and the six texts that title them.
#pragma once

#include "infra/runtime/module_global.h"

#include <string>
#include <string_view>

namespace smh {

// What a change does to an entry, in the order of the texts.
enum class ChangeKind { kAdding, kMoving, kDeleting, kEnabling, kDisabling, kChanging };

// The texts are module-wide and guarded by a lock of their own (a leaf), so that any thread may call; a
// change holds for every later checkpoint. "%s" receives the item's name.
std::wstring CheckpointText(ChangeKind kind);
void SetCheckpointText(ChangeKind kind, std::wstring_view text);

// The title of a change of that item. A text that cannot be formatted is used as it stands.
std::wstring CheckpointTitle(ChangeKind kind, std::wstring_view itemName);

// Opens a checkpoint of the backup service for this thread, which ends it; see ISafeguard. May be called
// under the item-list lock, and waits up to ten seconds for the journal. Raises EOSError when the service
// refuses: nothing may be changed then, and nothing is to be ended.
void BeginCheckpoint(ChangeKind kind, std::wstring_view itemName);
void EndCheckpoint() noexcept;

// A checkpoint for the length of a scope of one thread when `active`; nothing otherwise. Raises EOSError.
class [[nodiscard]] ScopedCheckpoint {
 public:
  ScopedCheckpoint(bool active, ChangeKind kind, std::wstring_view itemName) : active_(active) {
    if (active_) BeginCheckpoint(kind, itemName);
  }
  ~ScopedCheckpoint() {
    if (active_) EndCheckpoint();
  }
  ScopedCheckpoint(const ScopedCheckpoint&) = delete;
  ScopedCheckpoint& operator=(const ScopedCheckpoint&) = delete;

 private:
  const bool active_;
};

// The six texts; every module start has the defaults.
struct CheckpointTexts;
extern ModuleGlobal<CheckpointTexts> g_checkpointTexts;

}  // namespace smh
