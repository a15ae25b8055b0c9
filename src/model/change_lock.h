// The change lock: one change at a time, of all locations.
//
// Lock order: the control lock (reader_state.h), the change lock, the item-list lock, an item's lock; a
// thread has one of the first two at most (patient_lock.h). A change holds it from before it looks its item
// up until the list shows the outcome, and does its work on disk, registry and journal without any of the
// others.
#pragma once

#include "infra/runtime/module_global.h"
#include "infra/runtime/patient_lock.h"
#include "infra/runtime/thread_annotations.h"
#include "model/item_list.h"
#include "model/reader_state.h"

namespace smh {

// How long a change waits for others.
inline constexpr DWORD kChangePatienceMs = 30'000;

extern ModuleGlobal<PatientLock> g_changeLock SMH_TAKEN_AFTER(g_reader->control)
    SMH_TAKEN_BEFORE(Items().Lock());

// The change lock for a scope of one thread. A thread that holds the item-list lock gives it up meanwhile,
// however often it holds it, and has it back as often before the change begins: others may change the list in
// between, so the item is looked up after this.
class [[nodiscard]] SMH_SCOPED_LOCK ScopedChange {
 public:
  // Raises EChangeRefused (busy) when others take longer than `patience` milliseconds, and EReentered on a
  // thread that is at a change, or at a start or stop of reading, already.
  explicit ScopedChange(DWORD patience = kChangePatienceMs) SMH_TAKES_LOCK(*g_changeLock);
  ~ScopedChange() SMH_GIVES_LOCK();
  ScopedChange(const ScopedChange&) = delete;
  ScopedChange& operator=(const ScopedChange&) = delete;
};

}  // namespace smh
