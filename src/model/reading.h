// The one background thread that reads the locations and then watches them.
//
// Start and stop are serialised by the reader's control lock, the outermost lock of the module: a thread that
// holds the item-list lock must not call them, because the reader may be waiting for that lock.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "infra/runtime/module_steps.h"

namespace smh {

// Stops a running reader, sets the read state to 0 and starts a new one; returns when it runs. Takes the
// show-all-locations switch. Raises EAssertionFailed when the caller holds the item-list lock.
void StartReading();
// Asks the reader to end and waits for it; a blocked file access of its is cancelled where Windows can do
// that. Nothing when none runs. Raises EAssertionFailed when the caller holds the item-list lock.
void StopReading();

ReadState CurrentReadState() noexcept;

// Raises EAbort, which unwinds to the reader's loop, when a reader was asked to end.
void CheckTerminated();

void StartReader();
// At unload, with the loader's lock held: the reader cannot exit there, so its last act is to signal that it
// has finished and to park, and it is ended parked. One that does not get there within the time limit is
// ended where it stands, which breaks the mode.
void StopReaderAtUnload(StopMode& mode) noexcept;

}  // namespace smh
