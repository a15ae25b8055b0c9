#include "hosts/common/journal.h"

#include "hosts/common/host_error.h"
#include "hosts/common/library.h"
#include "hosts/common/texts/failure_texts.h"

#include <array>

namespace smh {

namespace {

// In the order of the enumerations.
constexpr std::wstring_view kStateNames[] = {L"open",   L"done",        L"interrupted", L"undone",
                                             L"failed", L"partly done", L"damaged",     L"dropped"};
constexpr std::wstring_view kOutcomeNames[] = {L"undo",        L"nothing", L"conflict",  L"blocked",
                                               L"overwritten", L"kept",    L"impossible"};

template <std::size_t size, typename Value>
std::wstring_view NameAt(const std::wstring_view (&names)[size], Value value) noexcept {
  const auto index = static_cast<std::size_t>(value);
  return index < size ? names[index] : L"unknown";
}

std::vector<CheckpointRecord> Collect(HRESULT result, ICheckpointList* list) {
  if (result == HRESULT_FROM_WIN32(ERROR_NOT_FOUND)) throw HostError(texts::kNoCheckpoint);
  CheckResult(result, texts::kCannotReadJournal);
  std::vector<CheckpointRecord> records;
  const std::int32_t count = list->GetCount();
  for (std::int32_t i = 0; i < count; ++i) {
    CheckpointRecord& record = records.emplace_back();
    CheckResult(list->GetInfo(i, &record.info), texts::kCannotReadCheckpoint);
    record.title = TakeText([&](BoundaryText* text) { return list->GetTitle(i, text); });
  }
  return records;
}

UndoRecord Collect(HRESULT result, IUndoReport* report) {
  UndoRecord record;
  record.result = result;
  if (report == nullptr) return record;
  record.checkpoint = report->GetCheckpoint();
  record.ownCheckpoint = report->GetOwnCheckpoint();
  record.title = TakeText([&](BoundaryText* text) { return report->GetTitle(text); });
  const std::int32_t count = report->GetCount();
  for (std::int32_t i = 0; i < count; ++i) {
    UndoneStepRecord& step = record.steps.emplace_back();
    step.text = TakeText([&](BoundaryText* text) { return report->GetStep(i, &step.outcome, text); });
  }
  return record;
}

}  // namespace

Journal::Journal()
    : library_(LoadFromOwnFolder(IJournal::kLibrary)), journal_(&AskService<IJournal>(library_.Get())) {}

std::vector<CheckpointRecord> Journal::Checkpoints() const {
  ComPtr<ICheckpointList> list;
  const HRESULT result = journal_->GetCheckpoints(list.Put());
  return Collect(result, list.Get());
}

std::vector<CheckpointRecord> Journal::Interrupted() const {
  ComPtr<ICheckpointList> list;
  const HRESULT result = journal_->GetInterrupted(list.Put());
  return Collect(result, list.Get());
}

std::vector<CheckpointRecord> Journal::Parts(std::uint32_t id) const {
  ComPtr<ICheckpointList> list;
  const HRESULT result = journal_->GetParts(id, list.Put());
  return Collect(result, list.Get());
}

UndoRecord Journal::Undo(std::uint32_t id, UndoMode mode) const {
  ComPtr<IUndoReport> report;
  const HRESULT result = journal_->Undo(id, mode, report.Put());
  return Collect(result, report.Get());
}

UndoRecord Journal::UndoParts(std::uint32_t id, const std::vector<std::uint32_t>& numbers,
                              UndoMode mode) const {
  ComPtr<IUndoReport> report;
  const HRESULT result =
      journal_->UndoParts(id, numbers.data(), static_cast<std::int32_t>(numbers.size()), mode, report.Put());
  return Collect(result, report.Get());
}

UndoRecord Journal::Redo(std::uint32_t id, UndoMode mode) const {
  ComPtr<IUndoReport> report;
  const HRESULT result = journal_->Redo(id, mode, report.Put());
  return Collect(result, report.Get());
}

void Journal::BeginAction(const std::wstring& title) const {
  CheckResult(journal_->BeginAction(title.c_str()), texts::kCannotBeginAction);
}

std::uint32_t Journal::EndAction() const noexcept {
  std::uint32_t id = 0;
  return SUCCEEDED(journal_->EndAction(&id)) ? id : 0;
}

std::vector<HRESULT> Journal::Forget(const std::vector<std::uint32_t>& ids) const {
  std::vector<HRESULT> results(ids.size());
  if (ids.empty()) return results;
  const auto count = static_cast<std::int32_t>(ids.size());
  CheckResult(journal_->Forget(ids.data(), count, results.data()), texts::kCannotForget);
  return results;
}

std::uint64_t Journal::Revision() const {
  std::uint64_t revision = 0;
  CheckResult(journal_->GetRevision(&revision), texts::kCannotListJournal);
  return revision;
}

std::vector<CheckpointRecord> Journal::WouldDrop(std::uint64_t bytes) const {
  ComPtr<ICheckpointList> list;
  const HRESULT result = journal_->WouldDrop(bytes, list.Put());
  return Collect(result, list.Get());
}

std::wstring UndoFailureText(const UndoRecord& record, UndoVerb verb) {
  switch (record.result) {
    case IJournal::kConflict:
      return texts::kUndoConflict.Get();
    case IJournal::kWrongState:
      return verb == UndoVerb::kUndo ? texts::kIsUndone.Get() : texts::kIsNotUndone.Get();
    case IJournal::kDamaged:
      return texts::kUndoDamaged.Get();
    case IJournal::kOutOfReach:
      return texts::kUndoOutOfReach.Get();
    case HRESULT_FROM_WIN32(ERROR_NOT_FOUND):
      return texts::kUndoNoCheckpoint.Get();
    case HRESULT_FROM_WIN32(ERROR_BUSY):
      return texts::kUndoStillAtWork.Get();
    case HRESULT_FROM_WIN32(ERROR_LOCK_VIOLATION):
      return texts::kUndoOtherAtWork.Get();
    default:
      break;
  }
  return SystemErrorText(record.result).Shown();
}

std::wstring_view CheckpointStateName(CheckpointState state) noexcept {
  return NameAt(kStateNames, state);
}

std::wstring_view StepOutcomeName(StepOutcome outcome) noexcept {
  return NameAt(kOutcomeNames, outcome);
}

std::wstring IsoTimeOf(const FILETIME& time) {
  SYSTEMTIME universal;
  SYSTEMTIME local;
  if (FileTimeToSystemTime(&time, &universal) == FALSE ||
      SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) == FALSE) {
    return {};
  }
  wchar_t text[32];
  wsprintfW(text, L"%04d-%02d-%02dT%02d:%02d:%02d", local.wYear, local.wMonth, local.wDay, local.wHour,
            local.wMinute, local.wSecond);
  return text;
}

}  // namespace smh
