// Backup checkpoints around changes, and the six texts that title them.
#pragma once

#include "infra/runtime/module_global.h"

#include <string>
#include <string_view>

namespace smh {

enum class ChangeKind { kAdding, kMoving, kDeleting, kEnabling, kDisabling, kChanging };

// The texts are module-wide and guarded by a lock of their own (a leaf); a change holds for every later
// checkpoint. "%s" receives the item's name.
std::wstring CheckpointText(ChangeKind kind);
void SetCheckpointText(ChangeKind kind, std::wstring_view text);

// A text that cannot be formatted is used as it stands.
std::wstring CheckpointTitle(ChangeKind kind, std::wstring_view itemName);

// Raises EOSError when the backup service refuses.
void BeginCheckpoint(ChangeKind kind, std::wstring_view itemName);
void EndCheckpoint() noexcept;

// A checkpoint for the length of a scope when `active`; nothing otherwise.
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
