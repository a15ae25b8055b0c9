// The journal of guardkit.dll: the checkpoints of past changes, and taking them back.
#pragma once

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/handle.h"
#include "core/contracts/intf_journal.h"

#include <string>
#include <string_view>
#include <vector>

namespace smh {

struct CheckpointRecord {
  CheckpointInfo info;
  std::wstring title;
};

struct UndoneStepRecord {
  StepOutcome outcome;
  std::wstring text;
};

struct UndoRecord {
  HRESULT result = S_OK;
  std::uint32_t checkpoint = 0;     // the one that is undone
  std::uint32_t ownCheckpoint = 0;  // the one that the undo made
  std::wstring title;
  std::vector<UndoneStepRecord> steps;
};

class Journal {
 public:
  // Loads the library. Raises HostError.
  Journal();

  // Oldest first. Raise HostError.
  std::vector<CheckpointRecord> Checkpoints() const;
  std::vector<CheckpointRecord> Interrupted() const;
  // As the slots of IJournal; failures are in the record.
  UndoRecord Undo(std::uint32_t id, UndoMode mode) const;
  UndoRecord Redo(std::uint32_t id, UndoMode mode) const;

 private:
  ScopedModule library_;
  IJournal* journal_;
};

// Why an undo or redo failed, as far as its result tells; `verb` is "undo" or "redo".
std::wstring UndoFailureText(const UndoRecord& record, std::wstring_view verb);

// "open", "done", "interrupted", "undone".
std::wstring_view CheckpointStateName(CheckpointState state) noexcept;
// "undo", "nothing", "conflict", ...
std::wstring_view StepOutcomeName(StepOutcome outcome) noexcept;
// Local time: "2024-05-31T23:59:59".
std::wstring IsoTimeOf(const FILETIME& time);

}  // namespace smh
