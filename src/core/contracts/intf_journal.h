// The journal of guardkit.dll: what was changed inside checkpoints, and how to take it back.
//
// A further interface of the library, for hosts; changes themselves go through ISafeguard (intf_safeguard.h),
// which records them. Calls are stdcall; slots are numbered after IUnknown's three. Texts are boundary
// strings (boundary_string.h), lists and reports are the caller's, with one reference. Every slot may be
// called from any thread; a call that changes something waits up to ten seconds for the journal, which one
// checkpoint at a time holds, of all processes.
//
// An elevated process has the machine's journal, any other one its user's; neither sees the other.
// docs/undo.md describes the files and what they promise.
#pragma once

#include "core/contracts/boundary_string.h"

#include <unknwn.h>

namespace smh {

// What has become of a checkpoint.
enum class CheckpointState : std::int32_t {
  kOpen = 0,  // somebody is at work in it
  kDone = 1,
  kInterrupted =
      2,  // its owner died before the end, and something of it stands: it can be undone like any other
  kUndone = 3,
  kFailed = 4,  // the change did not come about; what is left of it, if anything, can be undone by number
};

// What the journal knows of a checkpoint besides its title.
struct CheckpointInfo {
  std::uint32_t id;      // never 0; a later checkpoint has a greater one
  std::uint32_t undoes;  // the checkpoint that this one takes back; 0 for an ordinary one
  FILETIME time;         // of its begin, UTC
  std::uint32_t steps;
  CheckpointState state;
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

// A snapshot of checkpoints; any thread may read it.
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

  // 1: the checkpoint that is undone; 0 when none was found.
  virtual std::uint32_t STDMETHODCALLTYPE GetCheckpoint() = 0;
  // 2: the checkpoint that the undo made; 0 when it changed nothing.
  virtual std::uint32_t STDMETHODCALLTYPE GetOwnCheckpoint() = 0;
  // 3: the title of the checkpoint that is undone.
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

  // Failures of Undo and Redo besides the system's: steps are in conflict and nothing was changed; the
  // checkpoint is undone already, or, for Redo, it is not.
  static constexpr HRESULT kConflict = static_cast<HRESULT>(0x80040201);
  static constexpr HRESULT kWrongState = static_cast<HRESULT>(0x80040202);

  // 1: oldest first; empty without a journal.
  virtual HRESULT STDMETHODCALLTYPE GetCheckpoints(ICheckpointList** list) = 0;
  // 2: only the interrupted ones of which something stands and that nobody has undone: quick, for the start
  // of a host.
  virtual HRESULT STDMETHODCALLTYPE GetInterrupted(ICheckpointList** list) = 0;
  // 3: takes checkpoint `id` back, with 0 the user's newest that is neither undone nor failed (and no undo
  // itself). A report comes with S_OK and kConflict, and when a step is refused: the undo only brings back
  // then what needs nothing deleted or overwritten, and what it did is an interrupted checkpoint of its own.
  // HRESULT_FROM_WIN32 of ERROR_REVISION_MISMATCH: another program changed something while it was looked at;
  // ERROR_NOT_FOUND: no such
  // checkpoint; ERROR_BUSY: it is still open, or this thread has one open; ERROR_ACCESS_DENIED: it is another
  // user's; ERROR_LOCK_VIOLATION: another checkpoint is open.
  virtual HRESULT STDMETHODCALLTYPE Undo(std::uint32_t id, UndoMode mode, IUndoReport** report) = 0;
  // 4: undoes the undo of `id`; `id` may be the undo itself.
  virtual HRESULT STDMETHODCALLTYPE Redo(std::uint32_t id, UndoMode mode, IUndoReport** report) = 0;
};

}  // namespace smh
