// What the reader's parts and the locations share: what outlives one thread of the reader.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/patient_lock.h"
#include "model/parkable_thread.h"

#include <atomic>

namespace smh {

// Lives from module start to stop; any thread may use what has no other rule.
struct ReaderState {
  // The control lock, outermost of the module: serialises start and stop of `thread`. A thread that holds the
  // item-list lock must not enter it, because the reader may be waiting for that lock; one that has the
  // change lock (change_lock.h) is refused.
  PatientLock control;
  ParkableThread thread;
  std::atomic<ReadState> readState{kReadStateReading};
  // Taken by the reader when it starts.
  std::atomic<bool> showAllLocations{false};
  // Taken by every pass that reads more of the entries, and by the default programs.
  std::atomic<bool> showIcons{true};
};
extern ModuleGlobal<ReaderState> g_reader;

// Raises EAbort, which unwinds to the reader's loop, when the reader was asked to end. The locations call it
// between two steps that may take long, whatever thread they run on; takes no lock.
void CheckTerminated();

// Whether the icons of files are asked for; on when the module starts. Details that are read already keep
// what they have. From any thread, without a lock.
bool ShowIcons();
void SetShowIcons(bool show);

}  // namespace smh
