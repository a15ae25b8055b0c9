// The switch as a part of every change, in all places that have one.
#include "locations/folders/shortcut_writer.h"
#include "tests/effective/effective_fixture.h"
#include "tests/locations/registry/meanwhile.h"
#include "tests/support/startup_folders.h"

#include <array>

namespace smh::test {
namespace {

// A place that has switches, with its list.
struct Place {
  TTypeStartupLocation location;
  HKEY root;
  const wchar_t* list;
  bool isPlain = false;
};

// Off, with more behind than anybody knows.
const RawValue kOddOff = Binary(kOffBytes + "more");

class SwitchChange : public BothWays<EffectiveTest> {
 protected:
  SwitchChange() { LetGoOfFolders(); }

  static std::vector<Place> Places() {
    std::vector<Place> places{{sulFolderUser, kOwn, L"StartupFolder"},
                              {sulFolderCommon, kAll, L"StartupFolder"},
                              {sulRegistryUserRun, kOwn, L"Run"},
                              {sulRegistryCommonRun, kAll, L"Run"}};
    if (HasTwoViews()) places.push_back({sulRegistryCommonRun, kAll, L"Run32", true});
    return places;
  }
  static void LetGoOfFolders() {
    for (const TTypeStartupLocation folder : {sulFolderUser, sulFolderCommon}) {
      while (At(folder).IsChanged()) {
      }
    }
  }
  const StartupPlaces& FoldersOf(const Place& place) const { return place.root == kOwn ? user_ : common_; }

  static bool IsFolder(const Place& place) { return IsFolderLocation(place.location); }
  static std::wstring NameIn(const Place& place, const std::wstring& name) {
    return IsFolder(place) ? name + L".lnk" : name;
  }
  // An entry, and its item.
  ItemRef Put(const Place& place, const std::wstring& name) {
    if (IsFolder(place)) {
      ShortcutFields fields;
      fields.target = kProgram;
      WriteShortcut(fields, WriteFileBytes(FoldersOf(place).startup + NameIn(place, name), ""));
    } else {
      SetValue(place.root, kRunKey, name, Sz(kProgram), place.isPlain ? 0 : OwnView());
    }
    return Load(place.location, IsFolder(place) ? NameIn(place, name) : name);
  }
  static std::optional<RawValue> SwitchOf(const Place& place, const std::wstring& name) {
    return GetValue(place.root, kSwitches + place.list, NameIn(place, name), OwnView());
  }
  static void PutSwitch(const Place& place, const std::wstring& name, const RawValue& value) {
    SetValue(place.root, kSwitches + place.list, NameIn(place, name), value, OwnView());
  }
  // "root\list: name" of every switch there is.
  static std::vector<std::wstring> AllSwitches() {
    std::vector<std::wstring> all;
    for (const HKEY root : {kOwn, kAll}) {
      for (const wchar_t* list : {L"Run", L"Run32", L"StartupFolder"}) {
        for (const std::wstring& name : Values(root, kSwitches + list, OwnView())) {
          all.push_back((root == kOwn ? L"user " : L"machine ") + std::wstring(list) + L": " + name);
        }
      }
    }
    return all;
  }
  static EffectiveState StateNow(const ItemRef& item) { return EffectiveStateOf(*item); }

 private:
  const StartupPlaces user_{StartupPlaces::Whose::kUser, LetGoOfFolders};
  const StartupPlaces common_{StartupPlaces::Whose::kCommon, LetGoOfFolders};
};
INSTANTIATE_TEST_SUITE_P(Checkpoints, SwitchChange, ::testing::Bool());

TEST_P(SwitchChange, ASwitchIsPutOffAndOnInEveryPlace) {
  for (const Place& place : Places()) {
    SCOPED_TRACE(testing::Message() << place.location << place.list);
    PutSwitch(place, L"Odd", Binary("\x02"));
    EXPECT_FALSE(StateNow(Put(place, L"Odd")).canSwitch);
    const ItemRef item = Put(place, L"Foo");
    {
      const LimitedKey limited(place.root, kVersion + L"Explorer\\StartupApproved",
                               LimitedKey::Rights::kReadOnly, OwnView());
      g_systemStates->Read(true);
      EXPECT_FALSE(StateNow(item).canSwitch);
    }
    g_systemStates->Read(true);
    ASSERT_TRUE(StateNow(item).canSwitch);
    item->TakeChangedMark();
    item->ReadExtendedInfo();
    item->TakeChangedMark();
    EXPECT_EQ(At(place.location).SetItemSwitchedOff(item, false).kind, ChangeAnswer::Kind::kNothing);
    EXPECT_EQ(At(place.location).SetItemSwitchedOff(item, true).kind, ChangeAnswer::Kind::kDone);
    EXPECT_EQ(StateNow(item).reasons, kReasonSwitchedOff) << "told when the change returns";
    EXPECT_TRUE(item->TakeChangedMark());
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    EXPECT_LT(NumberOf(now) - NumberOf(StateNow(item).switchedOffSince), 100'000'000u);
    const std::optional<RawValue> off = SwitchOf(place, L"Foo");
    ASSERT_TRUE(off && off->bytes.size() == 12);
    EXPECT_EQ(off->bytes.front(), std::byte{3});
    EXPECT_TRUE(item->IsEnabled()) << "the entry stays where it is";
    PutSwitch(place, L"Foo", kOddOff);
    At(place.location).SetItemSwitchedOff(item, false);
    EXPECT_EQ(SwitchOf(place, L"Foo"), Binary(kOnBytes + "more"));
    EXPECT_EQ(StateNow(item).starts, kStartsYes);
  }
}

TEST_P(SwitchChange, WhatIsAddedIsOnAndWhatIsDeletedLeavesNoSwitch) {
  for (const Place& place : Places()) {
    SCOPED_TRACE(testing::Message() << place.location << place.list);
    PutSwitch(place, L"Foo", kOff);
    At(place.location).DeleteItem(Put(place, L"Foo"));
    EXPECT_EQ(AllSwitches(), std::vector<std::wstring>());
    if (place.isPlain) continue;
    // Left behind by an entry of that name.
    const std::wstring name = IsFolder(place) ? L"New.lnk" : L"New";
    for (const RawValue& left : {kOff, Sz(L"odd")}) {
      SetValue(place.root, kSwitches + place.list, name, left, OwnView());
      if (!GetParam() && left != kOff) {
        ExpectRefusal(ERROR_NOT_SUPPORTED, L"The form of the entry's switch in Windows is not known.",
                      [&] { At(place.location).AddItem(L"New", kProgram); });
        EXPECT_EQ(GetValue(place.root, kSwitches + place.list, name, OwnView()), left);
        DeleteKeyTree(place.root, kSwitches + place.list, OwnView());
        continue;
      }
      const int position = At(place.location).AddItem(L"New", kProgram).position;
      ASSERT_GE(position, 0);
      EXPECT_EQ(AllSwitches(), std::vector<std::wstring>());
      const ItemRef added = Load(place.location, name);
      EXPECT_EQ(StateNow(added).starts, kStartsYes);
      At(place.location).DeleteItem(added);
    }
  }
}

TEST_P(SwitchChange, AnEntryTakesItsSwitchToEveryOtherPlace) {
  for (const Place& from : Places()) {
    for (const Place& to : Places()) {
      if (to.location == from.location || to.isPlain) continue;
      SCOPED_TRACE(testing::Message() << from.location << from.list << " to " << to.location);
      for (const bool isOff : {true, false}) {
        PutSwitch(from, L"Foo", isOff ? kOddOff : kOn);
        // Whatever name it gets there, one of that name was left behind in the other state.
        for (const wchar_t* name : {L"Foo", L"Foo.lnk", L"notepad", L"notepad.lnk"}) {
          SetValue(to.root, kSwitches + to.list, name, isOff ? kOn : kOff, OwnView());
        }
        const ItemRef item = Put(from, L"Foo");
        // An undo must not take the switch for the copy of the entry: then it would remove the only one.
        std::vector<std::wstring> copies;
        module.Safeguard().Before([&](const std::wstring& line) {
          if (line.starts_with(L"SetValue") && module.Safeguard().HasSource()) copies.push_back(line);
        });
        At(from.location).MoveItem(item, to.location);
        module.Safeguard().Before(nullptr);
        EXPECT_EQ(copies.size(), GetParam() && !IsFolder(to) ? 1u : 0u) << testing::PrintToString(copies);
        EXPECT_EQ(SwitchOf(from, L"Foo"), std::nullopt);
        const std::vector<ItemRef> moved = Listed(At(to.location));
        ASSERT_EQ(moved.size(), 1u);
        EXPECT_EQ((StateNow(moved.front()).reasons & kReasonSwitchedOff) != 0, isOff);
        const ItemState state = moved.front()->State();
        const std::wstring name(SwitchName(state.name, state.address));
        EXPECT_EQ(GetValue(to.root, kSwitches + to.list, name, OwnView()), isOff ? kOddOff : kOn);
        At(to.location).DeleteItem(moved.front());
        DeleteKeyTree(to.root, kSwitches + to.list, OwnView());
      }
    }
  }
}

TEST_P(SwitchChange, APlaceWithoutSwitchesTakesNoneThatIsOff) {
  const Place run = Places()[2];
  for (const RawValue& value : {kOff, Sz(L"odd")}) {
    PutSwitch(run, L"Foo", value);
    const ItemRef item = Put(run, L"Foo");
    ExpectRefusal(ERROR_NOT_SUPPORTED,
                  L"The entry is switched off in Task Manager, and the new place has no such switch.",
                  [&] { At(run.location).MoveItem(item, sulRegistryUserRunOnce); });
    EXPECT_EQ(SwitchOf(run, L"Foo"), value);
    EXPECT_TRUE(item->IsListed());
  }
  PutSwitch(run, L"Foo", kOn);
  EXPECT_EQ(At(run.location).MoveItem(Put(run, L"Foo"), sulRegistryUserRunOnce).kind,
            ChangeAnswer::Kind::kDone);
  EXPECT_EQ(AllSwitches(), std::vector<std::wstring>());
}

TEST_P(SwitchChange, DisablingLeavesTheSwitchUnlessTheNameBecomesAnother) {
  for (const Place& place : Places()) {
    SCOPED_TRACE(testing::Message() << place.location << place.list);
    PutSwitch(place, L"Foo", kOddOff);
    const ItemRef item = Put(place, L"Foo");
    At(place.location).DisableItem(item);
    EXPECT_EQ(SwitchOf(place, L"Foo"), kOddOff);
    EXPECT_EQ(StateNow(item).reasons, kReasonDisabled | kReasonSwitchedOff);
    EXPECT_FALSE(StateNow(item).canSwitch);
    // The switch is that of the one that is enabled.
    const ItemRef other = Put(place, L"Foo");
    At(place.location).DisableItem(other);
    EXPECT_EQ(SwitchOf(place, L"Foo"), std::nullopt);
    const std::wstring renamed = L"Foo (1)";
    EXPECT_EQ(SwitchOf(place, renamed), kOddOff) << "it went with the entry that had it";
    At(place.location).EnableItem(other);
    EXPECT_EQ(StateNow(other).reasons, kReasonSwitchedOff);
    PutSwitch(place, L"Foo", kOff);
    const ItemRef enabled = Put(place, L"Foo");
    At(place.location).DeleteItem(item);
    EXPECT_EQ(SwitchOf(place, L"Foo"), kOff) << "not that of the deleted one";
    At(place.location).DeleteItem(enabled);
    At(place.location).DeleteItem(other);
    EXPECT_EQ(AllSwitches(), std::vector<std::wstring>());
  }
}

TEST_P(SwitchChange, WhatAnotherProgramSwitchesMeanwhileIsRefused) {
  const Place run = Places()[2];
  const ItemRef item = Put(run, L"Foo");
  SetValue(kOwn, kRunKey, L"Foo", Sz(L"C:\\theirs.exe"));
  ExpectChangedMeanwhile([&] { At(run.location).SetItemSwitchedOff(item, true); });
  EXPECT_EQ(SwitchOf(run, L"Foo"), std::nullopt);
  SetValue(kOwn, kRunKey, L"Foo", Sz(kProgram));
  At(run.location).ReadItems();
  const Place folder = Places()[0];
  const auto change = [&](bool moves) {
    moves ? At(run.location).MoveItem(item, folder.location)
          : At(run.location).SetItemSwitchedOff(item, true);
  };
  for (const bool moves : {false, true}) {
    PutSwitch(run, L"Foo", moves ? kOff : kOn);
    const std::wstring list = kSwitches + (moves ? folder.list : run.list);
    const std::wstring name = moves ? L"notepad.lnk" : L"Foo";
    const RawValue theirs = Binary("theirs 12345");
    const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kWrite,
                              [&] { SetValue(kOwn, list, name, theirs, OwnView()); });
    ExpectChangedMeanwhile([&] { change(moves); });
    EXPECT_TRUE(meanwhile.HasRun());
    EXPECT_EQ(GetValue(kOwn, list, name, OwnView()), theirs);
    EXPECT_EQ(GetValue(kOwn, kRunKey, L"Foo"), Sz(kProgram));
    if (moves) {
      EXPECT_EQ(SwitchOf(run, L"Foo"), kOff);
    }
  }
}

}  // namespace
}  // namespace smh::test
