// Reading the start-up entries against the floor: times, calls, and the same with every call answered from
// memory; and how the times grow with the number of entries.

#include "benchmarks/bench.h"
#include "benchmarks/floor.h"
#include "benchmarks/memory_machine.h"
#include "benchmarks/sample_entries.h"
#include "benchmarks/sample_shortcuts.h"
#include "benchmarks/system_calls.h"
#include "benchmarks/thread_clock.h"
#include "core/contracts/uDllGlobals.h"
#include "core/module_start.h"
#include "infra/log/uStatisticsLog.h"
#include "model/extended_info.h"
#include "model/image_lists.h"
#include "model/uLocationStartup.h"

#include <span>

namespace smh::bench {
namespace {

constexpr int kPrograms = 40;

constexpr TTypeStartupLocation kRunLocations[] = {sulRegistryUserRun, sulRegistryUserRunOnce,
                                                  sulRegistryCommonRun, sulRegistryCommonRunOnce};
constexpr TTypeStartupLocation kHandlerLocations[] = {sulRegistryAllRegContextMenuHandlers};
constexpr TTypeStartupLocation kFolderLocations[] = {sulFolderUser};

// The module as a host's process has it, with the calls of library and helper counted; lives as long as the
// process.
void RequireModule() {
  static const bool started = [] {
    StartModule(ModuleSteps());
    DLLGlobals::Helper();
    DLLGlobals::FileRater();
    Locations();
    CountSystemCalls({L"basekit.dll"});
    return true;
  }();
  REQUIRE(started);
}

int Count() {
  const ScopedLock lock(Items().Lock());
  return Items().Count();
}

void Forget() {
  const ScopedLock lock(Items().Lock());
  Items().Clear();
  ClearLogLines();
}

// A key that was written a moment ago is read as one that others are writing.
void Settle() {
  Sleep(50);
}

void Read(std::span<const TTypeStartupLocation> locations) {
  for (const TTypeStartupLocation location : locations) FindLocation(location)->ReadItems();
}

// One kind of entry, by both programs.
struct Kind {
  std::string name;
  std::span<const TTypeStartupLocation> locations;
  std::function<void(FloorResult&)> floor;
  int items;
  // Folders, or keys that are there, each root and view by itself.
  int places;
};

void CompareCalls(const Kind& kind) {
  Forget();
  ResetSystemCalls();
  Read(kind.locations);
  const int ours = TotalSystemCalls();
  AddNote(kind.name + ", ours: " + SystemCallList());
  ResetSystemCalls();
  FloorResult result;
  kind.floor(result);
  const int floor = TotalSystemCalls();
  AddNote(kind.name + ", floor: " + SystemCallList());
  REQUIRE(Count() == kind.items);
  REQUIRE(static_cast<int>(result.items.size()) == kind.items);
  // A key is asked for its stamp before and after, and all are looked at once more for what came meanwhile.
  AddRow("calls, " + kind.name + " (reference: floor + 1 per item, 3 per place)", "calls", ours,
         floor + kind.items + 3 * kind.places, 1);
}

void CompareTimes(const Kind& kind, const char* what, int rounds, double goal) {
  const Pair times = Alternate(
      rounds,
      [&] {
        Forget();
        return Microseconds([&] { Read(kind.locations); });
      },
      [&] {
        FloorResult result;
        return Microseconds([&] { kind.floor(result); });
      });
  AddRow(what + kind.name, "us", times.ours, times.reference, goal);
}

// Memory enough for every pass, of which the heap gives nothing back to the system: what it costs to get
// pages from there is not our own work.
class WarmHeap {
 public:
  WarmHeap() {
    constexpr std::size_t kSize = 1'000;
    for (int i = 0; i < 64'000; ++i) blocks_.push_back(std::make_unique<std::byte[]>(kSize));
    for (std::size_t i = 0; i < blocks_.size(); ++i) {
      if (i % 60 != 59) blocks_[i].reset();
    }
  }

 private:
  std::vector<std::unique_ptr<std::byte[]>> blocks_;
};

// Our own work, and letting go of what was read.
void CompareFromMemory(const Kind& kind) {
  const WarmHeap heap;
  const MemoryMachine memory;
  const Pair times = Alternate(
      2,
      [&] {
        return ProcessorMicroseconds([&] {
          Read(kind.locations);
          Forget();
        });
      },
      [&] {
        return ProcessorMicroseconds([&] {
          FloorResult result;
          kind.floor(result);
        });
      });
  AddRow("first pass from memory, " + kind.name, "us", times.ours, times.reference, 5);
}

void Compare(const Kind& kind) {
  Settle();
  const int rounds = kind.items > 5000 ? 3 : 7;
  CompareCalls(kind);
  CompareTimes(kind, "first pass, ", rounds, 1.25);
  CompareFromMemory(kind);
}

TEST_CASE("First pass") {
  RequireModule();
  const Programs programs(kPrograms);
  {
    RunValues values(programs);
    for (const int count : {100, 1'000, 10'000}) {
      values.Fill(count);
      Compare({std::to_string(count) + " Run values", kRunLocations, FloorRunKeys, count, 6});
    }
  }
  {
    const Handlers handlers(programs, 2'000);
    Compare({"2000 handlers", kHandlerLocations,
             [](FloorResult& result) { FloorHandlers(test::kMenusKey, result); }, 2'000, 2});
  }
  const Shortcuts shortcuts(programs, 500);
  const test::StartupPlaces& places = shortcuts.Places();
  const std::vector<std::wstring> folders{places.startup, places.disabled, places.autoruns, places.brisko};
  Compare({"500 shortcuts", kFolderLocations, [&](FloorResult& result) { FloorShortcuts(folders, result); },
           500, static_cast<int>(folders.size())});
}

std::vector<ItemRef> ListedItems() {
  const ScopedLock lock(Items().Lock());
  return Items().Snapshot();
}

TEST_CASE("Extended pass") {
  RequireModule();
  const Programs programs(kPrograms);
  RunValues values(programs);
  values.Fill(1'000);
  FloorResult result;
  FloorRunKeys(result);
  const auto ours = [] {
    Forget();
    DestroyImageLists();
    Read(kRunLocations);
    const std::vector<ItemRef> items = ListedItems();
    LargeImageList();
    return Microseconds([&] {
      ExtendedPass pass(UpcomingDetails(items));
      for (const ItemRef& item : items) item->ReadExtendedInfo(pass);
    });
  };
  ours();
  ResetSystemCalls();
  FloorExtended(result);
  AddNote("extended pass, floor: " + SystemCallList());
  const Pair times = Alternate(5, ours, [&] { return Microseconds([&] { FloorExtended(result); }); });
  AddRow("extended pass, 1000 Run values of 40 files", "us", times.ours, times.reference, 1.15);
}

// What one count of entries costs, in microseconds.
struct Costs {
  double firstPass = 1e12;
  double reread = 1e12;
  double removal = 1e12;
  // The system's part of the two.
  double rereadFloor = 1e12;
  double removalFloor = 1e12;
};

void MeasureOnce(RunValues& values, int count, int round, Costs& best) {
  const auto read = [] { return Microseconds([] { Read(kRunLocations); }); };
  const auto floor = [] { return Microseconds([] { FloorRunKeysAgain(); }); };
  values.Fill(count);
  Forget();
  Settle();
  best.firstPass = std::min(best.firstPass, read());
  values.SetCommand(count / 2, L"C:\\changed" + std::to_wstring(round) + L".exe");
  Settle();
  best.reread = std::min(best.reread, read());
  best.rereadFloor = std::min(best.rereadFloor, floor());
  for (int i = 0; i < count; i += 2) values.Remove(i);
  Settle();
  best.removal = std::min(best.removal, read());
  best.removalFloor = std::min(best.removalFloor, floor());
  REQUIRE(Count() == count / 2);
}

TEST_CASE("Growth") {
  RequireModule();
  const Programs programs(kPrograms);
  RunValues values(programs);
  constexpr int kRounds = 8;
  Costs small;
  Costs large;
  for (int round = 0; round < kRounds; ++round) {
    MeasureOnce(values, 1'000, round, small);
    MeasureOnce(values, 10'000, round, large);
  }
  AddRow("growth 1000 to 10000, first pass", "us", large.firstPass, small.firstPass, 11);
  AddRow("growth 1000 to 10000, re-read after one change", "us", large.reread, small.reread, 11);
  AddRow("growth of the system's part of the re-read", "us", large.rereadFloor, small.rereadFloor, kNoGoal);
  AddRow("growth 1000 to 10000, removal of half", "us", large.removal, small.removal, 11);
  AddRow("growth of the system's part of the removal", "us", large.removalFloor, small.removalFloor, kNoGoal);
}

}  // namespace
}  // namespace smh::bench
