// The disk is full from some write on: the change is made, or taken back without room, and nothing counts as
// interrupted or is left to an undo that is refused.
#include "tests/proofs/proof_report.h"
#include "tests/proofs/undo_world.h"
#include "tests/support/import_patch.h"

#include <array>
#include <tuple>

namespace smh::test {
namespace {

// What needs room; and what it answers without.
struct Need {
  const char* name;
  bool isStatus;
  void* hook;
  void* original = nullptr;
};
enum { kWrite, kCopy, kMakeFolder, kFlushKey, kNeeds };
extern std::array<Need, kNeeds> g_needs;

struct FullDisk {
  DWORD thread = 0;
  int room = 0;
  bool isFull = false;
};
FullDisk g_disk;

// Whether it needs none: it goes over what is in the file.
template <int kNeed, typename... Arguments>
bool HasRoom(Arguments... arguments) noexcept {
  if constexpr (kNeed != kWrite) {
    return false;
  } else {
    const auto& [file, data, size, written, overlapped] = std::tie(arguments...);
    LARGE_INTEGER place = {};
    LARGE_INTEGER end = {};
    return SetFilePointerEx(file, {}, &place, FILE_CURRENT) != FALSE && GetFileSizeEx(file, &end) != FALSE &&
           place.QuadPart + LONGLONG{size} <= end.QuadPart;
  }
}

template <int kNeed, typename Function>
struct Hook;

template <int kNeed, typename Result, typename... Arguments>
struct Hook<kNeed, Result(WINAPI*)(Arguments...)> {
  static Result WINAPI Call(Arguments... arguments) {
    const Need& need = g_needs[kNeed];
    if (g_disk.thread != GetCurrentThreadId() || HasRoom<kNeed>(arguments...) || g_disk.room-- > 0) {
      return reinterpret_cast<Result(WINAPI*)(Arguments...)>(need.original)(arguments...);
    }
    g_disk.isFull = true;
    SetLastError(ERROR_DISK_FULL);
    return static_cast<Result>(need.isStatus ? ERROR_DISK_FULL : FALSE);
  }
};

template <int kNeed, typename Function>
void* HookOf(Function*) noexcept {
  return reinterpret_cast<void*>(&Hook<kNeed, Function*>::Call);
}

std::array<Need, kNeeds> g_needs = {{{"WriteFile", false, HookOf<kWrite>(&WriteFile)},
                                     {"CopyFileW", false, HookOf<kCopy>(&CopyFileW)},
                                     {"CreateDirectoryW", false, HookOf<kMakeFolder>(&CreateDirectoryW)},
                                     {"RegFlushKey", true, HookOf<kFlushKey>(&RegFlushKey)}}};

class FullDiskTest : public ::testing::Test {
 protected:
  FullDiskTest() {
    undo_.UseCheckpoints(true);
    for (const HMODULE module : {HMODULE{nullptr}, undo_.Service().Module()}) {
      for (Need& need : g_needs) {
        auto patch = ImportPatch::IfImported(module, need.name, need.hook);
        if (!patch) continue;
        need.original = patch->Original();
        patches_.push_back(std::move(patch));
      }
    }
  }
  ~FullDiskTest() override { ClearJournal(); }

  // Whether the disk was full before the change came to its end.
  bool ChangeWithRoomFor(const Scenario& scenario, int room) {
    world_.Clear();
    ClearJournal();
    scenario.Arrange(world_);
    const std::string before = world_.Everything();
    const ItemRef item = LoadEntry(scenario);
    bool isDone = false;
    g_disk = {GetCurrentThreadId(), room};
    try {
      isDone = Perform(scenario, item).text.empty();
    } catch (const std::exception&) {
      // Nothing was changed then.
    }
    g_disk.thread = 0;
    const bool isChanged = world_.Everything() != before;
    EXPECT_EQ(isChanged, isDone);
    EXPECT_TRUE(undo_.Service().List(true).empty());
    EXPECT_EQ(undo_.UndoAll(), isChanged ? 1 : 0);
    EXPECT_EQ(world_.Everything(), before);
    return g_disk.isFull;
  }

  UndoWorld& undo_ = UndoWorld::Instance();
  ProofWorld world_;
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

TEST_F(FullDiskTest, LeavesNothingInterruptedAndNothingThatUndoRefuses) {
  int index = 0;
  for (const Scenario& scenario : Scenarios()) {
    if (scenario.isVariant && ProofStride() != 1) continue;
    SCOPED_TRACE(scenario.name);
    for (int room = index++ % ProofStride();; room += ProofStride()) {
      SCOPED_TRACE("room for " + std::to_string(room));
      if (!ChangeWithRoomFor(scenario, room)) break;
      ProofReport::Count(scenario.name, "full disk");
    }
  }
}

}  // namespace
}  // namespace smh::test
