// One action of thousands of parts: one undo brings back what was, to the byte, also when the process ends in
// the action, or in its undo.
#include "tests/proofs/api_gate.h"
#include "tests/proofs/proof_report.h"
#include "tests/siblings/guardkit/journal_fixture.h"
#include "tests/support/known_keys.h"
#include "tests/support/startup_folders.h"
#include "tests/support/state_dump.h"
#include "tests/support/test_main.h"

namespace smh::test {
namespace {

constexpr DWORD kPatienceMs = 3'600'000;
const std::wstring kHandlers = L"Software\\Classes\\Folder\\shellex\\DragDropHandlers";

std::wstring NameOf(int entry) {
  return L"Entry " + std::to_wstring(entry);
}

// Every entry is a value of the Run key, some have a handler's key or a shortcut's file with them.
void MakeEntries(int count, const std::wstring& startup) {
  for (int i = 0; i < count; ++i) {
    const std::wstring name = NameOf(i);
    SetValue(HKEY_CURRENT_USER, kRunKey, name, i % 2 == 0 ? Sz(name) : Binary("odd bytes"));
    if (i % 16 == 1) SetValue(HKEY_CURRENT_USER, kHandlers + L'\\' + name + L"\\below", L"v", Dword(1));
    if (i % 16 == 2) WriteFileBytes(startup + name + L".lnk", "shortcut");
  }
}

// As the library does it: its target, then the source.
void ChangeEntry(const Guardkit& service, int entry, const std::wstring& startup) {
  const std::wstring name = NameOf(entry);
  service.Begin(name.c_str());
  if (entry % 3 != 0) {
    const ScopedKey run = MakeKey(HKEY_CURRENT_USER, kRunKey);
    service.Safeguard().SetSource(run.Get(), name.c_str(), nullptr);
    service.Set(HKEY_CURRENT_USER, kRunSide, name, *GetValue(HKEY_CURRENT_USER, kRunKey, name));
  }
  service.RemoveValue(HKEY_CURRENT_USER, kRunKey, name);
  if (entry % 16 == 1) {
    const std::wstring handler = kHandlers + L'\\' + name;
    service.RemoveValue(HKEY_CURRENT_USER, handler + L"\\below", L"v");
    service.RemoveKey(HKEY_CURRENT_USER, handler + L"\\below");
    service.RemoveKey(HKEY_CURRENT_USER, handler);
  }
  if (entry % 16 == 2) service.Safeguard().DeleteRecordedFile((startup + name + L".lnk").c_str());
  service.End();
}

// Changes so many entries, or with 0 undoes what was changed; dies before that call, 0 for none.
SMH_CHILD(BulkVictim) {
  const Guardkit service;
  const int count = std::stoi(arguments[0]);
  ApiGate gate{nullptr, service.Module()};
  gate.Arm(Fault::kDeath, std::stoi(arguments[1]));
  if (count == 0) {
    service.Undo();
  } else {
    service.Journal().BeginAction(L"All of them");
    for (int i = 0; i < count; ++i) ChangeEntry(service, i, arguments[2]);
    std::uint32_t id = 0;
    service.Journal().EndAction(&id);
  }
  gate.Disarm();
  return 0;
}

class BulkUndo : public JournalTest {
 protected:
  BulkUndo() { MakeEntries(count_, places_.startup); }

  std::string Everything() const {
    return DumpKey(HKEY_CURRENT_USER, kRunKey) + DumpKey(HKEY_CURRENT_USER, kHandlers) +
           DumpFolder(places_.startup);
  }
  // False when it came to its end.
  bool Kill(int count, int call) const {
    const ChildResult result = RunChild(
        L"BulkVictim", {std::to_wstring(count), std::to_wstring(call), places_.startup}, kPatienceMs);
    EXPECT_LE(result.exitCode, 1u) << result.output;
    return result.exitCode != 0;
  }
  void UndoAll() const {
    while (!guardkit_.List(true).empty() || guardkit_.Undo(0, UndoMode::kShow).result == S_OK) {
      const UndoAnswer answer = guardkit_.Undo();
      ASSERT_EQ(answer.result, S_OK) << testing::PrintToString(answer.texts.substr(0, 1000));
    }
  }

  // The environment may say more.
  static int Given(const char* name, int bounded) {
    const char* const given = std::getenv(name);
    return given != nullptr ? std::atoi(given) : bounded;
  }

  const int count_ = Given("SMH_BULK_PARTS", 48);
  // In calls; a step takes some four.
  const int stride_ = Given("SMH_BULK_STRIDE", 170);
  const EmptiedKeys keys_{{kRunKey, kHandlers}};
  const StartupPlaces places_{StartupPlaces::Whose::kUser};
};

TEST_F(BulkUndo, IsOneAndToTheByte) {
  const std::string before = Everything();
  EXPECT_FALSE(Kill(count_, 0));
  EXPECT_NE(Everything(), before);
  ASSERT_EQ(guardkit_.List().size(), 1u);
  EXPECT_EQ(guardkit_.Undo().result, S_OK);
  EXPECT_EQ(Everything(), before);
}

TEST_F(BulkUndo, SurvivesTheEndOfItsProcess) {
  const std::string before = Everything();
  for (int call = stride_; Kill(count_, call); call += stride_) {
    SCOPED_TRACE("call " + std::to_string(call));
    UndoAll();
    ASSERT_EQ(Everything(), before);
    ProofReport::Count("bulk", "kills, action");
    ClearJournal();
  }
  const std::string changed = Everything();
  for (int call = stride_; Kill(0, call); call += stride_) {
    SCOPED_TRACE("call " + std::to_string(call));
    UndoAll();
    ASSERT_EQ(Everything(), before);
    ProofReport::Count("bulk", "kills, undo");
    ClearJournal();
    EXPECT_FALSE(Kill(count_, 0));
    ASSERT_EQ(Everything(), changed);
  }
  EXPECT_EQ(Everything(), before);
}

}  // namespace
}  // namespace smh::test
