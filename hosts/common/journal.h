// The journal of guardkit.dll for hosts: the checkpoints of past changes, and taking them back. What IJournal
// (intf_journal.h) hands out by reference is copied here.
#pragma once

#include "core/contracts/intf_journal.h"
#include "infra/runtime/handle.h"

#include <string>
#include <string_view>
#include <vector>

namespace smh {

// One change, or the undo of one, as the journal has it.
struct CheckpointRecord {
  CheckpointInfo info;
  std::wstring title;
};

// What an undo does, or did, with one step, and what that means in words.
struct UndoneStepRecord {
  StepOutcome outcome;
  std::wstring text;
};

// How an undo or redo went. Without a report of the library only `result` is set.
struct UndoRecord {
  HRESULT result = S_OK;
  std::uint32_t checkpoint = 0;     // the one that is undone
  std::uint32_t ownCheckpoint = 0;  // the one that the undo made
  std::wstring title;
  std::vector<UndoneStepRecord> steps;  // in the order of undoing, the last one first
};

// Keeps guardkit.dll loaded as long as it lives. Any thread may call; a call that changes something may wait
// ten seconds for another checkpoint, of any process, to end.
class Journal {
 public:
  // Loads the library from the folder of the program. Raises HostError when it is missing or has no journal.
  Journal();

  // All checkpoints, undos among them, oldest first; the interrupted ones that nobody has undone. Raise
  // HostError when the journal cannot be read; without a journal they answer an empty list.
  std::vector<CheckpointRecord> Checkpoints() const;
  std::vector<CheckpointRecord> Interrupted() const;
  // Take checkpoint `id` back, and do so with its undo, as the slots of IJournal; 0 is the newest one for
  // Undo. A refusal raises nothing: it is the record's `result`.
  UndoRecord Undo(std::uint32_t id, UndoMode mode) const;
  UndoRecord Redo(std::uint32_t id, UndoMode mode) const;

 private:
  ScopedModule library_;
  IJournal* journal_;
};

// Why an undo or redo failed, as far as its result tells: the end of a sentence in small letters, or the
// system's text; `verb` is "undo" or "redo".
std::wstring UndoFailureText(const UndoRecord& record, std::wstring_view verb);

// "open", "done", "interrupted", "undone", "failed"; "unknown" for any other.
std::wstring_view CheckpointStateName(CheckpointState state) noexcept;
// "undo", "nothing", "conflict", "blocked", "overwritten", "kept", "impossible"; "unknown" for any other.
std::wstring_view StepOutcomeName(StepOutcome outcome) noexcept;
// UTC in, local time out: "2024-05-31T23:59:59"; empty for a time that is none.
std::wstring IsoTimeOf(const FILETIME& time);

}  // namespace smh
