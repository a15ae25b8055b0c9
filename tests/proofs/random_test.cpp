// A thousand random changes, and everything taken back.
#include "infra/runtime/exceptions.h"
#include "model/item_list.h"
#include "tests/proofs/proof_report.h"
#include "tests/proofs/undo_world.h"
#include "tests/support/test_main.h"

#include <random>

namespace smh::test {
namespace {

const std::vector<TTypeStartupLocation> kLocations = {sulRegistryCommonRun,
                                                      sulRegistryUserRun,
                                                      sulRegistryAllRegContextMenuHandlers,
                                                      sulRegistryIEBrowserObjects,
                                                      sulRegistryShellExtApproved,
                                                      sulFolderUser,
                                                      sulFolderCommon};
constexpr TTypeStartupLocation kMovable[] = {sulRegistryCommonRun, sulRegistryUserRun, sulFolderUser,
                                             sulFolderCommon};

class RandomChanges {
 public:
  explicit RandomChanges(unsigned seed) : random_(seed) {}

  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  // One change of one entry. What the locations refuse counts as one: it must leave no trace either.
  void MakeOne() {
    try {
      TryOne();
    } catch (const Exception&) {
      ++refused_;
    }
  }
  int Refused() const noexcept { return refused_; }

 private:
  void TryOne() {
    const std::wstring number = std::to_wstring(++number_);
    const int choice = Below(100);
    if (choice < 14) {
      FindLocation(kMovable[Below(4)])->AddItem(L"New " + number, kProgram + L" /" + number);
      return;
    }
    const ItemRef item = AnyItem();
    if (item == nullptr) return;
    TLocationStartup& location = *FindLocation(item->Location());
    const bool movable = location.CanModify();
    if (choice < 24) {
      location.DeleteItem(item);
    } else if (choice < 40 && movable) {
      location.MoveItem(item, kMovable[Below(4)]);
    } else if (choice < 55 && movable) {
      location.ChangeItemCommand(item, kProgram + L" /" + number);
    } else if (item->IsEnabled()) {
      location.DisableItem(item);
    } else {
      location.EnableItem(item);
    }
  }

  ItemRef AnyItem() {
    ScopedLock lock(Items().Lock());
    const std::vector<ItemRef> items = Items().Snapshot();
    return items.empty() ? nullptr : items[static_cast<std::size_t>(Below(static_cast<int>(items.size())))];
  }

  std::mt19937 random_;
  int number_ = 0;
  int refused_ = 0;
};

void ArrangeEverything(ProofWorld& world) {
  for (const wchar_t* name : {L"one", L"two", L"three", L"four"}) {
    world.Put(HKEY_LOCAL_MACHINE, kRunKey, name, ExpandSz(kProgram + L" /" + name));
    world.Put(HKEY_LOCAL_MACHINE, kRunKey, std::wstring(L"plain ") + name, Sz(kProgram), Views::kPlain);
    world.Put(HKEY_LOCAL_MACHINE, kRunSide, std::wstring(L"off ") + name, Sz(kProgram), Views::kOwn);
    world.Put(HKEY_CURRENT_USER, kRunKey, name, Sz(kProgram + L" /user"));
    world.Put(HKEY_LOCAL_MACHINE, kMenusKey + L"\\" + name, L"", Sz(kServedClass));
    world.Put(HKEY_LOCAL_MACHINE, kMenusKey + L"\\" + name + L"\\below", L"v", Binary("bytes"));
    world.PutShortcut(world.User().startup + name + L".lnk", name);
    world.PutShortcut(world.Common().disabled + name + L" too.lnk", name);
    WriteFileBytes(world.User().startup + name + L".exe", "not much of a program");
  }
  world.Put(HKEY_CURRENT_USER, kRunKey, L"number", Dword(7));
  world.Put(HKEY_LOCAL_MACHINE, kObjectsKey + L"\\" + kServedClass, L"", Sz(L"object"));
  world.Put(HKEY_LOCAL_MACHINE, kApprovedKey, kServedClass, ExpandSz(L"approved"));
}

TEST(Random, AThousandChangesAndTheirUndoLeaveNoTrace) {
  constexpr int kChanges = 1'000;
  UndoWorld& undo = UndoWorld::Instance();
  undo.UseCheckpoints(true);
  for (int round = 0; round < (ProofStride() == 1 ? 10 : 1); ++round) {
    const unsigned seed = 4711u + static_cast<unsigned>(round);
    SCOPED_TRACE("seed " + std::to_string(seed));
    ProofWorld world;
    ArrangeEverything(world);
    ReloadedEntries(kLocations);
    ClearJournal();
    const std::string before = world.Everything();
    RandomChanges changes(seed);
    for (int made = 0; made < kChanges;) {
      // Several changes in one checkpoint; most of what a day brings.
      ASSERT_EQ(undo.Service().Begin(L"random"), ERROR_SUCCESS);
      for (int left = 1 + changes.Below(40); left > 0 && made < kChanges; --left, ++made) changes.MakeOne();
      ASSERT_EQ(undo.Service().End(), ERROR_SUCCESS);
      ASSERT_EQ(ReadAndList(kLocations), ReloadedEntries(kLocations)) << "after " << made;
    }
    EXPECT_LT(changes.Refused(), kChanges / 4);
    ASSERT_NE(world.Everything(), before);
    EXPECT_GT(undo.UndoAll(), kChanges / 40);
    EXPECT_EQ(world.Everything(), before);
    ProofReport::Count("thousand random changes", "undone");
  }
  ClearJournal();
}

constexpr int kWorkers = 2;

std::wstring WorkerName(const std::wstring& worker) {
  return L"Worker " + worker + L' ';
}

// Another command, or switched without one. Refused while the other process has the shortcut open.
void ChangeSomehow(const ItemRef& item, const std::wstring& command) {
  TLocationStartup& location = *FindLocation(item->Location());
  try {
    if (!command.empty()) {
      location.ChangeItemCommand(item, command);
    } else if (item->IsEnabled()) {
      location.DisableItem(item);
    } else {
      location.EnableItem(item);
    }
  } catch (const EOSError& error) {
    if (error.Code() != ERROR_SHARING_VIOLATION) throw;
  }
}

// Changes its own entries again and again, and takes back some of it each time, and all of it in the end.
SMH_CHILD(ProofWorker) {
  const std::wstring name = WorkerName(arguments[0]);
  UndoWorld& undo = UndoWorld::Instance();
  RandomChanges random(static_cast<unsigned>(std::stoi(arguments[0])));
  const auto undoNewest = [&](int limit) {
    std::vector<ListedCheckpoint> list = undo.Service().List();
    for (auto row = list.rbegin(); row != list.rend() && limit > 0; ++row) {
      if (row->state != CheckpointState::kDone || row->undoes != 0 ||
          row->title.find(name) == row->title.npos)
        continue;
      if (undo.Service().Undo(row->id).result != S_OK) return false;
      --limit;
    }
    return true;
  };
  for (int round = 0; round < 8; ++round) {
    ReloadedEntries({sulRegistryCommonRun, sulFolderUser});
    std::vector<ItemRef> items;
    {
      ScopedLock lock(Items().Lock());
      items = Items().Snapshot();
    }
    for (const ItemRef& item : items) {
      if (std::wstring_view(item->GivenText()).find(name) == std::wstring::npos) continue;
      ChangeSomehow(item, random.Below(3) == 0 ? kProgram + L" /" + std::to_wstring(round) : L"");
    }
    if (!undoNewest(2)) return 2;
  }
  return undoNewest(1'000) ? 0 : 3;
}

TEST(Random, TwoProcessesChangeAndUndoAtTheSameTime) {
  UndoWorld::Instance();
  ProofWorld world;
  ClearJournal();
  // Both use the side key: whose undo would find it empty depends on their order.
  world.Put(HKEY_LOCAL_MACHINE, kRunSide, L"other", Sz(kProgram));
  for (int worker = 1; worker <= kWorkers; ++worker) {
    for (const wchar_t* entry : {L"a", L"b"}) {
      const std::wstring name = WorkerName(std::to_wstring(worker)) + entry;
      world.Put(HKEY_LOCAL_MACHINE, kRunKey, name, ExpandSz(kProgram));
      world.PutShortcut(world.User().startup + name + L".lnk", L"/old");
    }
  }
  const std::string before = world.Everything();
  std::vector<std::unique_ptr<ChildProcess>> workers;
  for (int worker = 1; worker <= kWorkers; ++worker) {
    workers.push_back(std::make_unique<ChildProcess>(
        ThisProgram(), std::vector<std::wstring>{L"--child=ProofWorker", std::to_wstring(worker)}));
  }
  for (const auto& worker : workers) {
    const ChildResult result = worker->Finish();
    EXPECT_EQ(result.exitCode, 0u) << result.output;
  }
  EXPECT_EQ(world.Everything(), before);
  EXPECT_GT(UndoWorld::Instance().Service().List().size(), 30u);
  ProofReport::Count("processes at the same time", "undone");
  ClearJournal();
}

}  // namespace
}  // namespace smh::test
