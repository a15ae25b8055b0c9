// How changes of keys are noticed, of those too that are not there, go and come back.
#include "locations/registry/key_watch.h"
#include "tests/support/import_patch.h"
#include "tests/support/module_fixture.h"
#include "tests/support/process_counts.h"
#include "tests/support/registry_fixture.h"

namespace smh::test {
namespace {

int waits = 0;
int otherCalls = 0;
// A key that nobody may open; none when empty.
std::wstring blocked;

DWORD WINAPI Wait(DWORD count, const HANDLE* handles, BOOL all, DWORD limit) {
  ++waits;
  return RealFunction<decltype(WaitForMultipleObjects)>(L"kernel32.dll", "WaitForMultipleObjects")(
      count, handles, all, limit);
}
LSTATUS WINAPI Open(HKEY key, LPCWSTR name, DWORD options, REGSAM access, PHKEY result) {
  ++otherCalls;
  if (!blocked.empty() && name == blocked) return ERROR_ACCESS_DENIED;
  return RealFunction<decltype(RegOpenKeyExW)>(L"advapi32.dll", "RegOpenKeyExW")(key, name, options, access,
                                                                                 result);
}

// A key of its own, three levels below one that is always there.
class KeyWatchTest : public ModuleTest {
 protected:
  bool TakeChange() {
    const bool isDue = watch.IsDue();
    EXPECT_EQ(watch.IsDue(), isDue) << "asking takes nothing";
    watch.Accept();
    EXPECT_FALSE(watch.IsDue());
    return isDue;
  }
  void Set(const std::wstring& sub) { tree.Set(sub, L"v", Dword(++values)); }
  bool IsWatched() {
    Set(L"a\\b\\c");
    const bool isSeen = TakeChange();
    Set(L"a\\b\\c\\d\\e");
    return TakeChange() && isSeen;
  }
  void Delete(const std::wstring& sub) const { DeleteKeyTree(HKEY_CURRENT_USER, tree.PathOf(sub)); }

  const RegistryTree tree{L"Software\\Startup Manager Watch Test"};
  const std::vector<WatchedKey> keys{{HKEY_CURRENT_USER, tree.PathOf(L"a\\b\\c")}};
  DWORD values = 0;
  KeyWatch watch{keys};
};

TEST_F(KeyWatchTest, AMissingKeyIsNoticedHoweverMuchOfItsPathIsMissing) {
  for (const wchar_t* above : {L"a", L"a\\other", L"a\\b", L"a\\b\\c2\\c"}) {
    Set(above);
    EXPECT_FALSE(TakeChange()) << "not the key itself";
  }
  tree.Key(L"a\\b\\c");
  EXPECT_TRUE(TakeChange());
  EXPECT_TRUE(IsWatched());
}

TEST_F(KeyWatchTest, AKeyThatGoesOrIsMadeAgainWithAnyAboveItIsWatchedAgain) {
  for (const std::wstring level : {L"a\\b\\c", L"a\\b", L"a"}) {
    for (const bool isSeenGone : {true, false}) {
      Set(L"a\\b\\c");
      EXPECT_TRUE(TakeChange());
      Delete(level);
      if (isSeenGone) {
        EXPECT_TRUE(TakeChange());
        // Some more of what is above.
        Delete(level == L"a" ? L"a" : level.substr(0, level.size() - 2));
        EXPECT_FALSE(TakeChange());
      }
      Set(L"a\\b\\c");
      EXPECT_TRUE(TakeChange()) << isSeenGone;
      EXPECT_TRUE(IsWatched()) << isSeenGone;
    }
    Delete(L"a");
    EXPECT_TRUE(TakeChange());
  }
}

TEST_F(KeyWatchTest, AnIdlePollIsOneWaitAndKeysAboveAreSharedByAll) {
  Set(L"a\\b\\c");
  Set(L"a\\b\\c2");
  const int views = HasTwoViews() ? 2 : 1;
  std::vector<WatchedKey> more = keys;
  for (const wchar_t* sub : {L"a\\b\\c\\d", L"a\\b\\c2"}) more.push_back({keys[0].root, tree.PathOf(sub)});
  const int handles = HandleCount();
  KeyWatch second(more);
  EXPECT_EQ(HandleCount() - handles, 2 * 2 * views) << "for two keys; the third is below one of them";
  TakeChange();
  second.Accept();
  {
    const ImportPatch wait("WaitForMultipleObjects", &Wait);
    const ImportPatch open("RegOpenKeyExW", &Open);
    EXPECT_FALSE(second.IsDue());
    EXPECT_EQ(waits, 1);
    EXPECT_EQ(otherCalls, 0);
  }
  // What one has taken from a key above, the other is told as well.
  Delete(L"a");
  EXPECT_TRUE(TakeChange());
  EXPECT_TRUE(second.IsDue());
  Set(L"a\\b\\c");
  EXPECT_TRUE(TakeChange());
  second.Accept();
  EXPECT_TRUE(IsWatched());
  EXPECT_TRUE(second.IsDue());
}

TEST_F(KeyWatchTest, AKeyThatCannotBeOpenedForAMomentIsWatchedAgain) {
  const ImportPatch open("RegOpenKeyExW", &Open);
  Set(L"a\\b\\c");
  EXPECT_TRUE(TakeChange());
  blocked = tree.PathOf(L"a\\b\\c");
  Set(L"a\\b\\c");
  EXPECT_TRUE(TakeChange());
  Set(L"a\\b\\c");
  EXPECT_FALSE(TakeChange()) << "seen by nobody";
  blocked.clear();
  EXPECT_TRUE(TakeChange());
  EXPECT_TRUE(IsWatched());

  blocked = tree.PathOf(L"a\\b");
  tree.Key(L"a\\b\\other");
  TakeChange();
  blocked.clear();
  TakeChange();
  Delete(L"a\\b\\c");
  EXPECT_TRUE(TakeChange());
  tree.Key(L"a\\b\\c");
  EXPECT_TRUE(TakeChange()) << "told by the one above";
}

TEST_F(KeyWatchTest, MoreKeysThanOneWaitTakesAreWatched) {
  std::vector<WatchedKey> many;
  const auto name = [](int i) { return L"k" + std::to_wstring(i); };
  for (int i = 0; i < 70; ++i) many.push_back({HKEY_CURRENT_USER, tree.PathOf(name(i))});
  watch = KeyWatch(many);
  for (const int i : {0, 69}) {
    Set(name(i));
    EXPECT_TRUE(TakeChange()) << "made";
    Set(name(i));
    EXPECT_TRUE(TakeChange()) << "changed";
  }
}

TEST_F(KeyWatchTest, EveryRegistryLocationNoticesItsKeysComeAndGo) {
  int locations = 0;
  for (const LocationRow& row : kLocationTable) {
    if (row.family == LocationFamily::kNone || row.family == LocationFamily::kStartupFolder) continue;
    ++locations;
    SCOPED_TRACE(row.location);
    const std::wstring path(row.place);
    const EmptiedKeys emptied({path});
    TLocationStartup& location = *FindLocation(row.location);
    const auto isNoticed = [&] {
      const bool isChanged = location.IsChanged();
      location.ReadItems();
      return isChanged;
    };
    while (isNoticed()) {
    }
    for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
      if (row.root == (root == HKEY_CURRENT_USER ? LocationRoot::kMachine : LocationRoot::kUser)) continue;
      for (const REGSAM view : {REGSAM(0), OwnView()}) {
        for (const bool isAgain : {false, true}) {
          if (isAgain) DeleteKeyTree(root, path, view);
          EXPECT_EQ(isNoticed(), isAgain);
          MakeKey(root, path, view);
          EXPECT_TRUE(isNoticed());
        }
        DeleteKeyTree(root, path, view);
        EXPECT_TRUE(isNoticed());
      }
    }
  }
  EXPECT_EQ(locations, 37);
}

}  // namespace
}  // namespace smh::test
