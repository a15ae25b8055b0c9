// Handlers, browser objects, approved extensions and search hooks with odd names, other entries at their
// places and other programs at work: each stays what and where it is, or goes whole.
#include "tests/locations/registry/handler_rules_fixture.h"
#include "tests/locations/registry/meanwhile.h"

#include <gmock/gmock.h>

#include <array>
#include <tuple>

namespace smh::test {
namespace {

using Kind = ChangeAnswer::Kind;
using ::testing::IsEmpty;

void RemoveValueIfThere(const std::wstring& key, REGSAM view) {
  if (GetValue(kMachine, key, kClass, view)) RemoveValue(kMachine, key, kClass, view);
}

INSTANTIATE_TEST_SUITE_P(Checkpoints, HandlerRules, ::testing::Bool());

// "A: x" and "B: x" end alike; "Tool/" ends in nothing.
TEST_P(HandlerRules, NamesAreTakenWhole) {
  const std::wstring names[] = {L"A: x", L"B: x", L" x", L"Tool/", L"a/b", L"x:", L"AutorunsDisabled2"};
  SetHandler(kMachine, Off(L"kept"), kOther, OwnView());
  const std::string kept = Tree(kMenusKey + kAutorunsSide);
  for (const std::wstring& name : names) SetHandler(kMachine, Menu(name), kClass, OwnView());
  Menus().ReadItems();
  std::vector<ItemRef> items;
  for (const std::wstring& name : names) {
    items.push_back(FindMenu(Menu(name)));
    ASSERT_NE(items.back(), nullptr) << name;
    EXPECT_EQ(items.back()->GivenText(), name);
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    module.Safeguard().Clear();
    EXPECT_EQ(Menus().DisableItem(items[i]).kind, Kind::kDone) << names[i];
    ExpectCheckpoint(L"Startup Manager: Disabling " + names[i]);
    EXPECT_EQ(Handler(kMachine, Off(names[i]), OwnView()), Sz(kClass)) << names[i];
    EXPECT_FALSE(KeyIsThere(kMachine, Menu(names[i]), OwnView())) << names[i];
  }
  EXPECT_EQ(SubKeys(kMachine, kMenusKey + kAutorunsSide, OwnView()).size(), std::size(names) + 1);
  EXPECT_THAT(Values(kMachine, kMenusKey + kAutorunsSide, OwnView()), IsEmpty()) << "nobody's default value";
  Menus().ReadItems();
  for (const ItemRef& item : items) EXPECT_TRUE(item->IsListed() && !item->IsEnabled());

  EXPECT_EQ(Menus().EnableItem(items[0]).kind, Kind::kDone);
  EXPECT_EQ(Handler(kMachine, Menu(names[0]), OwnView()), Sz(kClass));
  for (std::size_t i = 1; i < items.size(); ++i) {
    EXPECT_EQ(Menus().DeleteItem(items[i]).kind, Kind::kDone) << names[i];
  }
  EXPECT_EQ(Tree(kMenusKey + kAutorunsSide), kept);
}

// Whatever the list says: neither the own key nor a side key is one of its handlers.
TEST_P(HandlerRules, TheKeysOfTheHandlersAreNoHandlers) {
  SetHandler(kMachine, Off(L"kept"), kOther, OwnView());
  SetHandler(kMachine, kMenusKey, kClass, OwnView());
  SetHandler(kMachine, kMenusKey + kAutorunsSide, kClass, OwnView());
  const std::string before = Tree(kMenusKey);
  for (const std::wstring& key : {kMenusKey, kMenusKey + kAutorunsSide, kMenusKey + L"\\",
                                  kMenusKey + kAutorunsSide + L"\\", Off(L"kept") + L"\\deeper", kRunKey}) {
    FoundEntry entry;
    entry.name = SharedText(L"odd " + key);
    entry.caption = SharedText(L"odd");
    entry.command = SharedText(kServer);
    entry.address = SharedValueAddress(RegistryValueAddress{OwnView(), kMachine, key, kClass});
    const auto item = std::make_shared<TStartupItem>(Menus().LocationType(), entry);
    item->FillBasicInfo();
    {
      ScopedLock lock(Items().Lock());
      Items().Append(item);
    }
    for (const auto& change :
         {&TLocationStartup::DisableItem, &TLocationStartup::EnableItem, &TLocationStartup::DeleteItem}) {
      EXPECT_THROW((Menus().*change)(item), EOSError) << key;
    }
  }
  EXPECT_EQ(Tree(kMenusKey), before);
}

struct Family {
  const wchar_t* name;
  TTypeStartupLocation location;
  std::wstring key;
  HKEY root;
  bool isSubkey;
};

// In every family: the text at a place is another entry's when it differs in anything.
TEST_P(HandlerRules, OtherDataAtThePlaceIsAnotherEntry) {
  const Family families[] = {
      {L"menus", sulRegistryAllRegContextMenuHandlers, kMenusKey, kMachine, true},
      {L"objects", sulRegistryIEBrowserObjects, kObjectsKey, kMachine, true},
      {L"approved", sulRegistryShellExtApproved, kApprovedKey, kMachine, false},
      {L"hooks", sulRegistryUserIEURLSearchHooks, kHooksKey, HKEY_CURRENT_USER, false},
  };
  for (const Family& family : families) {
    TLocationStartup& location = *FindLocation(family.location);
    const std::wstring side = family.key + kAutorunsSide;
    const auto clearSide = [&] {
      if (family.isSubkey) {
        DeleteKeyTree(family.root, side + L"\\" + kClass, OwnView());
      } else {
        RemoveValue(family.root, side, kClass, OwnView());
      }
    };
    const auto put = [&](const std::wstring& key, const std::wstring& text) {
      if (family.isSubkey) {
        SetHandler(family.root, key + L"\\" + kClass, text, OwnView());
      } else {
        SetValue(family.root, key, kClass, Sz(text), OwnView());
      }
    };
    const auto read = [&](const std::wstring& key) {
      return family.isSubkey ? Handler(family.root, key + L"\\" + kClass, OwnView())
                             : GetValue(family.root, key, kClass, OwnView());
    };
    put(family.key, L"Text");
    put(side, L"TEXT");
    ClearItems();
    location.ReadItems();
    ASSERT_EQ(Listed(location).size(), 2u) << family.name;
    for (const ItemRef& item : Listed(location)) {
      const bool enable = !item->IsEnabled();
      ExpectRefusal(ERROR_ALREADY_EXISTS, L"another entry of that name stands there",
                    [&] { enable ? location.EnableItem(item) : location.DisableItem(item); });
      EXPECT_TRUE(item->IsListed());
    }
    EXPECT_EQ(read(family.key), Sz(L"Text")) << family.name;
    EXPECT_EQ(read(side), Sz(L"TEXT")) << family.name;

    // An entry of the name that comes on the way.
    const ItemRef item =
        Listed(location).at(0)->IsEnabled() ? Listed(location).at(0) : Listed(location).at(1);
    clearSide();
    location.ReadItems();
    {
      const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kWrite,
                                [&] { put(side, L"theirs"); });
      ExpectChangedMeanwhile([&] { location.DisableItem(item); }, family.name);
    }
    EXPECT_EQ(read(family.key), Sz(L"Text")) << family.name;
    EXPECT_EQ(read(side), Sz(L"theirs")) << family.name;
    // And a source that changes on the way.
    clearSide();
    {
      const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kWrite,
                                [&] { put(family.key, L"theirs"); });
      ExpectChangedMeanwhile([&] { location.DisableItem(item); }, family.name);
    }
    EXPECT_EQ(read(family.key), Sz(L"theirs")) << family.name;
    EXPECT_EQ(read(side), std::nullopt) << family.name;
  }
}

// Each view is a place of its own; what differs there is not the entry's.
TEST_P(HandlerRules, ThePlainViewTakesPartAsATwinOnly) {
  if (!HasTwoViews()) return;
  constexpr REGSAM k64 = KEY_WOW64_64KEY;
  const std::wstring side = kApprovedKey + kAutorunsSide;
  const auto texts = [&](const std::wstring& key, REGSAM view) {
    return TextOf(GetValue(kMachine, key, kClass, view));
  };
  // What stands at: source 64, source plain, target 64, target plain; before and after disabling.
  const struct {
    const wchar_t* name;
    std::array<const wchar_t*, 4> before, after;
  } rows[] = {
      {L"twin", {L"a", L"a", L"", L""}, {L"", L"", L"a", L"a"}},
      {L"alone", {L"a", L"", L"", L""}, {L"", L"", L"a", L""}},
      {L"other plain source", {L"a", L"b", L"", L""}, {L"", L"b", L"a", L""}},
      {L"other plain target", {L"a", L"a", L"", L"b"}, {L"", L"a", L"a", L"b"}},
      {L"own plain target", {L"a", L"a", L"", L"a"}, {L"", L"", L"a", L"a"}},
      {L"listed target, both", {L"a", L"a", L"a", L"a"}, {L"", L"", L"a", L"a"}},
      {L"listed target, own view only", {L"a", L"a", L"a", L""}, {L"", L"", L"a", L"a"}},
      {L"listed target, other plain", {L"a", L"a", L"a", L"b"}, {L"", L"a", L"a", L"b"}},
      {L"plain target without twin", {L"a", L"", L"", L"b"}, {L"", L"", L"a", L"b"}},
  };
  for (const auto& row : rows) {
    const std::pair<std::wstring, REGSAM> places[] = {
        {kApprovedKey, k64}, {kApprovedKey, 0}, {side, k64}, {side, 0}};
    for (std::size_t i = 0; i < 4; ++i) {
      RemoveValueIfThere(places[i].first, places[i].second);
      if (*row.before[i] != 0)
        SetValue(kMachine, places[i].first, kClass, Sz(row.before[i]), places[i].second);
    }
    ClearItems();
    const ItemRef item = LoadAndFind(Approved(), k64, kMachine, kApprovedKey, kClass);
    ASSERT_NE(item, nullptr) << row.name;
    EXPECT_EQ(Approved().DisableItem(item).kind, Kind::kDone) << row.name;
    for (std::size_t i = 0; i < 4; ++i) {
      const std::wstring expected = *row.after[i] == 0 ? L"(none)" : row.after[i];
      EXPECT_EQ(texts(places[i].first, places[i].second), expected) << row.name << L" " << i;
    }
  }
}

// Browser objects and search hooks have no text of their own as a rule.
TEST_P(HandlerRules, AnEntryWithoutATextIsCalledByItsKeyOrValue) {
  SetHandler(kMachine, kObjectsKey + L"\\" + kClass, L"", OwnView());
  SetValue(HKEY_CURRENT_USER, kHooksKey, kClass, Sz(L""), OwnView());
  for (TLocationStartup* const location : {&Objects(), &UserHooks()}) {
    location->ReadItems();
    const ItemRef item = Listed(*location).at(0);
    module.Safeguard().Clear();
    location->DisableItem(item);
    ExpectCheckpoint(L"Startup Manager: Disabling " + kClass);
    location->EnableItem(item);
    ExpectCheckpoint(L"Startup Manager: Enabling " + kClass);
    location->DeleteItem(item);
    ExpectCheckpoint(L"Startup Manager: Deleting " + kClass);
  }
  // No text is another thing than what is none.
  SetValue(HKEY_CURRENT_USER, kHooksKey, kClass, Sz(L""), OwnView());
  SetValue(HKEY_CURRENT_USER, kHooksKey + kAutorunsSide, kClass, Binary("theirs"), OwnView());
  const ItemRef item = LoadAndFind(UserHooks(), OwnView(), HKEY_CURRENT_USER, kHooksKey, kClass);
  EXPECT_THROW(UserHooks().DisableItem(item), EChangeRefused);
}

TEST_P(HandlerRules, TheDescriptionThatStandsThereNowIsTheOneThatGoesAlong) {
  SetValue(kMachine, kApprovedKey, kClass, Sz(L"Old"), OwnView());
  SetValue(HKEY_CURRENT_USER, kHooksKey, kClass, Sz(L"Old"), OwnView());
  const std::tuple<TLocationStartup*, HKEY, std::wstring> rows[] = {
      {&Approved(), kMachine, kApprovedKey}, {&UserHooks(), HKEY_CURRENT_USER, kHooksKey}};
  for (const auto& [location, root, key] : rows) {
    const ItemRef item = LoadAndFind(*location, OwnView(), root, key, kClass);
    SetValue(root, key, kClass, Sz(L"New"), OwnView());
    EXPECT_EQ(location->DisableItem(item).kind, Kind::kDone);
    EXPECT_EQ(GetValue(root, key + kAutorunsSide, kClass, OwnView()), Sz(L"New"));
    EXPECT_EQ(item->GivenText(), L"New");
    module.Safeguard().Clear();
    // Deleting asks whether it is what was agreed to.
    SetValue(root, key + kAutorunsSide, kClass, Sz(L"NEW"), OwnView());
    ExpectChangedMeanwhile([&] { location->DeleteItem(item); }, key);
    EXPECT_EQ(GetValue(root, key + kAutorunsSide, kClass, OwnView()), Sz(L"NEW"));
  }
}

}  // namespace
}  // namespace smh::test
