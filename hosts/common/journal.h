// The journal of guardkit.dll for hosts: the actions of the past, and taking them back. What IJournal
// (intf_journal.h) hands out by reference is copied here.
#pragma once

#include "core/contracts/intf_journal.h"
#include "infra/runtime/handle.h"

#include <string>
#include <string_view>
#include <vector>

namespace smh {

// One action, or the undo of one, or a part of either, as the journal has it.
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
// ten seconds for a part of another action, of any process, to end.
class Journal {
 public:
  // Loads the library from the folder of the program. Raises HostError when it is missing or has no journal.
  Journal();

  // All actions, undos and dropped ones among them, oldest first; the interrupted ones that nobody has
  // undone; the parts of one, of which `info.id` is the number. Raise HostError when the journal cannot be
  // read, Parts also when there is no such action; without a journal the first two answer an empty list.
  std::vector<CheckpointRecord> Checkpoints() const;
  std::vector<CheckpointRecord> Interrupted() const;
  std::vector<CheckpointRecord> Parts(std::uint32_t id) const;
  // Take action `id` back, and do so with its undo, as the slots of IJournal; 0 is the newest one for Undo.
  // UndoParts takes back only the parts of these numbers. A refusal raises nothing: it is the record's
  // `result`.
  UndoRecord Undo(std::uint32_t id, UndoMode mode) const;
  UndoRecord UndoParts(std::uint32_t id, const std::vector<std::uint32_t>& numbers, UndoMode mode) const;
  UndoRecord Redo(std::uint32_t id, UndoMode mode) const;

  // As the slots of IJournal: ActionScope (action_scope.h) pairs them. BeginAction raises HostError;
  // EndAction answers the action, 0 when nothing was recorded.
  void BeginAction(const std::wstring& title) const;
  std::uint32_t EndAction() const noexcept;

  // Removes the actions for good. Answers the slot's results, in their order; HostError when nothing was
  // looked at.
  std::vector<HRESULT> Forget(const std::vector<std::uint32_t>& ids) const;
  // The same number as before while nobody has written to the journal; quick. Raises HostError.
  std::uint64_t Revision() const;
  // The actions that recording so many bytes more now would push out, oldest first. Raises HostError.
  std::vector<CheckpointRecord> WouldDrop(std::uint64_t bytes) const;

 private:
  ScopedModule library_;
  IJournal* journal_;
};

enum class UndoVerb { kUndo, kRedo };
// Why an undo or redo failed, as far as its result tells, for people: the end of a sentence in small letters,
// or the system's text.
std::wstring UndoFailureText(const UndoRecord& record, UndoVerb verb);
// For programs: "open", "done", "interrupted", "undone", "failed", "partly done", "damaged", "dropped";
// "unknown" for any other.
std::wstring_view CheckpointStateName(CheckpointState state) noexcept;
// "undo", "nothing", "conflict", "blocked", "overwritten", "kept", "impossible"; "unknown" for any other.
std::wstring_view StepOutcomeName(StepOutcome outcome) noexcept;
// UTC in, local time out: "2024-05-31T23:59:59"; empty for a time that is none.
std::wstring IsoTimeOf(const FILETIME& time);

}  // namespace smh
