// The journal of guardkit.dll: what was changed, and how to take it back.
//
// A further interface of the library, for hosts; changes themselves go through ISafeguard (intf_safeguard.h),
// which records them. Calls are stdcall; slots are numbered after IUnknown's three. Texts are boundary
// strings (boundary_string.h), lists and reports are the caller's, with one reference. Every slot may be
// called from any thread; a call that changes something waits up to ten seconds for the journal's lock, which
// one part at a time holds, of all processes.
//
// What is listed, undone and dropped is an action: what a user asked for at once. Its parts are the changes
// that it was made of, each a checkpoint of ISafeguard; a checkpoint outside an action is an action of one
// part. Several actions may be open at once, of threads and of processes.
//
// An elevated process has the machine's journal, any other one its user's; neither sees the other.
// docs/undo.md describes the files and what they promise.
#pragma once

#include "core/contracts/boundary_string.h"

#include <unknwn.h>

namespace smh {

// What has become of an action, or of a part of one.
enum class CheckpointState : std::int32_t {
  kOpen = 0,  // somebody is at work in it
  kDone = 1,
  kInterrupted =
      2,  // its owner died before the end, and something of it stands: it can be undone like any other
  kUndone = 3,
  kFailed = 4,      // the change did not come about; what is left of it, if anything, can be undone by number
  kPartlyDone = 5,  // some parts stand, others failed or were taken back
  kDamaged = 6,     // its file is not what was written: what can be read is listed, and nothing is undone
  kDropped = 7,     // it was let go of and can no longer be undone
};

// What the journal knows of an action besides its title. In the list of an action's parts: of a part.
struct CheckpointInfo {
  std::uint32_t id;      // never 0; a later action has a greater one. Of a part: its number, from 1
  std::uint32_t undoes;  // the action, or its part, that this one takes back; 0 for an ordinary one
  FILETIME time;         // of its begin, UTC; 0 when it cannot be read
  std::uint32_t steps;   // of all parts
  CheckpointState state;
  std::uint32_t parts;  // of a part: 1
  FILETIME dropped;     // kDropped: when that was, UTC; otherwise 0
};

// What an undo does, or did, with one step.
enum class StepOutcome : std::int32_t {
  kUndo = 0,
  kNothing = 1,      // it never happened, or is taken back already
  kConflict = 2,     // something else stands there now: refused unless forced
  kBlocked = 3,      // it cannot be looked at or taken back, or is not this user's: left out when forced
  kOverwritten = 4,  // forced: what stood there was recorded and overwritten
  kKept = 5,         // a key that the step made holds something by now and stays
  kImpossible = 6,   // forced: what the step moved is nowhere
};

// What Undo and Redo do with conflicts.
enum class UndoMode : std::int32_t {
  kShow = 0,   // changes nothing
  kRun = 1,    // all steps, or none when one is in conflict
  kForce = 2,  // all steps; what is in conflict is overwritten, what is blocked left out
};

// A snapshot of actions or parts; any thread may read it.
struct ICheckpointList : IUnknown {
  static constexpr GUID iid = {0x8B1D6A52, 0x3C0E, 0x4D7B, {0x9A, 0x41, 0x6E, 0x25, 0xB7, 0x0C, 0xF3, 0x18}};

  // 1
  virtual std::int32_t STDMETHODCALLTYPE GetCount() = 0;
  // 2, 3: E_INVALIDARG for an index outside the list.
  virtual HRESULT STDMETHODCALLTYPE GetInfo(std::int32_t index, CheckpointInfo* info) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTitle(std::int32_t index, BoundaryText* title) = 0;
};

// What an undo did, or would do. A snapshot; any thread may read it.
struct IUndoReport : IUnknown {
  static constexpr GUID iid = {0x4F5E2C97, 0xA6B3, 0x4A18, {0x8C, 0x5D, 0x17, 0x93, 0xE0, 0x4B, 0x62, 0xAD}};

  // 1: the action that is undone, or that stands in the way of a bare undo; 0 when none was found.
  virtual std::uint32_t STDMETHODCALLTYPE GetCheckpoint() = 0;
  // 2: the action that the undo made; 0 when it changed nothing.
  virtual std::uint32_t STDMETHODCALLTYPE GetOwnCheckpoint() = 0;
  // 3: the title of that action.
  virtual HRESULT STDMETHODCALLTYPE GetTitle(BoundaryText* title) = 0;
  // 4: steps in the order of undoing, the last one first.
  virtual std::int32_t STDMETHODCALLTYPE GetCount() = 0;
  // 5: `text` says what undoing the step means. E_INVALIDARG for an index outside the list.
  virtual HRESULT STDMETHODCALLTYPE GetStep(std::int32_t index, StepOutcome* outcome, BoundaryText* text) = 0;
};

// The service itself.
struct IJournal : IUnknown {
  static constexpr wchar_t kId[] = L"{D2A4C6E0-71B5-4E39-A0F8-5B9C3D8E1F46}";
  static constexpr wchar_t kLibrary[] = L"guardkit.dll";
  static constexpr GUID iid = {0xD2A4C6E0, 0x71B5, 0x4E39, {0xA0, 0xF8, 0x5B, 0x9C, 0x3D, 0x8E, 0x1F, 0x46}};

  // Failures of Undo, UndoParts and Redo besides the system's: steps are in conflict and nothing was changed;
  // the action is undone already, or, for Redo, it is not, and slot 9's; the action is damaged, and not
  // undone even when forced.
  static constexpr HRESULT kConflict = static_cast<HRESULT>(0x80040201);
  static constexpr HRESULT kWrongState = static_cast<HRESULT>(0x80040202);
  static constexpr HRESULT kDamaged = static_cast<HRESULT>(0x80040203);
  // A step names something that is neither a start-up location nor the program's own: nothing is undone, in
  // no mode.
  static constexpr HRESULT kOutOfReach = static_cast<HRESULT>(0x80040204);

  // 1: oldest first, those that were dropped in front; empty without a journal. A file that cannot be read
  // costs its own row only.
  virtual HRESULT STDMETHODCALLTYPE GetCheckpoints(ICheckpointList** list) = 0;
  // 2: only the interrupted ones of which something stands and that nobody has undone: quick, for the start
  // of a host.
  virtual HRESULT STDMETHODCALLTYPE GetInterrupted(ICheckpointList** list) = 0;
  // 3: takes action `id` back, its last part first, with 0 the user's newest of which a part stands (and that
  // is no undo itself). One plan and one report are made of all parts; each is undone under the lock of its
  // own, as a part of an action of its own. Killed in the middle, it is gone on with by the same call: parts
  // that were undone are not undone again. A report comes with S_OK and kConflict, with kDamaged when only
  // shown, and when a step is refused: the undo only brings back then what needs nothing deleted or
  // overwritten, and what it did is an interrupted action of its own. HRESULT_FROM_WIN32 of
  // ERROR_REVISION_MISMATCH: another program changed something while it was looked at; ERROR_NOT_FOUND: no
  // such action; ERROR_BUSY: its owner lives, or somebody undoes it, or this thread has a checkpoint or an
  // action open; ERROR_ACCESS_DENIED: it is another user's; ERROR_LOCK_VIOLATION: a part of another action
  // was open for more than ten seconds.
  virtual HRESULT STDMETHODCALLTYPE Undo(std::uint32_t id, UndoMode mode, IUndoReport** report) = 0;
  // 4: undoes the undos of `id` that stand; `id` may be an undo itself.
  virtual HRESULT STDMETHODCALLTYPE Redo(std::uint32_t id, UndoMode mode, IUndoReport** report) = 0;
  // 5: what this thread changes until slot 6 is one action of that title, whose parts are the checkpoints
  // that it opens meanwhile. Takes no lock and writes nothing: the first part does. ERROR_BUSY when the
  // thread has an action or a checkpoint open: actions do not nest.
  virtual HRESULT STDMETHODCALLTYPE BeginAction(const wchar_t* title) = 0;
  // 6: ends it, and lets go of the oldest ones when there is too much. `id` is the action, 0 when nothing was
  // recorded. With an empty title the action has that of its first part. ERROR_INVALID_FUNCTION without a
  // begin, ERROR_BUSY while a checkpoint is open. An action whose thread ends without it is interrupted.
  virtual HRESULT STDMETHODCALLTYPE EndAction(std::uint32_t* id) = 0;
  // 7: the parts of action `id` in their order, as far as they can be read. ERROR_NOT_FOUND.
  virtual HRESULT STDMETHODCALLTYPE GetParts(std::uint32_t id, ICheckpointList** parts) = 0;
  // 8: as 3, for these parts of `id` only, `count` of them by their numbers from 1, in any order. kWrongState
  // when one is undone already, ERROR_NOT_FOUND for a part that is not there, E_INVALIDARG for none.
  virtual HRESULT STDMETHODCALLTYPE UndoParts(std::uint32_t id, const std::uint32_t* numbers,
                                              std::int32_t count, UndoMode mode, IUndoReport** report) = 0;
  // 9: removes the actions `ids`, `count` of them, one after the other, and what only their undo needs, their
  // undos and the redos of these with them, damaged and interrupted ones too; of one that was dropped, its
  // row. Undo brings nothing of it back afterwards. `results` has `count` places: S_OK, or ERROR_NOT_FOUND;
  // ERROR_BUSY while an owner of these lives; kWrongState for an undo whose action is still there: it would
  // seem to stand. The answer is a failure when nothing was looked at: ERROR_BUSY when this thread has
  // anything open.
  virtual HRESULT STDMETHODCALLTYPE Forget(const std::uint32_t* ids, std::int32_t count,
                                           HRESULT* results) = 0;
  // 10: the actions that would be let go of if `bytes` more were recorded now, oldest first. Quick while
  // there is room.
  virtual HRESULT STDMETHODCALLTYPE WouldDrop(std::uint64_t bytes, ICheckpointList** list) = 0;
  // 11: a number that stays the same while nobody writes to the journal, by its files' listing alone; 0
  // without a journal. Quick. That an owner has died does not show.
  virtual HRESULT STDMETHODCALLTYPE GetRevision(std::uint64_t* revision) = 0;
};

}  // namespace smh
