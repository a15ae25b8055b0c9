#include "proofs/undo_world.h"

#include "core/module_start.h"
#include "support/fake_siblings.h"

namespace smh::test {

namespace {

FakeSettings& Settings() {
  // The services are fetched once per process, so the stand-ins live as long.
  static FakeSettings& settings = *MakeComObject<FakeSettings>().Detach();
  return settings;
}

}  // namespace

UndoWorld& UndoWorld::Instance() {
  static UndoWorld world;
  return world;
}

UndoWorld::UndoWorld() {
  InstallFakeSibling(L"prefkit.dll", ISettings::kId, &Settings());
  StartModule(ModuleSteps());
}

void UndoWorld::UseCheckpoints(bool use) {
  Settings().useCheckpoints = use;
}

int UndoWorld::UndoAll() const {
  for (int count = 0;; ++count) {
    const UndoAnswer answer = guardkit_.Undo();
    if (answer.result == HRESULT_FROM_WIN32(ERROR_NOT_FOUND)) return count;
    EXPECT_EQ(answer.result, S_OK) << testing::PrintToString(answer.texts);
    if (answer.result != S_OK) return count;
  }
}

}  // namespace smh::test
