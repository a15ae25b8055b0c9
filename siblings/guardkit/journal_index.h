// The checkpoints of the journal and what has become of them: a snapshot, read without holding the journal's
// lock unless the caller does.
#pragma once

#include "core/contracts/intf_journal.h"
#include "siblings/guardkit/journal_file.h"

#include <optional>
#include <vector>

namespace smh {

// One checkpoint with all of its steps.
struct IndexedCheckpoint {
  JournalName name;
  JournalContents contents;
  CheckpointState state = CheckpointState::kDone;
  // The newest checkpoint that took this one back and was not taken back itself; 0 for none.
  std::uint32_t undoneBy = 0;
};

// Oldest first; files that are no journals are left out. Whether an unfinished one is still open is told by
// trying the journal's lock, unless the caller holds it: then none is. One that nobody has open is compared
// with what is there: when nothing of it is left, it failed, and for good once CloseFailed found it so.
// Raises EOSError.
std::vector<IndexedCheckpoint> IndexJournal(const JournalFolder& folder, bool lockHeld);
// The interrupted ones of which something is left, oldest first, without reading those that were closed.
// Raises EOSError.
std::vector<IndexedCheckpoint> IndexInterrupted(const JournalFolder& folder);
// Closes the unfinished ones of which nothing is left: they stay failed whatever changes later, and like
// others they may be let go of. The caller holds the journal's lock, and has none open. What fails is left
// for the next time.
void CloseFailed(const JournalFolder& folder) noexcept;

// Null when there is none, here and below; the answer points into `index`.
const IndexedCheckpoint* FindById(const std::vector<IndexedCheckpoint>& index, std::uint32_t id);
// The newest of a user, by SID, that may be undone next: with steps, neither failed nor undone yet, and no
// undo itself unless it was interrupted.
const IndexedCheckpoint* FindNewestToUndo(const std::vector<IndexedCheckpoint>& index,
                                          const std::wstring& user);
// The checkpoint whose undo brings `id` back: the one that undid it, or `id` itself when that is an undo.
const IndexedCheckpoint* FindToRedo(const std::vector<IndexedCheckpoint>& index, std::uint32_t id);

}  // namespace smh
