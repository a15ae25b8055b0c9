#include "siblings/guardkit/journal_service.h"

#include "core/contracts/boundary_call.h"
#include "core/contracts/com_object.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/undo_runner.h"

namespace smh {

namespace {

template <typename Row>
const Row* RowAt(const std::vector<Row>& rows, std::int32_t index) noexcept {
  return index >= 0 && static_cast<std::size_t>(index) < rows.size() ? &rows[static_cast<std::size_t>(index)]
                                                                     : nullptr;
}

class CheckpointList final : public ComObject<ICheckpointList> {
 public:
  explicit CheckpointList(std::vector<IndexedCheckpoint> rows) : rows_(std::move(rows)) {}

  std::int32_t STDMETHODCALLTYPE GetCount() override { return static_cast<std::int32_t>(rows_.size()); }
  HRESULT STDMETHODCALLTYPE GetInfo(std::int32_t index, CheckpointInfo* info) override {
    if (info == nullptr) return E_POINTER;
    const IndexedCheckpoint* const row = RowAt(rows_, index);
    if (row == nullptr) return E_INVALIDARG;
    const CheckpointHeader& header = row->contents.header;
    *info = {header.id,
             header.undoes,
             FileTimeOf(header.time),
             static_cast<std::uint32_t>(row->contents.steps.size()),
             row->state,
             1,
             {}};
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTitle(std::int32_t index, BoundaryText* title) override {
    const IndexedCheckpoint* const row = RowAt(rows_, index);
    if (row == nullptr) return title == nullptr ? E_POINTER : E_INVALIDARG;
    return GuardedText(title, [&] { return row->contents.header.title; });
  }

 private:
  const std::vector<IndexedCheckpoint> rows_;
};

class UndoReport final : public ComObject<IUndoReport> {
 public:
  explicit UndoReport(UndoResult result) : result_(std::move(result)) {}

  std::uint32_t STDMETHODCALLTYPE GetCheckpoint() override { return result_.checkpoint; }
  std::uint32_t STDMETHODCALLTYPE GetOwnCheckpoint() override { return result_.ownCheckpoint; }
  HRESULT STDMETHODCALLTYPE GetTitle(BoundaryText* title) override {
    return GuardedText(title, [&] { return result_.title; });
  }
  std::int32_t STDMETHODCALLTYPE GetCount() override {
    return static_cast<std::int32_t>(result_.steps.size());
  }
  HRESULT STDMETHODCALLTYPE GetStep(std::int32_t index, StepOutcome* outcome, BoundaryText* text) override {
    if (outcome == nullptr || text == nullptr) return E_POINTER;
    const UndoneStep* const step = RowAt(result_.steps, index);
    if (step == nullptr) return E_INVALIDARG;
    *outcome = step->outcome;
    return GuardedText(text, [&] { return step->text; });
  }

 private:
  const UndoResult result_;
};

// `read` gets the journal's folder; without one the list is empty.
template <typename Read>
HRESULT AnswerList(ICheckpointList** list, Read&& read) noexcept {
  if (list == nullptr) return E_POINTER;
  *list = nullptr;
  return GuardedResult([&] {
    std::vector<IndexedCheckpoint> rows;
    if (const auto folder = JournalFolder::OpenExisting()) rows = read(*folder);
    *list = MakeComObject<CheckpointList>(std::move(rows)).Detach();
  });
}

HRESULT AnswerUndo(Direction direction, std::uint32_t id, UndoMode mode, IUndoReport** report) noexcept {
  if (report == nullptr) return E_POINTER;
  *report = nullptr;
  if (mode < UndoMode::kShow || mode > UndoMode::kForce) return E_INVALIDARG;
  HRESULT status = S_OK;
  const HRESULT guarded = GuardedResult([&] {
    // A checkpoint of this thread would wait for itself.
    if (g_checkpoints->Current() != nullptr) RaiseOSError(ERROR_BUSY);
    UndoResult result = RunUndo(direction, id, mode);
    status = result.status;
    *report = MakeComObject<UndoReport>(std::move(result)).Detach();
  });
  return FAILED(guarded) ? guarded : status;
}

}  // namespace

HRESULT JournalService::GetCheckpoints(ICheckpointList** list) {
  return AnswerList(list, [](const JournalFolder& folder) { return IndexJournal(folder, false); });
}

HRESULT JournalService::GetInterrupted(ICheckpointList** list) {
  return AnswerList(list, [](const JournalFolder& folder) { return IndexInterrupted(folder); });
}

HRESULT JournalService::Undo(std::uint32_t id, UndoMode mode, IUndoReport** report) {
  return AnswerUndo(Direction::kUndo, id, mode, report);
}

HRESULT JournalService::Redo(std::uint32_t id, UndoMode mode, IUndoReport** report) {
  return AnswerUndo(Direction::kRedo, id, mode, report);
}

HRESULT JournalService::BeginAction(const wchar_t* /*title*/) {
  return E_NOTIMPL;
}

HRESULT JournalService::EndAction(std::uint32_t* /*id*/) {
  return E_NOTIMPL;
}

HRESULT JournalService::GetParts(std::uint32_t /*id*/, ICheckpointList** /*parts*/) {
  return E_NOTIMPL;
}

HRESULT JournalService::UndoParts(std::uint32_t /*id*/, const std::uint32_t* /*numbers*/,
                                  std::int32_t /*count*/, UndoMode /*mode*/, IUndoReport** /*report*/) {
  return E_NOTIMPL;
}

HRESULT JournalService::Forget(std::uint32_t /*id*/) {
  return E_NOTIMPL;
}

HRESULT JournalService::WouldDrop(std::uint64_t /*bytes*/, ICheckpointList** /*list*/) {
  return E_NOTIMPL;
}

}  // namespace smh
