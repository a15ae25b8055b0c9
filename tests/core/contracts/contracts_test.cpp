#include "core/contracts/location_table.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <string>
#include <utility>

namespace smh::test {
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
    EXPECT_EQ(LocationMemberName(ordinal), name);
  }
  for (const int ordinal : {-1, kLastLocation + 1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(LocationMemberName(ordinal), L"") << ordinal;
    EXPECT_EQ(LocationRowOf(ordinal).location, sulNone) << ordinal;
    EXPECT_FALSE(IsReadByDefault(ordinal)) << ordinal;
  }
}

// Ordinals, member names and classes lie with every host: what is published cannot be another's.
TEST(StartupLocationTest, NoTwoLocationsShareANameAPlaceOrATitle) {
  std::set<std::wstring> seen;
  for (const LocationRow& row : kLocationTable) {
    if (row.location == sulNone) continue;
    const std::wstring root = std::to_wstring(static_cast<int>(row.root)) + L'\\';
    for (const std::wstring& text :
         {std::wstring(row.memberName), std::wstring(row.className), root + std::wstring(row.place),
          std::wstring(row.group).append(L"\n").append(row.title)}) {
      EXPECT_FALSE(text.empty());
      EXPECT_TRUE(seen.insert(text).second) << row.location;
    }
    EXPECT_NE(row.family, LocationFamily::kNone);
    EXPECT_NE(row.root, LocationRoot::kNone);
    EXPECT_NE(row.place.front(), L'\\');
    EXPECT_EQ(SidePaths(row).empty(), row.family == LocationFamily::kStartupFolder);
  }
}

}  // namespace
}  // namespace smh::test
