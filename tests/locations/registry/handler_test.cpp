#include "core/make_location.h"
#include "model/change_refused.h"
#include "tests/locations/registry/handler_fixture.h"
#include "tests/support/waiting.h"

#include <gmock/gmock.h>

namespace smh::test {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HandlerChange : public BothWays<HandlerTest> {
 protected:
  static ItemRef LoadMenu(const std::wstring& name, REGSAM view = OwnView()) {
    return LoadAndFind(Menus(), view, HKEY_LOCAL_MACHINE, kMenusKey + L"\\" + name, kClass);
  }
};

INSTANTIATE_TEST_SUITE_P(Checkpoints, HandlerChange, ::testing::Bool());

TEST_F(HandlerTest, HandlersAreListedByNameAndByIdentifierUnderBothRoots) {
  const HKEY kMachine = HKEY_LOCAL_MACHINE;
  const auto open = [](const std::wstring& id) { return id.substr(0, id.size() - 1); };
  // An identifier without its closing brace is a name like any other.
  const struct {
    HKEY root;
    std::wstring path, value, caption;
  } rows[] = {
      {kMachine, L"\\Foo", kClass, L"Foo"},
      {HKEY_CURRENT_USER, L"\\Foo", kClass, L"Foo"},
      {kMachine, L"\\" + kClass, L"Described", L"Described"},
      {kMachine, L"\\" + kOther, L"", L""},
      {kMachine, L"\\" + open(kOther), kOther, open(kOther)},
      {kMachine, kAutorunsSide + L"\\Off", kOther, L"Off"},
  };
  for (const auto& row : rows) SetHandler(row.root, kMenusKey + row.path, row.value, OwnView());
  SetHandler(kMachine, kMenusKey + L"\\Unserved", kUnserved, OwnView());
  SetHandler(kMachine, kMenusKey + L"\\Program", L"txtfile", OwnView());
  SetHandler(kMachine, kMenusKey + L"\\Open", open(kClass), OwnView());
  SetHandler(kMachine, kMenusKey + kAutorunsSide, kClass, OwnView());
  for (const auto& row : rows) {
    const ItemRef item = LoadAndFind(Menus(), OwnView(), row.root, kMenusKey + row.path, row.value);
    ASSERT_NE(item, nullptr) << row.path;
    EXPECT_EQ(item->GivenText(), row.caption);
    EXPECT_FALSE(item->State().details.Caption.empty()) << "people see the file's name instead";
    EXPECT_EQ(item->IsEnabled(), row.caption != L"Off");
    EXPECT_EQ(Command(item), row.value == kClass || row.path.ends_with(kClass) ? kServer : kOtherServer);
  }
  EXPECT_EQ(Listed(Menus()).size(), std::size(rows)) << "neither the side key nor what has no server";
}

TEST_F(HandlerTest, OddDefaultValuesCountAsEmptyOrAsTheTextTheyAre) {
  const REGSAM view = OwnView();
  const auto path = [](int number) {
    return kObjectsKey + L"\\{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8B0" + std::to_wstring(number) + L"}";
  };
  std::vector<std::unique_ptr<RegistryTree>> classes;
  const std::optional<RawValue> values[] = {std::nullopt, Binary("abc"), MultiSz({kClass, L"b"}), Dword(1),
                                            Sz(std::wstring(512 * 1024, L'x'))};
  int number = 0;
  for (const auto& value : values) {
    const std::wstring key = path(number++);
    MakeKey(HKEY_LOCAL_MACHINE, key, view);
    if (value) SetValue(HKEY_LOCAL_MACHINE, key, L"", *value, view);
    const std::wstring named = kObjectsKey + L"\\Named" + std::to_wstring(number);
    MakeKey(HKEY_LOCAL_MACHINE, named, view);
    if (value) SetValue(HKEY_LOCAL_MACHINE, named, L"", *value, view);
    classes.push_back(std::make_unique<RegistryTree>(
        L"Software\\Classes\\CLSID\\" + key.substr(kObjectsKey.size() + 1), HKEY_LOCAL_MACHINE, view));
    classes.back()->Set(L"InprocServer32", L"", ExpandSz(L"%SystemRoot%\\x.dll"));
  }
  Objects().ReadItems();
  const std::vector<ItemRef> items = Listed(Objects());
  ASSERT_EQ(items.size(), 5u) << "a name needs a class in its value";
  for (int i = 0; i < 4; ++i) EXPECT_EQ(items[i]->GivenText(), L"");
  EXPECT_EQ(items[4]->GivenText().size(), 512u * 1024);
  EXPECT_EQ(Command(items[0]), L"%SystemRoot%\\x.dll");
}

TEST_P(HandlerChange, DisablingAndEnablingCarryTheDefaultValueOnly) {
  SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Foo", kClass, OwnView());
  SetValue(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Foo", L"extra", Sz(L"e"), OwnView());
  MakeKey(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Foo\\deeper\\still", OwnView());
  const std::wstring off = kMenusKey + kAutorunsSide + L"\\Foo";
  const ItemRef item = LoadMenu(L"Foo");
  Menus().DisableItem(item);
  ExpectCheckpoint(L"Startup Manager: Disabling Foo");
  EXPECT_FALSE(KeyIsThere(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Foo", OwnView()));
  EXPECT_EQ(Handler(HKEY_LOCAL_MACHINE, off, OwnView()), Sz(kClass));
  EXPECT_THAT(Values(HKEY_LOCAL_MACHINE, off, OwnView()), ElementsAre(L""));
  EXPECT_THAT(SubKeys(HKEY_LOCAL_MACHINE, off, OwnView()), IsEmpty());
  EXPECT_FALSE(item->IsEnabled());
  EXPECT_EQ(item->Name(), BuildFullValuePath(OwnView(), HKEY_LOCAL_MACHINE, off, kClass));

  Menus().ReadItems();
  EXPECT_TRUE(item->IsListed()) << "the same object goes on";
  Menus().EnableItem(item);
  ExpectCheckpoint(L"Startup Manager: Enabling Foo");
  EXPECT_EQ(Handler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Foo", OwnView()), Sz(kClass));
  EXPECT_FALSE(KeyIsThere(HKEY_LOCAL_MACHINE, off, OwnView()));
  EXPECT_TRUE(item->IsEnabled());
}

TEST_P(HandlerChange, BothViewsAreKeptInStep) {
  for (const REGSAM view : {REGSAM(0), OwnView()})
    SetHandler(HKEY_LOCAL_MACHINE, kObjectsKey + L"\\" + kClass, L"d", view);
  const ItemRef item =
      LoadAndFind(Objects(), OwnView(), HKEY_LOCAL_MACHINE, kObjectsKey + L"\\" + kClass, L"d");
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(Listed(Objects()).size(), 1u);
  Objects().DisableItem(item);
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    EXPECT_EQ(Handler(HKEY_LOCAL_MACHINE, kObjectsKey + kAutorunsSide + L"\\" + kClass, view), Sz(L"d"));
    EXPECT_FALSE(KeyIsThere(HKEY_LOCAL_MACHINE, kObjectsKey + L"\\" + kClass, view));
  }
  Objects().DeleteItem(item);
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    EXPECT_FALSE(KeyIsThere(HKEY_LOCAL_MACHINE, kObjectsKey + kAutorunsSide + L"\\" + kClass, view));
  }
  if (!HasTwoViews()) return;

  // Another entry of the plain view stays.
  SetHandler(HKEY_LOCAL_MACHINE, kObjectsKey + L"\\" + kClass, L"64", KEY_WOW64_64KEY);
  SetHandler(HKEY_LOCAL_MACHINE, kObjectsKey + L"\\" + kClass, L"32", 0);
  const ItemRef wide =
      LoadAndFind(Objects(), KEY_WOW64_64KEY, HKEY_LOCAL_MACHINE, kObjectsKey + L"\\" + kClass, L"64");
  EXPECT_EQ(Listed(Objects()).size(), 2u);
  Objects().DeleteItem(wide);
  EXPECT_EQ(Handler(HKEY_LOCAL_MACHINE, kObjectsKey + L"\\" + kClass, 0), Sz(L"32"));
}

TEST_P(HandlerChange, AHandlerThatTheTargetHoldsAlreadyIsDeletedAtItsSource) {
  SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Foo", kClass, OwnView());
  SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + kAutorunsSide + L"\\Foo", kClass, OwnView());
  SetValue(HKEY_LOCAL_MACHINE, kMenusKey + kAutorunsSide + L"\\Foo", L"kept", Sz(L"k"), OwnView());
  const ItemRef item = LoadMenu(L"Foo");
  EXPECT_EQ(Listed(Menus()).size(), 2u);
  Menus().DisableItem(item);
  EXPECT_FALSE(item->IsListed());
  EXPECT_FALSE(KeyIsThere(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Foo", OwnView()));
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kMenusKey + kAutorunsSide + L"\\Foo", L"kept", OwnView()), Sz(L"k"));
  ASSERT_EQ(Listed(Menus()).size(), 1u);
  EXPECT_FALSE(Listed(Menus())[0]->IsEnabled());

  // A listed target that has gone meanwhile does not cost the source.
  SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Foo", kClass, OwnView());
  const ItemRef again = LoadMenu(L"Foo");
  DeleteKeyTree(HKEY_LOCAL_MACHINE, kMenusKey + kAutorunsSide + L"\\Foo", OwnView());
  Menus().DisableItem(again);
  EXPECT_EQ(Handler(HKEY_LOCAL_MACHINE, kMenusKey + kAutorunsSide + L"\\Foo", OwnView()), Sz(kClass));
  EXPECT_THAT(Listed(Menus()), ElementsAre(again));
}

TEST_P(HandlerChange, TheSideKeyIsNeverTakenForAHandler) {
  const std::wstring odd = kMenusKey + kAutorunsSide + kAutorunsSide;
  SetHandler(HKEY_LOCAL_MACHINE, odd, kClass, OwnView());
  SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + kAutorunsSide + L"\\Off", kOther, OwnView());
  const ItemRef item = LoadAndFind(Menus(), OwnView(), HKEY_LOCAL_MACHINE, odd, kClass);
  ASSERT_NE(item, nullptr);
  EXPECT_THROW(Menus().EnableItem(item), EOSError);
  EXPECT_EQ(Handler(HKEY_LOCAL_MACHINE, odd, OwnView()), Sz(kClass));
  EXPECT_TRUE(KeyIsThere(HKEY_LOCAL_MACHINE, kMenusKey + kAutorunsSide + L"\\Off", OwnView()));
}

TEST_P(HandlerChange, ATreeThatIsTooDeepIsNotDeleted) {
  SetHandler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Deep", kClass, OwnView());
  ScopedKey deepest = MakeKey(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Deep", OwnView());
  for (int level = 0; level < 520; ++level) deepest = MakeKey(deepest.Get(), L"d");
  const ItemRef deep = LoadMenu(L"Deep");
  ASSERT_NE(deep, nullptr);
  if (GetParam()) {
    Menus().DeleteItem(deep);
    EXPECT_TRUE(LogHas(L"Error delete item \"" + deep->Name()));
  } else {
    EXPECT_THROW(Menus().DeleteItem(deep), EOSError);
  }
  EXPECT_TRUE(deep->IsListed());
  EXPECT_EQ(Handler(HKEY_LOCAL_MACHINE, kMenusKey + L"\\Deep", OwnView()), Sz(kClass));
}

TEST_F(HandlerTest, ProtectionAndChangesAreNoticed) {
  SetHandler(HKEY_CURRENT_USER, kMenusKey + L"\\Foo", kClass, OwnView());
  {
    const LimitedKey limited(HKEY_CURRENT_USER, kMenusKey + L"\\Foo", LimitedKey::Rights::kReadOnly,
                             OwnView());
    Menus().ReadItems();
    ASSERT_EQ(Listed(Menus()).size(), 1u);
    EXPECT_TRUE(Listed(Menus())[0]->IsProtected());
  }
  // A location made now watches the keys that are there now.
  const std::unique_ptr<TLocationStartup> location = MakeLocation(Menus().Row());
  EXPECT_FALSE(location->IsChanged());
  SetHandler(HKEY_CURRENT_USER, kMenusKey + L"\\Bar", kOther, OwnView());
  EXPECT_TRUE(WaitUntil([&] { return location->IsChanged(); }));
  location->ReadItems();
  EXPECT_EQ(Listed(Menus()).size(), 2u);
}

using ::testing::UnorderedElementsAre;

using ShellExtChange = BothWays<HandlerTest>;
INSTANTIATE_TEST_SUITE_P(Checkpoints, ShellExtChange, ::testing::Bool());

TEST_F(HandlerTest, ApprovedExtensionsNeedAServerAndADescription) {
  const REGSAM view = OwnView();
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, Sz(L"Described"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kOther, Sz(L""), view);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kUnserved, Sz(L"No server"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, L"No class", Sz(L"text"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey + kAutorunsSide, kOther, ExpandSz(L"%Off%"), view);
  SetValue(HKEY_CURRENT_USER, kApprovedKey, kClass, Sz(L"Not read"), view);
  Approved().ReadItems();
  EXPECT_THAT(Captions(Approved()), UnorderedElementsAre(L"Described", L"%Off%"));
  const ItemRef item = LoadAndFind(Approved(), view, HKEY_LOCAL_MACHINE, kApprovedKey, kClass);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(Command(item), kServer);
}

TEST_P(ShellExtChange, TheDescriptionReadIsWrittenBackAndNeverTheCaption) {
  SetValue(HKEY_CURRENT_USER, kHooksKey, kClass, Sz(L""), OwnView());
  SetValue(HKEY_CURRENT_USER, kHooksKey, kOther, Dword(5), OwnView());
  const std::pair<std::wstring, RawValue> described[] = {{kClass, Sz(L"")}, {kOther, Dword(5)}};
  for (const auto& [name, description] : described) {
    const ItemRef item = LoadAndFind(UserHooks(), OwnView(), HKEY_CURRENT_USER, kHooksKey, name);
    ASSERT_NE(item, nullptr);
    EXPECT_FALSE(item->State().details.Caption.empty());
    UserHooks().DisableItem(item);
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooksKey + kAutorunsSide, name, OwnView()), description);
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooksKey, name, OwnView()), std::nullopt);
    EXPECT_EQ(item->Name(),
              BuildFullValuePath(OwnView(), HKEY_CURRENT_USER, kHooksKey + kAutorunsSide, name));
    UserHooks().EnableItem(item);
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooksKey, name, OwnView()), description);
  }
}

}  // namespace smh::test
