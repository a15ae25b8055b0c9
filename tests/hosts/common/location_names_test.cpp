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

TEST(ItemPlace, PartsOfTheName) {
  const struct {
    TTypeStartupLocation location;
    const wchar_t* name;
    const wchar_t* caption;
    const wchar_t* parts;
  } rows[] = {
      {sulRegistryUserRun, L"(x64)HKEY_CURRENT_USER\\Software\\Run\\Value", L"Value",
       L"HKEY_CURRENT_USER|64-bit|Software\\Run|Value|"},
      {sulRegistryCommonRun, L"(x32)HKEY_LOCAL_MACHINE\\Run\\C:\\a\\b.exe", L"C:\\a\\b.exe",
       L"HKEY_LOCAL_MACHINE|32-bit|Run|C:\\a\\b.exe|"},
      {sulRegistryAllContextMenuHandlers,
       L"(x64)HKEY_LOCAL_MACHINE\\Classes\\Handler\\{6F2C4B70-1D6E-4A1F-8B4C-7E2D308F9C01}", L"Handler",
       L"HKEY_LOCAL_MACHINE|64-bit|Classes\\Handler|(Default)|"},
      {sulRegistryIEBrowserObjects, L"(x32)HKEY_CURRENT_USER\\Objects\\{6F2C}\\Helps\\much", L"Helps\\much",
       L"HKEY_CURRENT_USER|32-bit|Objects\\{6F2C}|(Default)|"},
      {sulRegistryUserRun, L"(x32)HKEY_CURRENT_USER\\Run\\", L"", L"HKEY_CURRENT_USER|32-bit|Run|(Default)|"},
      {sulFolderUser, L"C:\\Startup\\a.lnk", L"a", L"C:\\Startup\\a.lnk|"},
  };
  for (const auto& row : rows) {
    ItemRecord item;
    item.location = row.location;
    item.name = row.name;
    item.caption = row.caption;
    std::wstring parts;
    for (const auto& [label, text] : ItemPlace(item)) parts.append(text).append(1, L'|');
    EXPECT_EQ(parts, row.parts) << row.name;
  }
}

}  // namespace
}  // namespace smh::test
