#include "core/startup_location.h"
#include "infra/intf_FileRater.h"
#include "infra/intf_general.h"
#include "infra/intf_safeguard.h"
#include "infra/intf_settings.h"
#include "infra/uInterfacesRoutines.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace smh {
namespace {

constexpr std::pair<int, std::wstring_view> kMembers[] = {
    {0, L"sulNone"},
    {1, L"sulFolderUser"},
    {2, L"sulFolderCommon"},
    {3, L"sulRegistryRunServices"},
    {4, L"sulRegistryRunServicesOnce"},
    {5, L"sulRegistryUserRun"},
    {6, L"sulRegistryUserRunOnce"},
    {7, L"sulRegistryUserRunOnceSetup"},
    {8, L"sulRegistryCommonRun"},
    {9, L"sulRegistryCommonRunOnce"},
    {10, L"sulRegistryCommonRunOnceSetup"},
    {11, L"sulRegistryAllRegContextMenuHandlers"},
    {12, L"sulRegistryAllContextMenuHandlers"},
    {13, L"sulRegistryDirectoryContextMenuHandlers"},
    {14, L"sulRegistryFolderContextMenuHandlers"},
    {15, L"sulRegistryBackgroundContextMenuHandlers"},
    {16, L"sulRegistryAllRegDragDropHandlers"},
    {17, L"sulRegistryAllDragDropHandlers"},
    {18, L"sulRegistryDirectoryDragDropHandlers"},
    {19, L"sulRegistryFolderDragDropHandlers"},
    {20, L"sulRegistryBackgroundDragDropHandlers"},
    {21, L"sulRegistryAllRegColumnHandlers"},
    {22, L"sulRegistryAllColumnHandlers"},
    {23, L"sulRegistryDirectoryColumnHandlers"},
    {24, L"sulRegistryFolderColumnHandlers"},
    {25, L"sulRegistryBackgroundColumnHandlers"},
    {26, L"sulRegistryAllRegPropertyHandlers"},
    {27, L"sulRegistryAllPropertyHandlers"},
    {28, L"sulRegistryDirectoryPropertyHandlers"},
    {29, L"sulRegistryFolderPropertyHandlers"},
    {30, L"sulRegistryBackgroundPropertyHandlers"},
    {31, L"sulRegistryAllRegCopyHandlers"},
    {32, L"sulRegistryAllCopyHandlers"},
    {33, L"sulRegistryDirectoryCopyHandlers"},
    {34, L"sulRegistryFolderCopyHandlers"},
    {35, L"sulRegistryBackgroundCopyHandlers"},
    {36, L"sulRegistryShellExtApproved"},
    {37, L"sulRegistryIEBrowserObjects"},
    {38, L"sulRegistryUserIEURLSearchHooks"},
    {39, L"sulRegistryCommonIEURLSearchHooks"},
};

TEST(StartupLocationTest, OrdinalsAndMemberNames) {
  EXPECT_EQ(static_cast<int>(std::size(kMembers)), kLocationCount);
  for (const auto& [ordinal, name] : kMembers) {
    const auto location = static_cast<TTypeStartupLocation>(ordinal);
    EXPECT_EQ(LocationMemberName(location), name) << ordinal;
    EXPECT_EQ(LocationFromMemberName(name), location) << ordinal;
  }
  EXPECT_EQ(sulRegistryUserRun, 5);
  EXPECT_EQ(sulRegistryCommonIEURLSearchHooks, 39);
}

TEST(StartupLocationTest, WhatIsNoMember) {
  for (const int ordinal : {-1, 40, 0x7FFFFFFF, INT_MIN}) {
    EXPECT_EQ(LocationMemberName(static_cast<TTypeStartupLocation>(ordinal)), L"") << ordinal;
  }
  EXPECT_EQ(LocationFromMemberName(L"SULREGISTRYuserrun"), sulRegistryUserRun);
  for (const wchar_t* const name :
       {L"", L"sul", L"sulRegistryUserRu", L"sulRegistryUserRun ", L"UserRun", L"5"}) {
    EXPECT_EQ(LocationFromMemberName(name), std::nullopt) << name;
  }
}

TEST(IdentifiersTest, InterfacesKeepTheirGuids) {
  const std::pair<GUID, std::wstring_view> rows[] = {
      {IStartupManager::iid, L"{E8C7F189-6EBA-407B-A55E-97C824EC0201}"},
      {IStartupManagerStrings::iid, L"{E8C7F189-6EBA-407B-A55E-97C824EC0202}"},
      {IStartupItemCollection::iid, L"{6F4C2018-3E75-411A-B50D-7BB961CC0203}"},
      {IFavoriteItemCollection::iid, L"{6F4C2018-3E75-411A-B50D-7BB961CC0204}"},
      {IStartupItem::iid, L"{9AE83B93-CF58-474B-9D7A-DEBC2F000205}"},
      {IFavoriteItem::iid, L"{9AE83B93-CF58-474B-9D7A-DEBC2F000206}"},
      // What GetInstance is asked for as text, and what QueryInterface then knows, are the same.
      {IStartupManager::iid, IStartupManager::kId},
      {IHelper::iid, IHelper::kId},
      {IGlobals::iid, IGlobals::kId},
      {IShellHelper::iid, IShellHelper::kId},
      {IShellDialogsHelper::iid, IShellDialogsHelper::kId},
      {IFileRater::iid, IFileRater::kId},
      {ISafeguard::iid, ISafeguard::kId},
      {ISettings::iid, ISettings::kId},
  };
  for (const auto& [guid, text] : rows) {
    wchar_t buffer[39];
    ASSERT_EQ(StringFromGUID2(guid, buffer, 39), 39);
    EXPECT_TRUE(SameAsciiText(buffer, text)) << buffer;
  }
}

}  // namespace
}  // namespace smh
