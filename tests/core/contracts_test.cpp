#include "core/startup_location.h"
#include "infra/intf_DebugLog.h"
#include "infra/intf_FileRater.h"
#include "infra/intf_general.h"
#include "infra/intf_safeguard.h"
#include "infra/intf_settings.h"
#include "infra/uInterfacesRoutines.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace smh {
namespace {

TEST(StartupLocationTest, OrdinalsAndMemberNames) {
  // The edges of the families.
  const std::pair<int, std::wstring_view> rows[] = {{0, L"sulNone"},
                                                    {1, L"sulFolderUser"},
                                                    {3, L"sulRegistryRunServices"},
                                                    {5, L"sulRegistryUserRun"},
                                                    {10, L"sulRegistryCommonRunOnceSetup"},
                                                    {11, L"sulRegistryAllRegContextMenuHandlers"},
                                                    {35, L"sulRegistryBackgroundCopyHandlers"},
                                                    {36, L"sulRegistryShellExtApproved"},
                                                    {39, L"sulRegistryCommonIEURLSearchHooks"}};
  for (const auto& [ordinal, name] : rows) {
    EXPECT_EQ(LocationMemberName(static_cast<TTypeStartupLocation>(ordinal)), name);
  }
  EXPECT_EQ(kLocationCount, 40);
  for (int ordinal = 0; ordinal < kLocationCount; ++ordinal) {
    const auto location = static_cast<TTypeStartupLocation>(ordinal);
    EXPECT_EQ(LocationFromMemberName(LocationMemberName(location)), location);
  }
  EXPECT_EQ(LocationFromMemberName(L"SULREGISTRYuserrun"), sulRegistryUserRun);
  for (const int ordinal : {-1, 40, INT_MIN}) {
    EXPECT_EQ(LocationMemberName(static_cast<TTypeStartupLocation>(ordinal)), L"") << ordinal;
  }
  for (const wchar_t* const other : {L"", L"sulRegistryUserRu", L"sulRegistryUserRun ", L"5"}) {
    EXPECT_EQ(LocationFromMemberName(other), std::nullopt) << other;
  }
}

TEST(IdentifiersTest, InterfacesKeepTheirGuids) {
  // What GetInstance is asked for as text and what QueryInterface then knows are the same.
  const std::pair<GUID, std::wstring_view> rows[] = {
      {IHelper::iid, IHelper::kId},           {IGlobals::iid, IGlobals::kId},
      {IShellHelper::iid, IShellHelper::kId}, {IShellDialogsHelper::iid, IShellDialogsHelper::kId},
      {IFileRater::iid, IFileRater::kId},     {ISafeguard::iid, ISafeguard::kId},
      {ISettings::iid, ISettings::kId},       {IDebugLog::iid, IDebugLog::kId}};
  for (const auto& [iid, id] : rows) {
    wchar_t buffer[39];
    ASSERT_EQ(StringFromGUID2(iid, buffer, 39), 39);
    EXPECT_TRUE(SameAsciiText(buffer, id)) << buffer;
  }
}

}  // namespace
}  // namespace smh
