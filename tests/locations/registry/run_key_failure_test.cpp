#include "run_key_fixture.h"

namespace smh::test {

// What stood in the registry still stands there, and the item is what it was.
#define EXPECT_AS_BEFORE(item, root, name, value)                       \
  do {                                                                  \
    EXPECT_EQ(GetValue(root, kRunKey, name, OwnView()), value);         \
    EXPECT_EQ(GetValue(root, kRunSide, name, OwnView()), std::nullopt); \
    EXPECT_TRUE((item)->IsListed());                                    \
    EXPECT_TRUE((item)->IsEnabled());                                   \
  } while (false)

TEST_F(RunKeyTest, APlainWriteIntoAClosedKeyRaisesAndLosesNothing) {
  module.Settings().useCheckpoints = false;
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Foo", Sz(L"f.exe"));
  MakeKey(HKEY_CURRENT_USER, kRunSide);
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");
  const LimitedKey limited(HKEY_CURRENT_USER, kRunSide, LimitedKey::Rights::kReadOnly);
  try {
    UserRun().DisableItem(item);
    ADD_FAILURE() << "nothing was raised";
  } catch (const EOSError& error) {
    EXPECT_EQ(error.Code(), DWORD(ERROR_ACCESS_DENIED));
  }
  EXPECT_AS_BEFORE(item, HKEY_CURRENT_USER, L"Foo", Sz(L"f.exe"));
  EXPECT_TRUE(LogHas(L"Error class   : EOSError"));
  EXPECT_TRUE(LogHas(L"Error disable item \"" + item->Name() + L"\" in location \"sulRegistryUserRun\"."));
}

TEST_F(RunKeyTest, ASourceThatIsGoneOrNoTextRaisesBeforeAnythingIsWritten) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"gone", Sz(L"g.exe"));
  SetValue(HKEY_CURRENT_USER, kRunKey, L"number", Dword(1));
  UserRun().ReadItems();
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"gone");
  EXPECT_THROW(UserRun().DisableItem(FindByCaption(UserRun(), L"gone")), EOSError);
  EXPECT_THROW(UserRun().DisableItem(FindByCaption(UserRun(), L"number")), ERegistryException);
  EXPECT_FALSE(KeyIsThere(HKEY_CURRENT_USER, kRunSide));
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"number"), Dword(1));
}

TEST_F(RunKeyTest, SilentFailuresOfDeletingAddingAndChanging) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Foo", Sz(L"f.exe"));
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");

  module.Safeguard().Answer(L"DeleteValue", ERROR_ACCESS_DENIED, 1);
  UserRun().DeleteItem(item);
  EXPECT_AS_BEFORE(item, HKEY_CURRENT_USER, L"Foo", Sz(L"f.exe"));
  EXPECT_TRUE(LogHas(L"Error delete item \"" + item->Name() + L"\" in location \"sulRegistryUserRun\"."));

  module.Safeguard().Answer(L"SetValue", ERROR_ACCESS_DENIED, 1);
  UserRun().ChangeItemCommand(item, L"new.exe");
  EXPECT_AS_BEFORE(item, HKEY_CURRENT_USER, L"Foo", Sz(L"f.exe"));
  EXPECT_EQ(Command(item), L"f.exe");
  EXPECT_TRUE(LogHas(L"Error change item \"" + item->Name() +
                     L"\" comand on \"new.exe\" in location \"sulRegistryUserRun\"\r\n"));

  module.Safeguard().Answer(L"SetValue", ERROR_ACCESS_DENIED, 1);
  EXPECT_EQ(UserRun().AddItem(L"Bar", L"b.exe"), -1);
  EXPECT_EQ(FindByCaption(UserRun(), L"Bar"), nullptr);
  EXPECT_TRUE(LogHas(L"Error add item \"Bar\" (b.exe) in location \"sulRegistryUserRun\"."));
}

TEST_F(RunKeyTest, ItemsOfOtherLocationsAndThoseThatLeftTheListAreNotTouched) {
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Foo", Sz(L"f.exe"));
  const ItemRef item = LoadAndFind(UserRun(), L"Foo");
  CommonRun().DisableItem(item);
  CommonRun().DeleteItem(item);
  CommonRun().ChangeItemCommand(item, L"x.exe");
  EXPECT_AS_BEFORE(item, HKEY_CURRENT_USER, L"Foo", Sz(L"f.exe"));

  ClearItems();
  UserRun().DisableItem(item);
  UserRun().DeleteItem(item);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, L"Foo"), Sz(L"f.exe"));
}

}  // namespace smh::test
