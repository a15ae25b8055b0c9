#include "core/startup_location.h"
#include "infra/intf_FileRater.h"
#include "infra/intf_general.h"
#include "infra/intf_safeguard.h"
#include "infra/intf_settings.h"
#include "infra/uInterfacesRoutines.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace smh {
namespace {

// By ordinal.
constexpr wchar_t kMembers[] =
    L"sulNone sulFolderUser sulFolderCommon sulRegistryRunServices sulRegistryRunServicesOnce "
    L"sulRegistryUserRun sulRegistryUserRunOnce sulRegistryUserRunOnceSetup sulRegistryCommonRun "
    L"sulRegistryCommonRunOnce sulRegistryCommonRunOnceSetup sulRegistryAllRegContextMenuHandlers "
    L"sulRegistryAllContextMenuHandlers sulRegistryDirectoryContextMenuHandlers "
    L"sulRegistryFolderContextMenuHandlers sulRegistryBackgroundContextMenuHandlers "
    L"sulRegistryAllRegDragDropHandlers sulRegistryAllDragDropHandlers "
    L"sulRegistryDirectoryDragDropHandlers sulRegistryFolderDragDropHandlers "
    L"sulRegistryBackgroundDragDropHandlers sulRegistryAllRegColumnHandlers "
    L"sulRegistryAllColumnHandlers sulRegistryDirectoryColumnHandlers sulRegistryFolderColumnHandlers "
    L"sulRegistryBackgroundColumnHandlers sulRegistryAllRegPropertyHandlers "
    L"sulRegistryAllPropertyHandlers sulRegistryDirectoryPropertyHandlers "
    L"sulRegistryFolderPropertyHandlers sulRegistryBackgroundPropertyHandlers "
    L"sulRegistryAllRegCopyHandlers sulRegistryAllCopyHandlers sulRegistryDirectoryCopyHandlers "
    L"sulRegistryFolderCopyHandlers sulRegistryBackgroundCopyHandlers sulRegistryShellExtApproved "
    L"sulRegistryIEBrowserObjects sulRegistryUserIEURLSearchHooks sulRegistryCommonIEURLSearchHooks";

TEST(StartupLocationTest, OrdinalsAndMemberNames) {
  std::wistringstream members(kMembers);
  std::wstring name;
  int count = 0;
  for (; members >> name; ++count) {
    const auto location = static_cast<TTypeStartupLocation>(count);
    EXPECT_EQ(LocationMemberName(location), name) << count;
    EXPECT_EQ(LocationFromMemberName(name), location) << count;
  }
  EXPECT_EQ(count, kLocationCount);
  EXPECT_EQ(sulRegistryUserRun, 5);
  EXPECT_EQ(LocationFromMemberName(L"SULREGISTRYuserrun"), sulRegistryUserRun);
  for (const int ordinal : {-1, 40, INT_MIN}) {
    EXPECT_EQ(LocationMemberName(static_cast<TTypeStartupLocation>(ordinal)), L"") << ordinal;
  }
  for (const wchar_t* const other : {L"", L"sulRegistryUserRu", L"sulRegistryUserRun ", L"5"}) {
    EXPECT_EQ(LocationFromMemberName(other), std::nullopt) << other;
  }
}

TEST(IdentifiersTest, InterfacesKeepTheirGuids) {
  const std::pair<GUID, std::wstring_view> rows[] = {
      {IFavoriteItemCollection::iid, L"{6F4C2018-3E75-411A-B50D-7BB961CC0204}"},
      {IFavoriteItem::iid, L"{9AE83B93-CF58-474B-9D7A-DEBC2F000206}"},
      // What GetInstance is asked for as text, and what QueryInterface then knows, are the same.
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
