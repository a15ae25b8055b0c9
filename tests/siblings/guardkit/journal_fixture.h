// guardkit.dll with an empty journal: changes as the library makes them, undos as a host asks for them.
#pragma once

#include "core/contracts/intf_journal.h"
#include "core/contracts/intf_safeguard.h"
#include "infra/runtime/com_ptr.h"
#include "siblings/guardkit/journal_file.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace smh::test {

// Below a location whose entries are keys, within an undo's reach.
inline constexpr wchar_t kReachedTree[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects\\SmhJournalTest";

struct ListedCheckpoint {
  std::uint32_t id;
  CheckpointState state;
  std::wstring title;
  std::uint32_t steps;
  std::uint32_t undoes;
  std::uint32_t parts;
};

struct UndoAnswer {
  HRESULT result = S_OK;
  std::uint32_t checkpoint = 0;
  std::uint32_t own = 0;
  std::vector<StepOutcome> outcomes;
  std::wstring texts;  // each with a line break
};

// Without the gtest fixture, for child processes.
class Guardkit {
 public:
  Guardkit() { safeguard_->GetRegAccess(access_.Put()); }
  HMODULE Module() const noexcept { return library_.Module(); }
  ISafeguard& Safeguard() const noexcept { return *safeguard_; }
  IJournal& Journal() const noexcept { return *journal_; }

  LSTATUS Begin(const wchar_t* title = L"test") const { return safeguard_->BeginCheckpoint(title); }
  LSTATUS End() const { return safeguard_->EndCheckpoint(); }
  // Through IRegAccess, with the key opened for it; `key` may be missing in Set.
  LSTATUS Set(HKEY root, const std::wstring& key, const std::wstring& name, const RawValue& value,
              REGSAM view = 0) const {
    HKEY opened = nullptr;
    LSTATUS status =
        access_->CreateKey(root, key.c_str(), nullptr, &opened, 0, KEY_ALL_ACCESS | view, 0, 0, 0);
    if (status != ERROR_SUCCESS) return status;
    status = access_->SetValue(opened, name.c_str(), static_cast<DWORD>(value.bytes.size()),
                               value.bytes.data(), value.type, 0);
    access_->CloseKey(opened);
    return status;
  }
  LSTATUS RemoveValue(HKEY root, const std::wstring& key, const std::wstring& name, REGSAM view = 0) const {
    HKEY opened = nullptr;
    LSTATUS status = access_->OpenKey(root, key.c_str(), &opened, KEY_ALL_ACCESS | view, 0);
    if (status != ERROR_SUCCESS) return status;
    status = access_->DeleteValue(opened, name.c_str());
    access_->CloseKey(opened);
    return status;
  }
  LSTATUS RemoveKey(HKEY root, const std::wstring& key, REGSAM view = 0) const {
    return access_->DeleteKey(root, key.c_str(), view, 0);
  }

  std::vector<ListedCheckpoint> List(bool onlyInterrupted = false) const {
    ComPtr<ICheckpointList> list;
    const HRESULT result =
        onlyInterrupted ? journal_->GetInterrupted(list.Put()) : journal_->GetCheckpoints(list.Put());
    return Collect(result, std::move(list));
  }
  std::vector<ListedCheckpoint> Parts(std::uint32_t id) const {
    ComPtr<ICheckpointList> list;
    const HRESULT result = journal_->GetParts(id, list.Put());
    return Collect(result, std::move(list));
  }
  std::vector<ListedCheckpoint> WouldDrop(std::uint64_t bytes) const {
    ComPtr<ICheckpointList> list;
    const HRESULT result = journal_->WouldDrop(bytes, list.Put());
    return Collect(result, std::move(list));
  }

  std::vector<HRESULT> Forget(const std::vector<std::uint32_t>& ids) const {
    std::vector<HRESULT> results(ids.size());
    EXPECT_EQ(journal_->Forget(ids.data(), static_cast<std::int32_t>(ids.size()), results.data()), S_OK);
    return results;
  }

  UndoAnswer Undo(std::uint32_t id = 0, UndoMode mode = UndoMode::kRun) const {
    ComPtr<IUndoReport> report;
    const HRESULT result = journal_->Undo(id, mode, report.Put());
    return Collect(result, std::move(report));
  }
  UndoAnswer UndoParts(std::uint32_t id, const std::vector<std::uint32_t>& numbers) const {
    ComPtr<IUndoReport> report;
    const HRESULT result = journal_->UndoParts(id, numbers.data(), static_cast<std::int32_t>(numbers.size()),
                                               UndoMode::kRun, report.Put());
    return Collect(result, std::move(report));
  }
  UndoAnswer Redo(std::uint32_t id, UndoMode mode = UndoMode::kRun) const {
    ComPtr<IUndoReport> report;
    const HRESULT result = journal_->Redo(id, mode, report.Put());
    return Collect(result, std::move(report));
  }

 private:
  static std::vector<ListedCheckpoint> Collect(HRESULT result, ComPtr<ICheckpointList> list) {
    EXPECT_EQ(result, S_OK);
    std::vector<ListedCheckpoint> rows;
    for (std::int32_t i = 0; list && i < list->GetCount(); ++i) {
      CheckpointInfo info;
      EXPECT_EQ(list->GetInfo(i, &info), S_OK);
      const std::wstring title = TakeText([&](BoundaryText* text) { return list->GetTitle(i, text); });
      rows.push_back({info.id, info.state, title, info.steps, info.undoes, info.parts});
    }
    return rows;
  }
  static UndoAnswer Collect(HRESULT result, ComPtr<IUndoReport> report) {
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

  SiblingLibrary library_{L"guardkit.dll"};
  ISafeguard* safeguard_ = library_.Service<ISafeguard>();
  IJournal* journal_ = library_.Service<IJournal>();
  ComPtr<IRegAccess> access_;
};

// The folder of the journal that this process has, without a trailing backslash.
inline std::wstring JournalFolderPath() {
  std::wstring path = JournalPath(JournalKindOf(ReadTokenFacts()));
  path.pop_back();
  return path;
}
inline void ClearJournal() {
  std::error_code ignored;
  std::filesystem::remove_all(JournalFolderPath(), ignored);
}

// Leaves an action of one part as its owner would: ended, or dead behind its last step.
inline void PlantJournal(std::uint32_t id, const std::wstring& user, const Step& step, bool ended) {
  CheckpointHeader header;
  header.id = id;
  header.user = user;
  std::string file;
  const auto add = [&file](const ByteVector& part) {
    file.append(reinterpret_cast<const char*>(part.data()), part.size());
  };
  for (const ByteVector& part :
       {EncodeBeginning(header), EncodePart({}), EncodeStep(0, step), EncodeMark(0, 0)}) {
    add(part);
  }
  add(ended ? EncodePartEnd(1, false) : ByteVector(kRoomBehindMark));
  if (ended) add(EncodeEnd(1, JournalEnd::kDone));
  const JournalName name{.id = id, .closed = ended};
  WriteFileBytes(JournalFolderPath() + L'\\' + name.FileName(), file);
}

class JournalTest : public testing::Test {
 protected:
  JournalTest() { ClearJournal(); }
  ~JournalTest() override { ClearJournal(); }

  // Begins, makes the changes, ends; the checkpoint's id.
  template <typename Changes>
  std::uint32_t Checkpoint(Changes&& changes, const wchar_t* title = L"test") {
    EXPECT_EQ(guardkit_.Begin(title), ERROR_SUCCESS);
    changes();
    EXPECT_EQ(guardkit_.End(), ERROR_SUCCESS);
    const auto list = guardkit_.List();
    return list.empty() ? 0 : list.back().id;
  }

  Guardkit guardkit_;
};

}  // namespace smh::test
