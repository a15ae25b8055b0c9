// What the history of changes shows: a snapshot of the journal's actions, newest first, below those that are
// opened their parts, and what can be done with them. Has no window and takes no lock.
#pragma once

#include "hosts/common/journal.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// What was read of the journal at once.
struct HistorySnapshot {
  std::vector<CheckpointRecord> actions;                         // undos among them, oldest first
  std::map<std::uint32_t, std::vector<CheckpointRecord>> parts;  // of the opened ones
  std::uint64_t revision = 0;                                    // of the journal, before it was read
};

// An action, or parts of one by their numbers, in rising order; a target without an action is none.
struct HistoryTarget {
  std::uint32_t action = 0;
  std::vector<std::uint32_t> parts{};
  bool operator==(const HistoryTarget&) const = default;
};

// An action, or a part below it.
struct HistoryRow {
  const CheckpointRecord* action = nullptr;
  const CheckpointRecord* part = nullptr;  // null: the action itself

  const CheckpointRecord& Record() const noexcept { return part == nullptr ? *action : *part; }
};

// Whether undo may take it back: an action, or one of its parts. Something may be left of what has failed.
bool CanBeUndone(const HistoryRow& row) noexcept;
// "Done", "Damaged, cannot be undone", "Dropped on 2026-11-21, no longer undoable".
std::wstring HistoryStateText(const CheckpointRecord& record);
// Its title, with the number of its parts when there are several and the title does not name it: "Disabling
// entries (120 changes)".
std::wstring CountedTitle(const CheckpointRecord& record);

// Used by one thread. Every change makes the rows anew: positions and pointers stay valid until then.
class HistoryRows {
 public:
  // Takes the place of what was read before; opened are the actions that `snapshot` has the parts of.
  void Take(HistorySnapshot snapshot);
  // Shows the parts of an action, and hides them again.
  void Open(std::uint32_t action, std::vector<CheckpointRecord> parts);
  void Close(std::uint32_t action);
  // The opened ones by their numbers.
  std::vector<std::uint32_t> Opened() const;
  // Shows actions that have `text` in their title, case ignored, and of opened ones the parts that have;
  // everything for an empty text.
  void Search(std::wstring_view text);

  // What is shown: changes, and undos that were interrupted.
  const std::vector<HistoryRow>& Shown() const noexcept { return shown_; }
  // How many of them are actions.
  std::size_t ActionCount() const noexcept;
  // "+ Deleting 3 entries", printable; a minus when it is opened, parts are indented.
  std::wstring Title(std::size_t row) const;
  // Whether the row is an action with parts to show, or one of the parts.
  bool HasParts(std::size_t row) const noexcept;
  bool IsOpened(std::uint32_t action) const { return snapshot_.parts.contains(action); }

  // What several positions mean together: one action, or parts of the same one; else none.
  HistoryTarget TargetOf(const std::vector<std::size_t>& positions) const;
  // The positions of what is still shown of it, in rising order.
  std::vector<std::size_t> PositionsOf(const HistoryTarget& target) const;
  // Why undo cannot take it back, as a sentence; empty when it can, and for none.
  std::wstring WhyNotUndone(const HistoryTarget& target) const;
  bool CanUndo(const HistoryTarget& target) const;
  // Whether an undo of the action, or of every one of the parts, stands.
  bool CanRedo(const HistoryTarget& target) const;
  // The counted title of the action, or that of its only part; "2 parts of X".
  std::wstring NameOf(const HistoryTarget& target) const;

  // Whether the next undo of anything may find something; whether anything was interrupted.
  bool CanUndoLatest() const noexcept;
  bool HasInterrupted() const noexcept;
  // The undo that was made last, unless a change came after it; null for none.
  const CheckpointRecord* LatestUndo() const noexcept;

 private:
  // That of a change; what takes one of those back is a redo.
  bool IsUndo(const CheckpointRecord& action) const noexcept;
  void Filter();
  const CheckpointRecord* Find(std::uint32_t action) const noexcept;
  std::vector<HistoryRow> RowsOf(const HistoryTarget& target) const;

  HistorySnapshot snapshot_;
  std::wstring search_;
  std::vector<HistoryRow> shown_;
};

}  // namespace smh
