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

// Opens a checkpoint of the backup service for this thread, which ends it; see ISafeguard. Waits up to ten
// seconds for the journal, so no lock of the list or an item may be held. Raises EOSError when the service
// refuses: nothing may be changed then, and nothing is to be ended.
void BeginCheckpoint(ChangeKind kind, std::wstring_view itemName);
void EndCheckpoint() noexcept;

// The checkpoint of one change, for a scope of one thread; none when the settings say that changes are not
// recorded.
class [[nodiscard]] ChangeCheckpoint {
 public:
  // Raises as BeginCheckpoint.
  ChangeCheckpoint(ChangeKind kind, std::wstring_view itemName);
  ~ChangeCheckpoint();
  ChangeCheckpoint(const ChangeCheckpoint&) = delete;
  ChangeCheckpoint& operator=(const ChangeCheckpoint&) = delete;

  // Whether the changes of this thread go through the backup service.
  bool IsRecorded() const noexcept { return recorded_; }
  // The change did not come about: takes back what was recorded of it, and has the checkpoint end as failed.
  void Fail() noexcept;

 private:
  const bool recorded_;
};

// The six texts; every module start has the defaults.
struct CheckpointTexts;
extern ModuleGlobal<CheckpointTexts> g_checkpointTexts;

}  // namespace smh
