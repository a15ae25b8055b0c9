// The actions of the journal and what has become of them: a snapshot, read without the journal's lock.
#pragma once

#include "core/contracts/intf_journal.h"
#include "siblings/guardkit/dropped_list.h"
#include "siblings/guardkit/journal_file.h"

#include <optional>
#include <vector>

namespace smh {

// A part, and what others made of it.
struct IndexedPart {
  JournalPart record;
  // Of one without an end: whether something of it is there now.
  bool isLeft = false;
  // The newest action that took it back and was not taken back itself; 0 for none.
  std::uint32_t undoneBy = 0;
  // Taken back and made again, as a whole.
  bool redone = false;
  // An undo of it was begun and never ended, or is damaged: what its marks say need not be so any more.
  bool undoTried = false;
  // Whether it was taken back or made again stood in a file that is damaged: so it may stand, and its undo
  // compares.
  bool isUnclear = false;

  // Whether it came about and was not taken back.
  bool Stands() const noexcept {
    return undoneBy == 0 &&
           (redone || record.end == PartEnd::kDone || (record.end == PartEnd::kNone && isLeft));
  }
};

// One action, without its steps.
struct IndexedAction {
  // 0 in the header's time for one that cannot be read.
  CheckpointHeader header;
  // Its first file in front.
  std::vector<JournalName> files;
  std::vector<IndexedPart> parts;
  std::size_t stepCount = 0;
  // The contents in the blob store that its undo needs.
  std::vector<ContentHash> kept;
  JournalEnd end = JournalEnd::kNone;
  CheckpointState state = CheckpointState::kDone;
  // Damaged for now only: somebody keeps a file of it from being read.
  bool isHeld = false;

  std::uint32_t Id() const noexcept { return files.front().id; }
  bool IsReadable() const noexcept { return header.id != 0; }
  CheckpointState StateOfPart(const IndexedPart& part) const noexcept;
};

// Oldest first. A file that cannot be read, or is not what was written, is an action of its own, damaged; one
// that holds nothing yet is left out. An action is open while its owner lives; one without an end is compared
// with what is there. Raises EOSError when the folder cannot be listed.
std::vector<IndexedAction> IndexJournal(const JournalFolder& folder);
// The interrupted ones of which something is left, oldest first, without reading those that were closed when
// there are none. Raises EOSError.
std::vector<IndexedAction> IndexInterrupted(const JournalFolder& folder);
// The steps of all its parts; what cannot be read is missing. Raises std::bad_alloc.
std::vector<RecordedStep> ReadSteps(const JournalFolder& folder, const IndexedAction& action);
// Closes the unfinished ones of which nothing is left: they stay failed whatever changes later, and like
// others they may be let go of. Deletes files of which the owner died before anything was in them. The caller
// holds the journal's lock. What fails is left for the next time.
void CloseFailed(const JournalFolder& folder) noexcept;

// The number of the next file: greater than all others, those that were dropped among them. Numbers at the
// limit count as nobody's. Raises EOSError when there is none.
std::uint32_t NextJournalId(const std::vector<JournalName>& known, const std::vector<DroppedAction>& dropped);

// Null when there is none, here and below; the answer points into `index`.
const IndexedAction* FindById(const std::vector<IndexedAction>& index, std::uint32_t id);
// The newest of a user, by SID, that may be undone next: with steps that stand, and no undo itself unless it
// was interrupted. Damaged ones are among them, as far as they can be read.
const IndexedAction* FindNewestToUndo(const std::vector<IndexedAction>& index, const std::wstring& user);
// The actions whose undo brings `id` back, oldest first: those that undid parts of it and stand, or `id`
// itself when that is an undo.
std::vector<const IndexedAction*> FindToRedo(const std::vector<IndexedAction>& index, std::uint32_t id);

}  // namespace smh
