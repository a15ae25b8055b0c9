// The journal as hosts reach it.
#pragma once

#include "common/service_object.h"
#include "infra/intf_journal.h"

namespace smh {

class JournalService final : public ServiceObject<IJournal> {
 public:
  HRESULT STDMETHODCALLTYPE GetCheckpoints(ICheckpointList** list) override;
  HRESULT STDMETHODCALLTYPE GetInterrupted(ICheckpointList** list) override;
  HRESULT STDMETHODCALLTYPE Undo(std::uint32_t id, UndoMode mode, IUndoReport** report) override;
  HRESULT STDMETHODCALLTYPE Redo(std::uint32_t id, UndoMode mode, IUndoReport** report) override;
};

}  // namespace smh
