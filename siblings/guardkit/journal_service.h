// The journal as hosts reach it; intf_journal.h has the contract. Without state, for any thread.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_journal.h"

namespace smh {

// Lists and reports are snapshots with one reference, the caller's. No exception leaves a slot: it becomes
// the answer. The thread's error info stays as it is.
class JournalService final : public ServiceObject<IJournal> {
 public:
  HRESULT STDMETHODCALLTYPE GetCheckpoints(ICheckpointList** list) override;
  HRESULT STDMETHODCALLTYPE GetInterrupted(ICheckpointList** list) override;
  HRESULT STDMETHODCALLTYPE Undo(std::uint32_t id, UndoMode mode, IUndoReport** report) override;
  HRESULT STDMETHODCALLTYPE Redo(std::uint32_t id, UndoMode mode, IUndoReport** report) override;
};

}  // namespace smh
