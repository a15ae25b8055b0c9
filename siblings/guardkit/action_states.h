// What became of actions, from what is recorded of them and of their undos.
#pragma once

#include "siblings/guardkit/journal_index.h"

#include <vector>

namespace smh {

// Tells each part which undo took it back, whether it was made again, and whether that is unclear. `index` is
// sorted by the actions' numbers and without states but kOpen and kDamaged. Raises nothing.
void JoinUndos(std::vector<IndexedAction>& index);
// Sets the state of each action that is neither open nor damaged.
void SetStates(std::vector<IndexedAction>& index);
// The state of one that is neither.
CheckpointState StateOf(const IndexedAction& action);

}  // namespace smh
