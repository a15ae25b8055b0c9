#include "tests/support/module_fixture.h"

namespace smh::test {

class ItemListTest : public ModuleTest {
 protected:
  static FoundEntry Entry(const std::wstring& valueName, bool enabled = true) {
    const RegistryValueAddress address{0, HKEY_CURRENT_USER, L"K", valueName};
    FoundEntry entry;
    entry.address = SharedValueAddress(address);
    entry.name = SharedText(address.FullPath());
    entry.caption = SharedText(valueName);
    entry.isEnabled = enabled;
    return entry;
  }
  static ItemRef Add(TTypeStartupLocation location, const std::wstring& valueName) {
    const auto item = std::make_shared<TStartupItem>(location, Entry(valueName));
    Items().Append(item);
    return item;
  }
  static void Relocate(TStartupItem& item, const std::wstring& valueName, bool enabled) {
    Items().Relocate(item, Entry(valueName, enabled));
  }
  // Every listed item is where it says, and its name leads to it.
  static void ExpectConsistent() {
    for (int i = 0; i < Items().Count(); ++i) {
      const ItemRef item = Items().At(i);
      EXPECT_EQ(item->Position(), i);
      EXPECT_EQ(Items().Find(item->Location(), item->Name()), item);
    }
  }

  ScopedLock lock{Items().Lock()};
};

TEST_F(ItemListTest, PositionsAndNamesStayTrueThroughEveryChange) {
  std::vector<ItemRef> items;
  for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e"}) items.push_back(Add(sulRegistryUserRun, name));
  const ItemRef other = Add(sulRegistryCommonRun, L"a");
  ExpectConsistent();
  EXPECT_EQ(Items().Find(sulRegistryUserRun, L"(X32)hkey_current_user\\k\\A"), items[0]);
  EXPECT_EQ(Items().Find(sulRegistryCommonRun, other->Name()), other);
  EXPECT_EQ(Items().Find(sulFolderUser, other->Name()), nullptr);

  EXPECT_EQ(Items().Remove(*items[1]), 1);
  EXPECT_EQ(Items().Remove(*items[1]), -1);
  EXPECT_FALSE(items[1]->IsListed());
  ExpectConsistent();

  EXPECT_EQ(Items().Insert(99, items[1]), 5);
  EXPECT_EQ(Items().Remove(*items[1]), 5);
  EXPECT_EQ(Items().Insert(-7, items[1]), 0);
  ExpectConsistent();

  Items().RemoveIf(
      [&](const TStartupItem& item) { return item.GivenText() == L"c" || &item == other.get(); });
  EXPECT_EQ(Items().Count(), 4);
  EXPECT_EQ(Items().At(4), nullptr);
  EXPECT_EQ(Items().At(-1), nullptr);
  ExpectConsistent();

  // A removal that ends half-way leaves a whole list.
  int asked = 0;
  EXPECT_THROW(Items().RemoveIf([&](const TStartupItem&) {
    if (++asked == 3) throw Exception(L"no memory");
    return asked == 1;
  }),
               Exception);
  EXPECT_EQ(Items().Count(), 3);
  ExpectConsistent();
}

TEST_F(ItemListTest, AStaleItemMakesWayForTheOneThatTakesItsName) {
  const ItemRef stale = Add(sulRegistryUserRun, L"a");
  const ItemRef item = Add(sulRegistryUserRun, L"b");
  Relocate(*item, L"A", false);
  EXPECT_FALSE(stale->IsListed());
  EXPECT_EQ(Items().Count(), 1);
  EXPECT_FALSE(item->IsEnabled());
  EXPECT_TRUE(item->TakeChangedMark());
  ExpectConsistent();

  // The same name in another letter case is the item itself.
  Relocate(*item, L"a", true);
  EXPECT_TRUE(item->IsListed());
  ExpectConsistent();

  const ItemRef again = Add(sulRegistryUserRun, L"a");
  EXPECT_FALSE(item->IsListed());
  EXPECT_EQ(Items().Count(), 1);
  ExpectConsistent();
}

}  // namespace smh::test
