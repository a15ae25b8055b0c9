// The open checkpoints and actions of the process: each checkpoint as such, and all of them by thread.
#pragma once

#include "core/contracts/intf_safeguard.h"
#include "infra/files/file_moves.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/thread_slot.h"
#include "siblings/guardkit/aside_files.h"
#include "siblings/guardkit/blob_store.h"
#include "siblings/guardkit/journal_file.h"
#include "siblings/guardkit/journal_folder.h"
#include "siblings/guardkit/open_action.h"

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace smh {

// One checkpoint while it is open, a part of an action: the journal's lock, its place in the action's file,
// and what has to be on the disk before a source may go. For one thread, which has the journal's lock from
// making to destruction.
class OpenCheckpoint {
 public:
  // A part of `action`, which outlives it, or an action of its own. Waits up to ten seconds for the journal's
  // lock. Raises EOSError when the journal cannot be locked or written: nothing may be changed then.
  OpenCheckpoint(OpenAction& action, PartHeader part);
  explicit OpenCheckpoint(std::wstring_view title);
  // Ends it; an action of its own with it, and the oldest ones go when there is too much.
  ~OpenCheckpoint();
  OpenCheckpoint(const OpenCheckpoint&) = delete;
  OpenCheckpoint& operator=(const OpenCheckpoint&) = delete;

  // What was recorded in it so far.
  const std::vector<RecordedStep>& Steps() const noexcept { return steps_; }
  // All valid as long as the checkpoint.
  const JournalFolder& Folder() const noexcept { return action_.Folder(); }
  const BlobStore& Blobs() const noexcept { return blobs_; }
  AsideFiles& Aside() noexcept { return aside_; }
  // For all that this checkpoint waits for.
  OpenPatience& Patience() noexcept { return patience_; }

  // Writes the step down, asks the check, looks once more, makes the change, and notes what became of it.
  // `isStill` answers whether the step's old state stands there; `change` answers a Win32 status and either
  // happens as a whole or not at all. The status is the answer: ERROR_REVISION_MISMATCH when the old state
  // has gone meanwhile, and what the check answers when that refuses; nothing is changed then. A change that
  // others' use of the file refuses is tried again, all looks with it, as long as the patience lasts. Raises
  // EOSError, before the change, when the step cannot be written or the last look fails. In a level that
  // takes back nothing is written down, and no check is asked.
  template <typename Look, typename Change>
  LSTATUS Record(const Step& step, Look&& isStill, Change&& change) {
    IChangeCheck* const check = TakesBack() ? nullptr : levels_.back().check;
    const auto lookAndChange = [&]() -> LSTATUS {
      const LSTATUS refusal = check != nullptr ? check->Check() : ERROR_SUCCESS;
      if (refusal != ERROR_SUCCESS) return refusal;
      try {
        return (guard_ == nullptr || (*guard_)()) && isStill() ? change() : ERROR_REVISION_MISMATCH;
      } catch (const EOSError& error) {
        if (error.Code() != ERROR_SHARING_VIOLATION) throw;
        return ERROR_SHARING_VIOLATION;
      }
    };
    const auto changePatiently = [&] {
      LSTATUS status = lookAndChange();
      while (status == ERROR_SHARING_VIOLATION && patience_.Wait()) status = lookAndChange();
      return status;
    };
    if (TakesBack()) return changePatiently();
    const std::uint32_t number = Append(step);
    const LSTATUS status = changePatiently();
    Mark(number, status);
    return status;
  }

  // Levels nest: one for every begin. An inner one begins with the outer one's check and source, and takes
  // back when that does; none outlives it. EndLevel answers whether a level is left. Raises std::bad_alloc.
  void BeginLevel();
  bool EndLevel() noexcept;
  // Asked before every change of the innermost level from here on; borrowed, null for nobody.
  void SetCheck(IChangeCheck* check) noexcept { levels_.back().check = check; }
  // A part of the last look of every change from here on, also of those that take back: false refuses it, and
  // what it raises passes. Borrowed, null for none.
  void SetGuard(const std::function<bool()>* guard) noexcept { guard_ = guard; }
  // What the innermost level writes from here on is a copy of; see ISafeguard::SetSource. Raises
  // std::bad_alloc.
  void SetSource(StepSource source);
  // The change that the innermost level is for failed: from here on its changes take back what was, which are
  // the steps from the answer's number on, in Steps. Raises std::bad_alloc.
  std::size_t TakeBack();
  bool TakesBack() const noexcept { return levels_.back().takesBack; }
  // Nothing of the innermost level's steps stands any more.
  void NoteTakenBack() noexcept { mayStand_ = levels_.back().couldStand; }

  // The place (registry_place.h) of a key where something was written: it may be the target of what is
  // deleted next.
  void NoteWrite(const std::wstring& place);
  // Writes every hive that this checkpoint wrote to through to the disk, but the one that lies in `place`,
  // whose order the system keeps; all for an empty place. Raises EOSError.
  void FlushBeforeDelete(const std::wstring& place);

  // Leaves it without an end: its action counts as interrupted from now on, unless nothing was changed in it.
  void Abandon() noexcept { abandoned_ = true; }
  // Keeps it even when nothing was changed in it: it says that another one is undone.
  void Keep() noexcept { kept_ = true; }
  // Gives it another header, before its first step.
  void Rename(PartHeader part) { action_.RenamePart(std::move(part)); }

 private:
  OpenCheckpoint(std::unique_ptr<OpenAction>&& own, std::wstring_view title);
  OpenCheckpoint(std::unique_ptr<OpenAction>&& own, OpenAction& action, PartHeader part);
  std::uint32_t Append(const Step& step);
  void Mark(std::uint32_t number, LSTATUS status) noexcept;

  const std::unique_ptr<OpenAction> own_;
  OpenAction& action_;
  const bool isFirst_;
  JournalLock lock_;
  BlobStore blobs_;
  AsideFiles aside_{blobs_};
  JournalFile& file_;
  // The number of its first step in the file.
  const std::uint32_t firstStep_;
  OpenPatience patience_;
  std::vector<RecordedStep> steps_;
  const std::function<bool()>* guard_ = nullptr;
  std::map<std::wstring, std::wstring> written_;  // hive, a place in it
  bool abandoned_ = false;
  bool kept_ = false;
  struct Level {
    // As it was when the level began.
    std::size_t firstStep = 0;
    bool hadDone = false;
    bool couldStand = false;
    // Its own.
    bool takesBack = false;
    IChangeCheck* check = nullptr;
    std::shared_ptr<const StepSource> source;
  };
  std::vector<Level> levels_{Level{}};
  std::set<std::uint32_t> takenBack_;
  // Whether a change was done, and whether one may stand, that was not taken back.
  bool hasDone_ = false;
  bool mayStand_ = false;
};

// Those of the process, one checkpoint and one action per thread. Any thread may call it. Each belongs to the
// thread that began it and is touched by that thread only; when that has ended, by the next one that begins,
// which leaves it without an end.
class Checkpoints {
 public:
  Checkpoints() = default;
  // What is still open stays without an end and counts as interrupted. No other thread may be inside a call.
  ~Checkpoints();
  Checkpoints(const Checkpoints&) = delete;
  Checkpoints& operator=(const Checkpoints&) = delete;

  // Begins nest: the outermost one opens and names the checkpoint, a part of the thread's action when it has
  // one, and waits up to ten seconds for the journal's lock, which the thread then has until the last end.
  // Raises EOSError when the journal cannot be locked or written; there is nothing to end then.
  void Begin(std::wstring_view title);
  // False when this thread has none. The last end closes the checkpoint, which writes to the disk, and gives
  // the journal's lock back.
  bool End() noexcept;
  // This thread's checkpoint, valid until its last end; null when it has none.
  OpenCheckpoint* Current() const noexcept;

  // As IJournal's slots 5 and 6. Raise EOSError when they are refused; neither waits for anything but, for a
  // second, the journal's lock when the oldest have to go.
  void BeginAction(std::wstring title);
  std::uint32_t EndAction();
  // Whether this thread has anything open: an undo would wait for itself or become a part of it.
  bool IsBusy() const noexcept;

 private:
  struct Entry {
    ScopedHandle thread;
    // Destroyed in the other order: the checkpoint is a part of the action.
    std::unique_ptr<OpenAction> action;
    std::unique_ptr<OpenCheckpoint> checkpoint;
  };
  // Takes out what threads that have ended left open, so that their lock is given back.
  std::list<Entry> TakeAbandoned();
  // This thread's entry, made when there is none. Raises.
  Entry& Own();
  // Nothing is left open in this thread's entry.
  void RemoveOwn() noexcept;

  // Of the calling thread; its place in the list stays the same.
  const ThreadSlot<Entry> own_;
  // Guards the list, not the checkpoints. A leaf: the journal's lock is not waited for under it.
  CriticalSection lock_;
  std::list<Entry> entries_ SMH_GUARDED_BY(lock_);
};

// The checkpoint in which a call of this thread is recorded: the open one, or one of its own for this call.
// For a scope of one thread.
class ScopedRecording {
 public:
  // As Checkpoints::Begin; `checkpoints` outlives the scope. Raises EOSError.
  explicit ScopedRecording(Checkpoints& checkpoints);
  ~ScopedRecording() { checkpoints_.End(); }
  ScopedRecording(const ScopedRecording&) = delete;
  ScopedRecording& operator=(const ScopedRecording&) = delete;

  OpenCheckpoint& operator*() const { return *checkpoints_.Current(); }

 private:
  Checkpoints& checkpoints_;
};

// The process's object, which lives from the module's start to its stop.
extern ModuleGlobal<Checkpoints> g_checkpoints;

}  // namespace smh
