// Who waits for a change, and how long: through the boundary, with changes that something slow holds up.
#include "core/contracts/intf_safeguard.h"
#include "infra/runtime/scoped_com.h"
#include "samples/link_builder.h"
#include "tests/core/boundary_fixture.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/import_patch.h"
#include "tests/support/probe_window.h"
#include "tests/support/test_main.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <map>
#include <thread>

namespace smh::test {
namespace {

const bool g_isLong = std::getenv("SMH_LONG_PROOFS") != nullptr;

// A change on a thread of its own, held up for a while where a patched import says so, once.
class HeldChange {
 public:
  HeldChange(DWORD milliseconds, std::function<HRESULT()> change) {
    s_isHolding = false;
    thread_ = std::thread([this, milliseconds, change = std::move(change)] {
      s_milliseconds = milliseconds;
      s_thread = GetCurrentThreadId();
      EXPECT_EQ(change(), S_OK);
      s_thread = 0;
      isDone_ = true;
    });
  }
  ~HeldChange() { thread_.join(); }
  HeldChange(const HeldChange&) = delete;
  HeldChange& operator=(const HeldChange&) = delete;

  bool IsDone() const { return isDone_; }
  static bool WaitUntilHeld() {
    return WaitUntil([] { return s_isHolding.load(); });
  }
  // For the import.
  static void Hold() {
    DWORD caller = GetCurrentThreadId();
    if (!s_thread.compare_exchange_strong(caller, 0)) return;
    s_isHolding = true;
    Sleep(s_milliseconds);
  }

 private:
  static inline std::atomic<DWORD> s_thread{0};
  static inline std::atomic<DWORD> s_milliseconds{0};
  static inline std::atomic<bool> s_isHolding{false};

  std::atomic<bool> isDone_{false};
  std::thread thread_;
};

LSTATUS WINAPI SlowSetValue(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                            DWORD size) {
  HeldChange::Hold();
  return RegSetValueExW(key, name, reserved, type, data, size);
}

LSTATUS WINAPI SlowDeleteValue(HKEY key, const wchar_t* name) {
  HeldChange::Hold();
  return RegDeleteValueW(key, name);
}

DWORD WINAPI SlowVersionSize(const wchar_t* file, DWORD* unused) {
  HeldChange::Hold();
  return RealFunction<decltype(GetFileVersionInfoSizeW)>(L"version.dll", "GetFileVersionInfoSizeW")(file,
                                                                                                    unused);
}

// Holds the journal for so many milliseconds, from when it has said so.
SMH_CHILD(JournalHolder) {
  const SiblingLibrary guardkit(L"guardkit.dll");
  ISafeguard& safeguard = *guardkit.Service<ISafeguard>();
  if (safeguard.BeginCheckpoint(L"held") != ERROR_SUCCESS) return 1;
  std::printf("held\n");
  std::fflush(stdout);
  Sleep(static_cast<DWORD>(std::stoi(arguments[0])));
  return safeguard.EndCheckpoint() == ERROR_SUCCESS ? 0 : 2;
}

// Whether changes are recorded, for the length of a test.
class RecordingSwitch {
 public:
  explicit RecordingSwitch(bool isOn) {
    SetValue(HKEY_CURRENT_USER, kKey, L"UseCheckpoints", Dword(isOn ? 1 : 0));
  }

 private:
  inline static const std::wstring kKey =
      L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe";
  const SavedKey saved_{HKEY_CURRENT_USER, kKey};
};

// The longest that each slot took, in milliseconds.
using Longest = std::map<std::string, double>;

void Time(Longest& longest, const char* slot, const std::function<void()>& call) {
  longest[slot] = std::max(longest[slot], Milliseconds(call));
}

enum class Slow { kHelper, kWriting, kDeleting, kJournal };

struct SlowChange {
  const char* name;
  Slow slow;
  HRESULT (*change)(const RawCollection& items, const RawItem& item, const SampleProgram& sample);
};

HRESULT Add(const RawCollection& items, const RawItem&, const SampleProgram& sample) {
  return items.AddItem(kUserRun, L"Added", sample.Path().c_str()) >= 0 ? S_OK : E_FAIL;
}
HRESULT Change(const RawCollection&, const RawItem& item, const SampleProgram& sample) {
  return item.ChangeCommand(sample.Path().c_str());
}
HRESULT Move(const RawCollection&, const RawItem& item, const SampleProgram&) {
  return item.MoveTo(kCommonRun);
}
HRESULT Disable(const RawCollection&, const RawItem& item, const SampleProgram&) {
  return item.Disable();
}
HRESULT Delete(const RawCollection&, const RawItem& item, const SampleProgram&) {
  return item.Delete();
}

const SlowChange kSlowChanges[] = {
    {"AddItem, helper", Slow::kHelper, Add},
    {"ChangeCommand, helper", Slow::kHelper, Change},
    {"AddItem, writing", Slow::kWriting, Add},
    {"ChangeCommand, writing", Slow::kWriting, Change},
    {"MoveTo, writing", Slow::kWriting, Move},
    {"Disable, writing", Slow::kWriting, Disable},
    {"Delete, deleting", Slow::kDeleting, Delete},
    {"Disable, deleting", Slow::kDeleting, Disable},
    {"ChangeCommand, journal", Slow::kJournal, Change},
    {"Delete, journal", Slow::kJournal, Delete},
};

class WaitingTest : public BoundaryTest, public testing::WithParamInterface<SlowChange> {
 protected:
  static DWORD HoldUp() {
    if (GetParam().slow == Slow::kJournal) return g_isLong ? 9'000 : 2'500;
    return g_isLong ? 4'000 : 1'500;
  }

  // Every slot that neither changes nor starts anything, again and again while `isOn`. The reader is stopped
  // when it has nothing to do: what it is at is no change's doing.
  Longest TimeSlots(const RawItem& changed, const RawItem& other, const std::function<bool()>& isOn) {
    Longest longest;
    while (isOn()) {
      Time(longest, "GetCount", [&] { items.GetCount(); });
      Time(longest, "GetReadState", [&] { items.GetReadState(); });
      Time(longest, "ShowAllLocations", [&] { items.SetShowAllLocations(items.GetShowAllLocations()); });
      Time(longest, "image lists", [&] {
        items.GetSmallImageList();
        items.GetLargeImageList();
      });
      Time(longest, "Lock", [&] {
        items.Lock();
        items.Unlock();
      });
      for (const RawItem* const item : {&changed, &other}) TimeItem(longest, *item);
      if (items.GetReadState() != 2) continue;
      Time(longest, "Stop", [&] { EXPECT_EQ(items.Stop(), S_OK); });
      Time(longest, "Refresh", [&] { EXPECT_EQ(items.Refresh(), S_OK); });
    }
    EXPECT_TRUE(longest.contains("Refresh")) << "the reader waits for the change";
    return longest;
  }

  void TimeItem(Longest& longest, const RawItem& item) const {
    Time(longest, "GetItem", [&] { items.Item(item.GetIndex()); });
    Time(longest, "GetIndex", [&] { item.GetIndex(); });
    Time(longest, "GetLocation", [&] { item.GetLocation(); });
    Time(longest, "GetName", [&] { item.Name(); });
    Time(longest, "GetImageIndex", [&] { item.GetImageIndex(); });
    Time(longest, "GetProperty", [&] { item.PropertyText(4); });
    Time(longest, "CanDo", [&] { item.CanDo(0); });
    Time(longest, "CanMoveTo", [&] { item.CanMoveTo(kCommonRunOnce); });
    // Refused: the file of neither exists.
    Time(longest, "ShowFileDetails", [&] { item.ShowFileDetails(nullptr); });
    TakeErrorInfo();
  }

  // One change, held up, with the slots timed meanwhile.
  Longest TimeOnce() {
    const SampleProgram sample;
    SetUserRun(L"Changed", L"C:\\no such folder\\changed.exe");
    SetUserRun(L"Other", L"C:\\no such folder\\other.exe");
    Read();
    const RawItem changed = FindUserRun(L"Changed");
    const RawItem other = FindUserRun(L"Other");
    std::unique_ptr<ChildProcess> holder;
    if (GetParam().slow == Slow::kJournal) {
      holder = std::make_unique<ChildProcess>(
          ThisProgram(), std::vector<std::wstring>{L"--child=JournalHolder", std::to_wstring(HoldUp())});
      EXPECT_TRUE(WaitUntil([&] { return holder->Output().find("held") != std::string::npos; }));
    }
    // What they take by themselves is no change's doing: stopping the reader is a wait for its thread.
    const ULONGLONG alone = GetTickCount64() + 500;
    Longest own = TimeSlots(changed, other, [&] { return GetTickCount64() < alone; });
    Longest longest;
    const ULONGLONG begin = GetTickCount64();
    {
      const HeldChange change(HoldUp(), [&] { return GetParam().change(items, changed, sample); });
      EXPECT_TRUE(holder != nullptr || HeldChange::WaitUntilHeld());
      longest = TimeSlots(changed, other, [&] { return !change.IsDone(); });
    }
    EXPECT_GE(GetTickCount64() - begin + 500, HoldUp());
    if (holder != nullptr) {
      ExpectEnd(holder->Finish(), 0);
    }
    EXPECT_EQ(items.Stop(), S_OK);
    EmptyRunKeys();
    for (auto& [slot, took] : longest) took -= own[slot];
    return longest;
  }

  static std::unique_ptr<ImportPatch> PatchFor(Slow slow) {
    const HMODULE library = Library().Module();
    switch (slow) {
      case Slow::kHelper:
        return std::make_unique<ImportPatch>("GetFileVersionInfoSizeW", SlowVersionSize,
                                             GetModuleHandleW(L"basekit.dll"));
      case Slow::kWriting:
        return std::make_unique<ImportPatch>("RegSetValueExW", SlowSetValue, library);
      case Slow::kDeleting:
        return std::make_unique<ImportPatch>("RegDeleteValueW", SlowDeleteValue, library);
      default:
        return nullptr;
    }
  }

  const RecordingSwitch recording_{GetParam().slow == Slow::kJournal};
  const std::unique_ptr<ImportPatch> patch_ = PatchFor(GetParam().slow);
};

TEST_P(WaitingTest, NoSlotButAChangeWaitsForOne) {
  constexpr double kLimit = 50;
  Longest least;
  const auto isQuick = [&] {
    return std::ranges::all_of(least, [](const auto& slot) { return slot.second < kLimit; });
  };
  // What waits for the change does so every time; a busy machine holds up now this slot, now that.
  for (int attempt = 0; attempt < 10 && (attempt == 0 || !isQuick()); ++attempt) {
    for (const auto& [slot, took] : TimeOnce()) {
      least[slot] = least.contains(slot) ? std::min(least[slot], took) : took;
    }
  }
  for (const auto& [slot, took] : least) EXPECT_LT(took, kLimit) << slot;
  const auto longest = std::ranges::max_element(least, {}, [](const auto& slot) { return slot.second; });
  std::printf("longest: %s, %.1f ms\n", longest->first.c_str(), longest->second);
}

INSTANTIATE_TEST_SUITE_P(All, WaitingTest, testing::ValuesIn(kSlowChanges), [](const auto& row) {
  std::string name = row.param.name;
  std::erase_if(name, [](char unit) { return unit == ',' || unit == ' '; });
  return name;
});

class TurnsTest : public BoundaryTest {
 protected:
  // What it should be answers S_OK to the end.
  void AddSwitchDelete(const std::wstring& name) const {
    EXPECT_GE(items.AddItem(kUserRun, name.c_str(), sample_.Path().c_str()), 0);
    const RawItem item = FindUserRun(name);
    EXPECT_EQ(item.Disable(), S_OK);
    EXPECT_EQ(item.Enable(), S_OK);
    EXPECT_EQ(item.Delete(), S_OK);
  }

  const SampleProgram sample_;
  const RecordingSwitch recording_{false};
};

TEST_F(TurnsTest, OneThatHoldsTheListAndOthersThatDoNotChangeByTurns) {
  const ULONGLONG end = GetTickCount64() + (g_isLong ? 30'000 : 3'000);
  Read();
  std::atomic<int> held{0};
  std::atomic<int> plain{0};
  std::thread holding([&] {
    while (GetTickCount64() < end) {
      for (int depth = 0; depth < 3; ++depth) EXPECT_EQ(items.Lock(), S_OK);
      AddSwitchDelete(L"Held");
      for (int depth = 0; depth < 3; ++depth) EXPECT_EQ(items.Unlock(), S_OK);
      EXPECT_EQ(items.Unlock(), E_UNEXPECTED) << "held as often as before";
      ++held;
    }
  });
  std::thread other([&] {
    for (; GetTickCount64() < end; ++plain) AddSwitchDelete(L"Plain");
  });
  while (GetTickCount64() < end) {
    EXPECT_EQ(items.Stop(), S_OK);
    EXPECT_EQ(items.Refresh(), S_OK);
    Sleep(50);
  }
  holding.join();
  other.join();
  std::printf("rounds: %d holding the list, %d not\n", held.load(), plain.load());
  EXPECT_GT(held, 5);
  EXPECT_GT(plain, 5);
  EXPECT_TRUE(Values(HKEY_CURRENT_USER, kRunKey).empty());
  EXPECT_TRUE(Values(HKEY_CURRENT_USER, kRunSide).empty());
}

TEST_F(TurnsTest, AnApartmentThatWaitsDispatchesAndRefusesWhatReenters) {
  const ImportPatch slow("RegSetValueExW", SlowSetValue, Library().Module());
  SetUserRun(L"Mine", sample_.Path());
  SetUserRun(L"Theirs", sample_.Path());
  Read();
  const RawItem mine = FindUserRun(L"Mine");
  const RawItem theirs = FindUserRun(L"Theirs");
  std::optional<HeldChange> change(std::in_place, 1'000, [&] { return theirs.Disable(); });
  ASSERT_TRUE(HeldChange::WaitUntilHeld());
  std::thread apartment([&] {
    const ScopedCom com(COINIT_APARTMENTTHREADED);
    int calls = 0;
    const ProbeWindow window([&] {
      ++calls;
      const auto isRefused = [](HRESULT result) {
        const std::optional<ErrorInfo> info = TakeErrorInfo();
        EXPECT_EQ(result, E_UNEXPECTED);
        ASSERT_TRUE(info.has_value());
        EXPECT_EQ(info->description, L"A call of this thread is under way already.");
      };
      isRefused(items.Stop());
      isRefused(items.Refresh());
      isRefused(mine.Delete());
      isRefused(mine.MoveTo(kCommonRun));
      isRefused(items.AddItem(kUserRun, L"Late", L"C:\\late.exe") == -1 ? E_UNEXPECTED : S_OK);
      EXPECT_EQ(mine.GetIndex(), FindUserRun(L"Mine").GetIndex()) << "looking is free";
    });
    window.Post();
    window.Post();
    EXPECT_EQ(mine.Disable(), S_OK);
    EXPECT_EQ(calls, 2) << "dispatched while it waited";
    EXPECT_EQ(items.Stop(), S_OK) << "free again";
  });
  apartment.join();
  change.reset();
  EXPECT_EQ(Values(HKEY_CURRENT_USER, kRunSide).size(), 2u);
}

// "0123456789abcdef" as the class of an item in an ID list.
constexpr wchar_t kHostsClass[] = L"{33323130-3534-3736-3839-616263646566}";
DWORD g_classThread = 0;

}  // namespace

// This program as the server of a class: asked for it, it has none, but tells where it was asked.
extern "C" HRESULT WINAPI GetHostsClass(const GUID&, const GUID&, void** object) {
  g_classThread = GetCurrentThreadId();
  *object = nullptr;
  return CLASS_E_CLASSNOTAVAILABLE;
}

namespace {

// Stops, or starts anew, while the shell waits on the reader's thread for this one. The exit code is the
// number of the step that went wrong.
SMH_CHILD(StopWhileTheShellNeedsTheCaller) {
  const LoadedLibrary& library = *new LoadedLibrary;
  const RawManager manager = library.Manager();
  const RawCollection items = manager.Items();
  if (items.Refresh() != S_OK) return 1;
  if (WaitUntil([&] { return items.GetReadState() != 0; }, 1'000) || g_classThread != 0) return 2;
  if ((arguments.at(0) == L"Stop" ? items.Stop() : items.Refresh()) != S_OK) return 3;
  if (g_classThread != GetCurrentThreadId()) return 4;
  return items.Stop() == S_OK ? 0 : 5;
}

TEST_F(TurnsTest, AClassThatTheShellMakesInTheCallersApartmentHoldsNothingUp) {
  // Without a threading model it is made in the first apartment of the process.
  const RegistryTree classKey(std::wstring(L"Software\\Classes\\CLSID\\") + kHostsClass, HKEY_LOCAL_MACHINE);
  classKey.Set(L"InprocServer32", L"", Sz(ThisProgram()));
  LinkBuilder link;
  link.idList = IdListOf({"\x1FP0123456789abcdef", "item" + std::string(20, '\0')});
  const TemporaryFolder folder;
  SetUserRun(L"Link", folder.Write(L"x.lnk", link.Build().Text()));
  for (const wchar_t* call : {L"Stop", L"Refresh"}) {
    ExpectEnd(RunChild(L"StopWhileTheShellNeedsTheCaller", {call}, 20'000), 0);
  }
}

}  // namespace
}  // namespace smh::test
