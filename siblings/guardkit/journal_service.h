// The journal as hosts reach it.
#pragma once

#include "core/contracts/service_object.h"
#include "core/contracts/intf_journal.h"

namespace smh {

class JournalService final : public ServiceObject<IJournal> {
 public:
  HRESULT STDMETHODCALLTYPE GetCheckpoints(ICheckpointList** list) override;
  HRESULT STDMETHODCALLTYPE GetInterrupted(ICheckpointList** list) override;
  HRESULT STDMETHODCALLTYPE Undo(std::uint32_t id, UndoMode mode, IUndoReport** report) override;
  HRESULT STDMETHODCALLTYPE Redo(std::uint32_t id, UndoMode mode, IUndoReport** report) override;
};

}  // namespace smh
