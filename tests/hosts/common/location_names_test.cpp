// What people read of a location and of the place of an entry.
#include "hosts/common/item_record.h"
#include "hosts/common/location_names.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

TEST(LocationNames, EveryMemberIsFoundByItsName) {
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    EXPECT_EQ(LocationByName(LocationName(location)), static_cast<TTypeStartupLocation>(location));
  }
  EXPECT_EQ(LocationByName(L"FolderUser"), sulFolderUser);
  EXPECT_EQ(LocationByName(L"runservices"), sulRegistryRunServices);
  EXPECT_EQ(LocationByName(L""), std::nullopt);
  EXPECT_EQ(LocationName(sulRegistryShellExtApproved), L"sulRegistryShellExtApproved");
  EXPECT_EQ(LocationName(-1), L"sulNone");
  EXPECT_EQ(LocationName(kLastLocation + 1), L"sulNone");
}

TEST(ItemPlace, IsForPeople) {
  const auto place = [](const ItemRecord& item) {
    std::wstring parts;
    for (const auto& [label, text] : ItemPlace(item)) parts.append(text).append(1, L'|');
    return parts;
  };
  ItemRecord item;
  item.name = L"C:\\Startup\\a.lnk";
  EXPECT_EQ(place(item), L"C:\\Startup\\a.lnk|");
  item.root = L"HKEY_CURRENT_USER";
  item.view = 64;
  item.key = L"Run";
  EXPECT_EQ(place(item), L"HKEY_CURRENT_USER|64-bit|Run|(Default)|");
  item.view = 32;
  item.value = L"C:\\a\\b.exe";
  EXPECT_EQ(place(item), L"HKEY_CURRENT_USER|32-bit|Run|C:\\a\\b.exe|");
}

}  // namespace
}  // namespace smh::test
