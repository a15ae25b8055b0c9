// guardkit.dll with an empty journal: changes as the library makes them, undos as a host asks for them.
#pragma once

#include "guardkit/journal_file.h"
#include "infra/com_ptr.h"
#include "infra/intf_journal.h"
#include "infra/intf_safeguard.h"
#include "siblings/sibling_library.h"
#include "support/registry_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace smh::test {

struct ListedCheckpoint {
  std::uint32_t id;
  CheckpointState state;
  std::wstring title;
  std::uint32_t steps;
  std::uint32_t undoes;
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
  Guardkit();

  HMODULE Module() const noexcept { return library_.Module(); }
  ISafeguard& Safeguard() const noexcept { return *safeguard_; }
  IJournal& Journal() const noexcept { return *journal_; }

  LSTATUS Begin(const wchar_t* title = L"test") const { return safeguard_->BeginCheckpoint(title); }
  LSTATUS End() const { return safeguard_->EndCheckpoint(); }
  // Through IRegAccess, with the key opened for it; `key` may be missing in Set.
  LSTATUS Set(HKEY root, const std::wstring& key, const std::wstring& name, const RawValue& value,
              REGSAM view = 0) const;
  LSTATUS RemoveValue(HKEY root, const std::wstring& key, const std::wstring& name, REGSAM view = 0) const;
  LSTATUS RemoveKey(HKEY root, const std::wstring& key, REGSAM view = 0) const;

  std::vector<ListedCheckpoint> List(bool onlyInterrupted = false) const;
  UndoAnswer Undo(std::uint32_t id = 0, UndoMode mode = UndoMode::kRun) const;
  UndoAnswer Redo(std::uint32_t id, UndoMode mode = UndoMode::kRun) const;

 private:
  SiblingLibrary library_{L"guardkit.dll"};
  ISafeguard* safeguard_ = library_.Service<ISafeguard>();
  IJournal* journal_ = library_.Service<IJournal>();
  ComPtr<IRegAccess> access_;
};

// The folder of the journal that this process has, without a trailing backslash.
std::wstring JournalFolderPath();
void ClearJournal();

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
