#include "siblings/journal_fixture.h"

#include <filesystem>

namespace smh::test {

namespace {

UndoAnswer Collect(HRESULT result, ComPtr<IUndoReport> report) {
  UndoAnswer answer;
  answer.result = result;
  if (!report) return answer;
  answer.checkpoint = report->GetCheckpoint();
  answer.own = report->GetOwnCheckpoint();
  for (std::int32_t i = 0; i < report->GetCount(); ++i) {
    StepOutcome outcome;
    BoundaryString text;
    EXPECT_EQ(report->GetStep(i, &outcome, text.Put()), S_OK);
    answer.outcomes.push_back(outcome);
    answer.texts += text.Text() + L'\n';
  }
  return answer;
}

}  // namespace

Guardkit::Guardkit() {
  safeguard_->GetRegAccess(access_.Put());
}

LSTATUS Guardkit::Set(HKEY root, const std::wstring& key, const std::wstring& name, const RawValue& value,
                      REGSAM view) const {
  HKEY opened = nullptr;
  LSTATUS status = access_->CreateKey(root, key.c_str(), nullptr, &opened, 0, KEY_ALL_ACCESS | view, 0, 0, 0);
  if (status != ERROR_SUCCESS) return status;
  status = access_->SetValue(opened, name.c_str(), static_cast<DWORD>(value.bytes.size()), value.bytes.data(),
                             value.type, 0);
  access_->CloseKey(opened);
  return status;
}

LSTATUS Guardkit::RemoveValue(HKEY root, const std::wstring& key, const std::wstring& name,
                              REGSAM view) const {
  HKEY opened = nullptr;
  LSTATUS status = access_->OpenKey(root, key.c_str(), &opened, KEY_ALL_ACCESS | view, 0);
  if (status != ERROR_SUCCESS) return status;
  status = access_->DeleteValue(opened, name.c_str());
  access_->CloseKey(opened);
  return status;
}

LSTATUS Guardkit::RemoveKey(HKEY root, const std::wstring& key, REGSAM view) const {
  return access_->DeleteKey(root, key.c_str(), view, 0);
}

std::vector<ListedCheckpoint> Guardkit::List(bool onlyInterrupted) const {
  ComPtr<ICheckpointList> list;
  EXPECT_EQ(onlyInterrupted ? journal_->GetInterrupted(list.Put()) : journal_->GetCheckpoints(list.Put()),
            S_OK);
  std::vector<ListedCheckpoint> rows;
  for (std::int32_t i = 0; list && i < list->GetCount(); ++i) {
    CheckpointInfo info;
    EXPECT_EQ(list->GetInfo(i, &info), S_OK);
    const std::wstring title = TakeText([&](BoundaryText* text) { return list->GetTitle(i, text); });
    rows.push_back({info.id, info.state, title, info.steps, info.undoes});
  }
  return rows;
}

UndoAnswer Guardkit::Undo(std::uint32_t id, UndoMode mode) const {
  ComPtr<IUndoReport> report;
  const HRESULT result = journal_->Undo(id, mode, report.Put());
  return Collect(result, std::move(report));
}

UndoAnswer Guardkit::Redo(std::uint32_t id, UndoMode mode) const {
  ComPtr<IUndoReport> report;
  const HRESULT result = journal_->Redo(id, mode, report.Put());
  return Collect(result, std::move(report));
}

std::wstring JournalFolderPath() {
  std::wstring path = JournalPath(JournalKindOf(ReadTokenFacts()));
  path.pop_back();
  return path;
}

void ClearJournal() {
  std::error_code ignored;
  std::filesystem::remove_all(JournalFolderPath(), ignored);
}

}  // namespace smh::test
