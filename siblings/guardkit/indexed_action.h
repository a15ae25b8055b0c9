// An action as it is recorded, and what has become of it by its undos.
#pragma once

#include "core/contracts/intf_journal.h"
#include "siblings/guardkit/journal_file.h"

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

// Tells each part which undo took it back, whether it was made again, and whether that is unclear. `index` is
// sorted by the actions' numbers and without states but kOpen and kDamaged. Raises nothing.
void JoinUndos(std::vector<IndexedAction>& index);
// The numbers of its parts that stand with their steps, or may stand for all that is known.
std::vector<std::uint32_t> PartsLeft(const IndexedAction& action);
// What an undo or redo was to take back: the action, and the numbers of those of the parts that are left.
// Null for what is neither, and when that is not there. Raises std::bad_alloc.
struct UndoGoal {
  const IndexedAction* action = nullptr;
  std::vector<std::uint32_t> left = {};
};
UndoGoal GoalOf(const std::vector<IndexedAction>& index, const IndexedAction& action);
// Whether it takes back an undo: undos and redos of one action take back one another.
bool IsRedo(const std::vector<IndexedAction>& index, const IndexedAction& action);
// Sets the state of each action that is neither open nor damaged. An undo that lacks its end only, since
// nothing of its goal is left, is done. Raises std::bad_alloc.
void SetStates(std::vector<IndexedAction>& index);
// The state of one that is neither, for itself.
CheckpointState StateOf(const IndexedAction& action);

}  // namespace smh
