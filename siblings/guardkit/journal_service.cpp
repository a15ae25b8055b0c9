#include "siblings/guardkit/journal_service.h"

#include "core/contracts/boundary_call.h"
#include "core/contracts/com_object.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "siblings/guardkit/checkpoints.h"
#include "siblings/guardkit/retention.h"
#include "siblings/guardkit/undo_runner.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace smh {

namespace {

template <typename Row>
const Row* RowAt(const std::vector<Row>& rows, std::int32_t index) noexcept {
  return index >= 0 && static_cast<std::size_t>(index) < rows.size() ? &rows[static_cast<std::size_t>(index)]
                                                                     : nullptr;
}

struct ListRow {
  CheckpointInfo info = {};
  std::wstring title;
};

class CheckpointList final : public ComObject<ICheckpointList> {
 public:
  explicit CheckpointList(std::vector<ListRow> rows) : rows_(std::move(rows)) {}

  std::int32_t STDMETHODCALLTYPE GetCount() override { return static_cast<std::int32_t>(rows_.size()); }
  HRESULT STDMETHODCALLTYPE GetInfo(std::int32_t index, CheckpointInfo* info) override {
    if (info == nullptr) return E_POINTER;
    const ListRow* const row = RowAt(rows_, index);
    if (row == nullptr) return E_INVALIDARG;
    *info = row->info;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTitle(std::int32_t index, BoundaryText* title) override {
    const ListRow* const row = RowAt(rows_, index);
    if (row == nullptr) return title == nullptr ? E_POINTER : E_INVALIDARG;
    return GuardedText(title, [&] { return row->title; });
  }

 private:
  const std::vector<ListRow> rows_;
};

constexpr wchar_t kUnreadable[] = L"(cannot be read)";

ListRow RowOf(const IndexedAction& action) {
  ListRow row{.info = {}, .title = action.IsReadable() ? action.header.title : kUnreadable};
  row.info.id = action.Id();
  row.info.undoes = action.header.undoes;
  row.info.time = FileTimeOf(action.header.time);
  row.info.steps = static_cast<std::uint32_t>(action.stepCount);
  row.info.state = action.state;
  row.info.parts = static_cast<std::uint32_t>(action.parts.size());
  return row;
}

ListRow RowOf(const IndexedAction& action, const IndexedPart& part) {
  ListRow row{.info = {}, .title = part.record.header.title};
  row.info.id = part.record.header.number;
  row.info.undoes = part.record.header.undoesPart;
  row.info.time = FileTimeOf(part.record.header.time);
  row.info.steps = static_cast<std::uint32_t>(part.record.stepCount);
  row.info.state = action.StateOfPart(part);
  row.info.parts = 1;
  return row;
}

ListRow RowOf(const DroppedAction& action) {
  ListRow row{.info = {}, .title = action.title};
  row.info.id = action.id;
  row.info.undoes = action.undoes;
  row.info.time = FileTimeOf(action.time);
  row.info.steps = action.steps;
  row.info.state = CheckpointState::kDropped;
  row.info.parts = action.parts;
  row.info.dropped = FileTimeOf(action.dropped);
  return row;
}

std::vector<ListRow> RowsOf(const std::vector<IndexedAction>& actions) {
  std::vector<ListRow> rows;
  rows.reserve(actions.size());
  for (const IndexedAction& action : actions) rows.push_back(RowOf(action));
  return rows;
}

std::vector<ListRow> AllRows(const JournalFolder& folder) {
  const std::vector<IndexedAction> index = IndexJournal(folder);
  std::vector<ListRow> rows;
  for (const DroppedAction& action : ReadDropped(folder)) {
    if (!action.forgotten && FindById(index, action.id) == nullptr) rows.push_back(RowOf(action));
  }
  std::ranges::move(RowsOf(index), std::back_inserter(rows));
  return rows;
}

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

HRESULT AnswerRows(ICheckpointList** list, std::vector<ListRow> rows) {
  *list = MakeComObject<CheckpointList>(std::move(rows)).Detach();
  return S_OK;
}

// `read` gets the journal's folder; without one the list is empty.
template <typename Read>
HRESULT AnswerList(ICheckpointList** list, Read&& read) noexcept {
  if (list == nullptr) return E_POINTER;
  *list = nullptr;
  return GuardedResult([&] {
    std::vector<ListRow> rows;
    if (const auto folder = JournalFolder::OpenExisting()) rows = read(*folder);
    AnswerRows(list, std::move(rows));
  });
}

void RequireIdle() {
  // It would wait for itself, or change what it is a part of.
  if (g_checkpoints->IsBusy()) RaiseOSError(ERROR_BUSY);
}

HRESULT AnswerUndo(const UndoRequest& request, UndoMode mode, IUndoReport** report) {
  if (mode < UndoMode::kShow || mode > UndoMode::kForce) return E_INVALIDARG;
  HRESULT status = S_OK;
  const HRESULT guarded = GuardedResult([&] {
    RequireIdle();
    UndoResult result = RunUndo(request, mode);
    status = result.status;
    *report = MakeComObject<UndoReport>(std::move(result)).Detach();
  });
  return FAILED(guarded) ? guarded : status;
}

}  // namespace

HRESULT JournalService::GetCheckpoints(ICheckpointList** list) {
  return AnswerList(list, AllRows);
}

HRESULT JournalService::GetInterrupted(ICheckpointList** list) {
  return AnswerList(list, [](const JournalFolder& folder) { return RowsOf(IndexInterrupted(folder)); });
}

HRESULT JournalService::Undo(std::uint32_t id, UndoMode mode, IUndoReport** report) {
  if (report == nullptr) return E_POINTER;
  *report = nullptr;
  return AnswerUndo({.id = id}, mode, report);
}

HRESULT JournalService::Redo(std::uint32_t id, UndoMode mode, IUndoReport** report) {
  if (report == nullptr) return E_POINTER;
  *report = nullptr;
  return AnswerUndo({.direction = Direction::kRedo, .id = id}, mode, report);
}

HRESULT JournalService::BeginAction(const wchar_t* title) {
  return GuardedResult([&] { g_checkpoints->BeginAction(std::wstring(TextArgument(title))); });
}

HRESULT JournalService::EndAction(std::uint32_t* id) {
  if (id == nullptr) return E_POINTER;
  *id = 0;
  return GuardedResult([&] { *id = g_checkpoints->EndAction(); });
}

HRESULT JournalService::GetParts(std::uint32_t id, ICheckpointList** parts) {
  bool found = false;
  const HRESULT result = AnswerList(parts, [&](const JournalFolder& folder) {
    const std::vector<IndexedAction> index = IndexJournal(folder);
    std::vector<ListRow> rows;
    if (const IndexedAction* const action = FindById(index, id)) {
      found = true;
      for (const IndexedPart& part : action->parts) rows.push_back(RowOf(*action, part));
    }
    return rows;
  });
  if (FAILED(result) || found) return result;
  std::exchange(*parts, nullptr)->Release();
  return HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
}

HRESULT JournalService::UndoParts(std::uint32_t id, const std::uint32_t* numbers, std::int32_t count,
                                  UndoMode mode, IUndoReport** report) {
  if (report == nullptr || numbers == nullptr) return E_POINTER;
  *report = nullptr;
  if (count <= 0 || id == 0) return E_INVALIDARG;
  UndoRequest request{.id = id};
  const HRESULT copied = GuardedResult([&] { request.parts.assign(numbers, numbers + count); });
  return FAILED(copied) ? copied : AnswerUndo(request, mode, report);
}

HRESULT JournalService::Forget(const std::uint32_t* ids, std::int32_t count, HRESULT* results) {
  if (ids == nullptr || results == nullptr) return E_POINTER;
  if (count <= 0) return E_INVALIDARG;
  const auto size = static_cast<std::size_t>(count);
  std::fill_n(results, size, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
  return GuardedResult([&] {
    RequireIdle();
    const auto folder = JournalFolder::OpenExisting();
    if (!folder) return;
    const JournalLock lock(*folder, JournalLock::kPatience);
    ForgetActions(*folder, {ids, size}, {results, size});
  });
}

HRESULT JournalService::GetRevision(std::uint64_t* revision) {
  if (revision == nullptr) return E_POINTER;
  *revision = 0;
  return GuardedResult([&] {
    const auto folder = JournalFolder::OpenExisting();
    if (!folder) return;
    // FNV-1a, by numbers.
    std::uint64_t sum = 0xCBF29CE484222325;
    const auto add = [&sum](std::uint64_t number) { sum = (sum ^ number) * 0x100000001B3; };
    for (const JournalName& name : ListJournals(*folder)) {
      add(name.id);
      add(name.closed ? 1 : 0);
      add(name.size);
      add(name.written);
    }
    *revision = sum;
  });
}

HRESULT JournalService::WouldDrop(std::uint64_t bytes, ICheckpointList** list) {
  return AnswerList(list, [bytes](const JournalFolder& folder) {
    return RowsOf(WouldLetGoOf(folder, ReadRetention(), bytes));
  });
}

}  // namespace smh
