// What a change will mean for undo, told to the user before it begins.
#pragma once

#include "hosts/common/journal.h"

#include <string>
#include <vector>

namespace smh {

struct UndoForecast {
  bool isRecorded = true;                 // false: checkpoints are switched off
  std::vector<CheckpointRecord> dropped;  // what the change would push out of the journal, oldest first
};

// "To keep it for undo, 2 older changes will be dropped and can no longer be undone, up to “X”."; empty when
// nothing is lost. Printable.
std::wstring LossText(const UndoForecast& forecast);
// What undo does about a deletion, with the loss behind it: sentences.
std::wstring DeletionText(const UndoForecast& forecast);

}  // namespace smh
