// The module with its real backup service, and a journal that begins empty.
#pragma once

#include "core/module_start.h"
#include "tests/proofs/scenarios.h"
#include "tests/siblings/guardkit/journal_fixture.h"
#include "tests/support/fake_siblings.h"

namespace smh::test {

// Starts the module when it is made first; checkpoints are on.
class UndoWorld {
 public:
  static UndoWorld& Instance() {
    static UndoWorld world;
    return world;
  }

  const Guardkit& Service() const noexcept { return guardkit_; }
  void UseCheckpoints(bool use) { settings_.useCheckpoints = use; }
  // Undoes everything, the newest checkpoint first; how many there were. A refusal is a failed test.
  int UndoAll() const {
    for (int count = 0;; ++count) {
      const UndoAnswer answer = guardkit_.Undo();
      if (answer.result == HRESULT_FROM_WIN32(ERROR_NOT_FOUND)) return count;
      EXPECT_EQ(answer.result, S_OK) << testing::PrintToString(answer.texts);
      if (answer.result != S_OK) return count;
    }
  }

 private:
  UndoWorld() {
    InstallFakeSibling(L"prefkit.dll", ISettings::kId, &settings_);
    StartModule(ModuleSteps());
  }

  Guardkit guardkit_;
  // The services are fetched once per process, so the stand-ins live as long.
  FakeSettings& settings_ = *MakeComObject<FakeSettings>().Detach();
};

}  // namespace smh::test
