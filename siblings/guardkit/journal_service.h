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
  HRESULT STDMETHODCALLTYPE BeginAction(const wchar_t* title) override;
  HRESULT STDMETHODCALLTYPE EndAction(std::uint32_t* id) override;
  HRESULT STDMETHODCALLTYPE GetParts(std::uint32_t id, ICheckpointList** parts) override;
  HRESULT STDMETHODCALLTYPE UndoParts(std::uint32_t id, const std::uint32_t* numbers, std::int32_t count,
                                      UndoMode mode, IUndoReport** report) override;
  HRESULT STDMETHODCALLTYPE Forget(const std::uint32_t* ids, std::int32_t count, HRESULT* results) override;
  HRESULT STDMETHODCALLTYPE WouldDrop(std::uint64_t bytes, ICheckpointList** list) override;
  HRESULT STDMETHODCALLTYPE GetRevision(std::uint64_t* revision) override;
};

}  // namespace smh
