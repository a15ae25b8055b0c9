// The actions of the journal and what has become of them: a snapshot, read without the journal's lock.
#pragma once

#include "siblings/guardkit/dropped_list.h"
#include "siblings/guardkit/indexed_action.h"

#include <string>
#include <vector>

namespace smh {

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
// The newest of a user, by SID, that a bare undo means: with steps that stand, and no undo itself; so one
// that was interrupted is gone on with by undoing its goal. A redo that was interrupted is taken back.
// Damaged ones are among them, as far as they can be read.
const IndexedAction* FindNewestToUndo(const std::vector<IndexedAction>& index, const std::wstring& user);
// The actions whose undo brings `id` back, oldest first: those that undid parts of it and stand, or `id`
// itself when that is an undo.
std::vector<const IndexedAction*> FindToRedo(const std::vector<IndexedAction>& index, std::uint32_t id);

}  // namespace smh
