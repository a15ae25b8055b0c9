// The open checkpoints of the process, one per thread.
#pragma once

#include "infra/runtime/critical_section.h"
#include "infra/runtime/module_global.h"
#include "siblings/guardkit/open_checkpoint.h"

#include <map>
#include <memory>
#include <string_view>

namespace smh {

// Any thread may call it. A checkpoint belongs to the thread that began it and is touched by that thread
// only; when that has ended, by the next one that begins, which leaves it without an end.
class Checkpoints {
 public:
  Checkpoints() = default;
  // What is still open stays without an end and counts as interrupted. No other thread may be inside a call.
  ~Checkpoints();
  Checkpoints(const Checkpoints&) = delete;
  Checkpoints& operator=(const Checkpoints&) = delete;

  // Begins nest: the outermost one opens and names the checkpoint, and waits up to ten seconds for the
  // journal's lock, which the thread then has until the last end. Raises EOSError when the journal cannot be
  // locked or written; there is nothing to end then.
  void Begin(std::wstring_view title);
  // False when this thread has none. The last end closes the checkpoint, which writes to the disk, and gives
  // the journal's lock back.
  bool End() noexcept;
  // This thread's checkpoint, valid until its last end; null when it has none.
  OpenCheckpoint* Current() noexcept;

 private:
  struct Entry {
    ScopedHandle thread;
    unsigned depth = 0;
    std::unique_ptr<OpenCheckpoint> checkpoint;
  };
  // Takes out what threads that have ended left open, so that their lock is given back.
  std::map<DWORD, Entry> TakeAbandoned();
  Entry* FindOwn() noexcept;

  // Guards the map, not the checkpoints. A leaf: the journal's lock is not waited for under it.
  CriticalSection lock_;
  std::map<DWORD, Entry> entries_;
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
