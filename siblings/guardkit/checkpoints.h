// The open checkpoints of the process, one per thread.
#pragma once

#include "siblings/guardkit/open_checkpoint.h"
#include "infra/runtime/critical_section.h"

#include <map>
#include <memory>
#include <string_view>

namespace smh {

// Any thread may call it. A checkpoint belongs to the thread that began it and is touched by that thread
// only.
class Checkpoints {
 public:
  Checkpoints() = default;
  // What is still open stays without an end.
  ~Checkpoints();
  Checkpoints(const Checkpoints&) = delete;
  Checkpoints& operator=(const Checkpoints&) = delete;

  // Begins nest: the outermost one opens and names the checkpoint. Raises EOSError.
  void Begin(std::wstring_view title);
  // False when this thread has none. The last end closes the checkpoint.
  bool End() noexcept;
  // This thread's checkpoint; null when it has none.
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
class ScopedRecording {
 public:
  // Raises EOSError.
  explicit ScopedRecording(Checkpoints& checkpoints);
  ~ScopedRecording() { checkpoints_.End(); }
  ScopedRecording(const ScopedRecording&) = delete;
  ScopedRecording& operator=(const ScopedRecording&) = delete;

  OpenCheckpoint& operator*() const { return *checkpoints_.Current(); }

 private:
  Checkpoints& checkpoints_;
};

// The process's object, and its making and freeing at module start and stop.
Checkpoints& ProcessCheckpoints() noexcept;
void StartCheckpoints();
void StopCheckpoints() noexcept;

}  // namespace smh
