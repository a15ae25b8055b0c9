#include "core/contracts/startup_location.h"

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

}  // namespace
}  // namespace smh
