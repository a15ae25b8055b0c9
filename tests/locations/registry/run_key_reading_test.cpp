// Reading while another program writes: what stands there throughout is listed throughout, as the same item.
#include "tests/locations/registry/run_key_fixture.h"
#include "tests/support/child_process.h"
#include "tests/support/import_patch.h"
#include "tests/support/test_main.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <utility>

namespace smh::test {

namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

// Is called with the number of the enumeration and of the step in it, both from 0, before each step.
std::function<void(int, DWORD)> beforeStep;
int enumerations = 0;
// A value that no enumeration shows.
std::wstring hidden;

LSTATUS WINAPI Enumerate(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* reserved, DWORD* type,
                         BYTE* data, DWORD* size) {
  const auto real = RealFunction<decltype(RegEnumValueW)>(L"advapi32.dll", "RegEnumValueW");
  enumerations += index == 0 ? 1 : 0;
  if (beforeStep) beforeStep(enumerations - 1, index);
  const DWORD lengthRoom = *length;
  const DWORD sizeRoom = *size;
  const LSTATUS status = real(key, index, name, length, reserved, type, data, size);
  if (hidden.empty() || status != ERROR_SUCCESS || std::wstring_view(name, *length) < hidden) return status;
  *length = lengthRoom;
  *size = sizeRoom;
  return real(key, index + 1, name, length, reserved, type, data, size);
}

// Is called with the number of the query, from 0, before each for the value "x".
std::function<void(int)> beforeQuery;
int queries = 0;
LSTATUS WINAPI Query(HKEY key, LPCWSTR name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) {
  if (beforeQuery && name == std::wstring_view(L"x")) beforeQuery(queries++);
  return RealFunction<decltype(RegQueryValueExW)>(L"advapi32.dll", "RegQueryValueExW")(key, name, reserved,
                                                                                       type, data, size);
}

// Counts the calls of a function and passes them on.
template <int Number, typename Function>
struct Counter;
template <int Number, typename... Arguments>
struct Counter<Number, LSTATUS WINAPI(Arguments...)> {
  static inline int count = 0;
  static inline LSTATUS(WINAPI* real)(Arguments...) = nullptr;
  static LSTATUS WINAPI Call(Arguments... arguments) {
    ++count;
    return real(arguments...);
  }
  explicit Counter(const char* name) : patch(name, &Call) {
    count = 0;
    real = RealFunction<LSTATUS WINAPI(Arguments...)>(L"advapi32.dll", name);
  }
  const ImportPatch patch;
};

}  // namespace

class RunKeyReadingTest : public RunKeyTest {
 protected:
  RunKeyReadingTest() { enumerations = 0; }
  ~RunKeyReadingTest() override {
    beforeStep = nullptr;
    hidden.clear();
  }
  static void Put(const std::wstring& name, HKEY root = HKEY_CURRENT_USER, REGSAM view = 0) {
    SetValue(root, kRunKey, name, Sz(L"C:\\windows\\notepad.exe"), view);
  }
  // What was written lies behind a step of the clock.
  static void Settle() { Sleep(50); }

  const ImportPatch enumerate_{"RegEnumValueW", Enumerate};
};

TEST_F(RunKeyReadingTest, WhatMovesInAnEnumerationOrIsPassedOverStaysListed) {
  for (const wchar_t* name : {L"a", L"b", L"c"}) Put(name);
  UserRun().ReadItems();
  const std::vector<ItemRef> before = Listed(UserRun());
  ASSERT_EQ(before.size(), 3u);
  const std::vector<ItemRef> stay(before.begin() + 1, before.end());

  // In the midst of each enumeration it comes or goes.
  static bool stands;
  stands = true;
  const auto toggle = [] {
    stands ? RemoveValue(HKEY_CURRENT_USER, kRunKey, L"a") : Put(L"a");
    stands = !stands;
  };
  beforeStep = [toggle](int, DWORD step) {
    if (step == 1) toggle();
  };
  for (int load = 0; load < 4; ++load) {
    UserRun().ReadItems();
    std::vector<ItemRef> listed = Listed(UserRun());
    std::erase_if(listed, [](const ItemRef& item) { return item->GivenText() == L"a"; });
    EXPECT_EQ(listed, stay) << load;
  }
  beforeStep = nullptr;
  if (stands) toggle();
  Settle();
  hidden = L"b";
  UserRun().ReadItems();
  EXPECT_EQ(Listed(UserRun()), stay);
}

TEST_F(RunKeyReadingTest, WhatComesBetweenTheTwoViewsIsShownByTheMainOne) {
  if (!HasTwoViews()) return;
  Put(L"old", HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY);
  Settle();
  beforeStep = [](int number, DWORD step) {
    if (number != 1 || step != 0) return;
    Put(L"new", HKEY_LOCAL_MACHINE);
    Put(L"new", HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY);
  };
  CommonRun().ReadItems();
  EXPECT_THAT(Captions(CommonRun()), ElementsAre(L"old", L"new"));
  EXPECT_THAT(Listed(CommonRun()).back()->Name(), StartsWith(L"(x64)"));
}

// Both views show this key.
TEST_F(RunKeyReadingTest, AValueThatComesAndGoesIsNotListedForBothViews) {
  if (!HasTwoViews()) return;
  const ImportPatch query("RegQueryValueExW", &Query);
  for (const auto& [standsFirst, isFresh] : {std::pair(false, false), {true, false}, {false, true}}) {
    ClearItems();
    Put(L"x");
    UserRun().ReadItems();
    const std::vector<ItemRef> before = Listed(UserRun());
    ASSERT_EQ(before.size(), 1u);
    const auto set = [](bool stands) {
      if (stands) Put(L"x");
      if (!stands) RegDeleteValueW(MakeKey(HKEY_CURRENT_USER, kRunKey).Get(), L"x");
    };
    if (isFresh) ClearItems();
    enumerations = queries = 0;
    // The listings of the main view lack it, those of the plain one do not, and all are disturbed.
    beforeStep = [&](int number, DWORD step) {
      if (step != 0) return;
      set(number >= 3);
      SetValue(HKEY_CURRENT_USER, kRunKey, L"z", Dword(static_cast<DWORD>(number)));
    };
    beforeQuery = [set, first = standsFirst](int number) { set(number == 1 ? !first : number > 1 || first); };
    UserRun().ReadItems();
    beforeStep = nullptr;
    beforeQuery = nullptr;
    RemoveValue(HKEY_CURRENT_USER, kRunKey, L"z");
    std::vector<ItemRef> listed = Listed(UserRun());
    std::erase_if(listed, [](const ItemRef& item) { return item->GivenText() == L"z"; });
    ASSERT_EQ(listed.size(), 1u) << standsFirst;
    EXPECT_EQ(listed.front()->Name(), before.front()->Name());
    EXPECT_EQ(listed == before, !isFresh);
    EXPECT_FALSE(UserRun().IsRetryDue());
  }
}

TEST_F(RunKeyReadingTest, ANameWithAZeroThatADisturbedListingLacksStays) {
  const std::wstring name(L"a\0b", 3);
  const ScopedKey key = MakeKey(HKEY_CURRENT_USER, kRunKey);
  SetCountedValue(key.Get(), name, Sz(L"zero.exe"));
  UserRun().ReadItems();
  const std::vector<ItemRef> before = Listed(UserRun());
  ASSERT_EQ(before.size(), 1u);
  beforeStep = [](int number, DWORD step) {
    if (step == 0) SetValue(HKEY_CURRENT_USER, kRunKey, L"A", Dword(static_cast<DWORD>(number)));
  };
  hidden = name;
  UserRun().ReadItems();
  EXPECT_TRUE(before.front()->IsListed());
  while (UserRun().IsChanged()) {
  }
  beforeStep = nullptr;
  hidden.clear();
  RemoveCountedValue(key.Get(), name);
  Settle();
  UserRun().ReadItems();
  EXPECT_FALSE(before.front()->IsListed());
}

bool isMainBlocked = false;
LSTATUS WINAPI OpenUnlessBlocked(HKEY root, LPCWSTR name, DWORD options, REGSAM access, PHKEY result) {
  const bool isMain = (access & kViewBits) == OwnView() && name == kRunKey;
  if (isMainBlocked && isMain) return ERROR_NO_SYSTEM_RESOURCES;
  return RealFunction<decltype(RegOpenKeyExW)>(L"advapi32.dll", "RegOpenKeyExW")(root, name, options, access,
                                                                                 result);
}

TEST_F(RunKeyReadingTest, AKeyThatCannotBeOpenedForAMomentKeepsItsItems) {
  Put(L"both", HKEY_LOCAL_MACHINE, OwnView());
  Put(L"both", HKEY_LOCAL_MACHINE);
  Settle();
  CommonRun().ReadItems();
  const std::vector<ItemRef> before = Listed(CommonRun());
  ASSERT_EQ(before.size(), 1u);
  {
    const ImportPatch open("RegOpenKeyExW", &OpenUnlessBlocked);
    isMainBlocked = true;
    CommonRun().ReadItems();
    isMainBlocked = false;
  }
  EXPECT_EQ(Listed(CommonRun()), before);
  EXPECT_EQ(before.front()->Twin(), HasTwoViews() ? kTwinSame : kTwinNone);
  EXPECT_TRUE(CommonRun().IsRetryDue());
  CommonRun().ReadItems();
  EXPECT_FALSE(CommonRun().IsRetryDue());
}

TEST_F(RunKeyReadingTest, AValueThatComesBackInOtherLettersIsListedOnce) {
  Put(L"\xE4pp");
  UserRun().ReadItems();
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"\xE4pp");
  Put(L"\xC4pp");
  UserRun().ReadItems();
  EXPECT_THAT(Captions(UserRun()), ElementsAre(L"\xC4pp"));
}

TEST_F(RunKeyReadingTest, AQuietLoadMakesOneCallAnEntryAndOpensAKeyTwice) {
  constexpr int kEntries = 20;
  for (int i = 0; i < kEntries; ++i) Put(std::to_wstring(i));
  UserRun().ReadItems();
  Settle();
  static int steps;
  steps = enumerations = 0;
  beforeStep = [](int, DWORD) { ++steps; };
  const Counter<0, decltype(RegOpenKeyExW)> opened("RegOpenKeyExW");
  const Counter<1, decltype(RegQueryInfoKeyW)> stamped("RegQueryInfoKeyW");
  const Counter<2, decltype(RegQueryValueExW)> asked("RegQueryValueExW");
  UserRun().ReadItems();
  // Its own key and four side keys, of which none is there, in each view.
  const int views = HasTwoViews() ? 2 : 1;
  EXPECT_EQ(opened.count, views * (5 + 1));
  EXPECT_LE(stamped.count, views * 3);
  EXPECT_EQ(asked.count, 0);
  EXPECT_EQ(enumerations, views);
  EXPECT_EQ(steps, views * (kEntries + 1));
}

// Deletes and makes values before all others, in every view, without end.
SMH_CHILD(RunWriter) {
  for (int number = 0;; ++number, Sleep(1)) {
    const std::wstring name = L"a" + std::to_wstring(number / 2 % 10);
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
      const REGSAM view = number % 3 == 0 ? OwnView() : 0;
      const ScopedKey key = MakeKey(root, kRunKey, view);
      const RawValue value = Sz(L"C:\\" + name + L".exe");
      if (number % 2 == 0) {
        RegSetValueExW(key.Get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.bytes.data()),
                       static_cast<DWORD>(value.bytes.size()));
      } else {
        RegDeleteValueW(key.Get(), name.c_str());
      }
    }
  }
}

TEST_F(RunKeyReadingTest, BesideAWriterEveryListHoldsWhatStandsThereThroughoutAsTheSameItems) {
  constexpr int kEntries = 300;
  const int lists = std::getenv("SMH_LONG_PROOFS") != nullptr ? 100 : 10;
  for (int i = 0; i < kEntries; ++i) {
    Put(L"e" + std::to_wstring(1000 + i), i % 2 == 0 ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE, OwnView());
  }
  Settle();
  const auto listed = [this] {
    std::vector<ItemRef> items;
    for (TLocationStartup* const location : {&UserRun(), &CommonRun()}) {
      location->ReadItems();
      std::ranges::copy_if(Listed(*location), std::back_inserter(items), [](const ItemRef& item) {
        return std::wstring_view(item->GivenText()).starts_with(L'e');
      });
    }
    return items;
  };
  const auto names = [](const std::vector<ItemRef>& items) {
    std::vector<std::wstring> texts;
    for (const ItemRef& item : items) texts.push_back(item->Name());
    std::ranges::sort(texts);
    return texts;
  };
  ULONGLONG begin = GetTickCount64();
  std::vector<ItemRef> before = listed();
  const ULONGLONG quiet = GetTickCount64() - begin;
  const std::vector<std::wstring> expected = names(before);
  ASSERT_EQ(expected.size(), std::size_t{kEntries});

  const ChildProcess writer(ThisProgram(), {L"--child=RunWriter"});
  for (int list = 0; list < lists; ++list) {
    const bool isFresh = list % 2 == 0;
    if (isFresh) ClearItems();
    begin = GetTickCount64();
    std::vector<ItemRef> now = listed();
    EXPECT_LE(GetTickCount64() - begin, 2 * quiet + 1'000);
    ASSERT_EQ(names(now), expected) << list;
    EXPECT_TRUE(isFresh || now == before) << list;
    before = std::move(now);
  }
}

}  // namespace smh::test
