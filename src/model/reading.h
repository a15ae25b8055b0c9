// Start and stop of the one background thread that reads the locations and then watches them.
//
// Start and stop are serialised by the reader's control lock, the outermost lock of the module
// (reader_state.h): a thread that holds the item-list lock must not call them, because the reader may be
// waiting for that lock. On a thread of a single-threaded apartment messages are dispatched while that lock
// and the end of the reader are waited for; a start or a stop that comes in on that way, as one in the midst
// of a change of the same thread, raises EReentered. Everything here raises EAssertionFailed before the
// module's start and after its stop.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "infra/runtime/module_steps.h"

namespace smh {

// Stops a running reader, sets the read state to 0 and starts a new one; returns when it runs. Takes the
// show-all-locations switch. Raises EAssertionFailed when the caller holds the item-list lock, EOSError when
// there is no thread to be had.
void StartReading();
// Asks the reader to end and waits for it; a blocked file access of its is cancelled where Windows can do
// that. Nothing when none runs. Raises EAssertionFailed when the caller holds the item-list lock.
void StopReading();

// From any thread, without a lock.
ReadState CurrentReadState();

// The module-wide show-all-locations switch, off when the module starts; taken by the next StartReading. From
// any thread, without a lock.
bool ShowAllLocations();
void SetShowAllLocations(bool show);

// At unload, with the loader's lock held: the reader cannot exit there, so its last act is to signal that it
// has finished and to park, and it is ended parked. One that does not get there within the time limit is
// ended where it stands, which breaks the mode, and so does a control lock that somebody holds until then.
void EndReaderAtUnload(StopMode& mode) noexcept;

}  // namespace smh
