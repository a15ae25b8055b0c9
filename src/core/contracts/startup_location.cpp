#include "core/contracts/startup_location.h"

#include "infra/runtime/ascii_text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace smh {

namespace {

struct LocationRow {
  TTypeStartupLocation location;
  std::wstring_view memberName;
};

// In ordinal order.
constexpr LocationRow kLocations[] = {
    {sulNone, L"sulNone"},
    {sulFolderUser, L"sulFolderUser"},
    {sulFolderCommon, L"sulFolderCommon"},
    {sulRegistryRunServices, L"sulRegistryRunServices"},
    {sulRegistryRunServicesOnce, L"sulRegistryRunServicesOnce"},
    {sulRegistryUserRun, L"sulRegistryUserRun"},
    {sulRegistryUserRunOnce, L"sulRegistryUserRunOnce"},
    {sulRegistryUserRunOnceSetup, L"sulRegistryUserRunOnceSetup"},
    {sulRegistryCommonRun, L"sulRegistryCommonRun"},
    {sulRegistryCommonRunOnce, L"sulRegistryCommonRunOnce"},
    {sulRegistryCommonRunOnceSetup, L"sulRegistryCommonRunOnceSetup"},
    {sulRegistryAllRegContextMenuHandlers, L"sulRegistryAllRegContextMenuHandlers"},
    {sulRegistryAllContextMenuHandlers, L"sulRegistryAllContextMenuHandlers"},
    {sulRegistryDirectoryContextMenuHandlers, L"sulRegistryDirectoryContextMenuHandlers"},
    {sulRegistryFolderContextMenuHandlers, L"sulRegistryFolderContextMenuHandlers"},
    {sulRegistryBackgroundContextMenuHandlers, L"sulRegistryBackgroundContextMenuHandlers"},
    {sulRegistryAllRegDragDropHandlers, L"sulRegistryAllRegDragDropHandlers"},
    {sulRegistryAllDragDropHandlers, L"sulRegistryAllDragDropHandlers"},
    {sulRegistryDirectoryDragDropHandlers, L"sulRegistryDirectoryDragDropHandlers"},
    {sulRegistryFolderDragDropHandlers, L"sulRegistryFolderDragDropHandlers"},
    {sulRegistryBackgroundDragDropHandlers, L"sulRegistryBackgroundDragDropHandlers"},
    {sulRegistryAllRegColumnHandlers, L"sulRegistryAllRegColumnHandlers"},
    {sulRegistryAllColumnHandlers, L"sulRegistryAllColumnHandlers"},
    {sulRegistryDirectoryColumnHandlers, L"sulRegistryDirectoryColumnHandlers"},
    {sulRegistryFolderColumnHandlers, L"sulRegistryFolderColumnHandlers"},
    {sulRegistryBackgroundColumnHandlers, L"sulRegistryBackgroundColumnHandlers"},
    {sulRegistryAllRegPropertyHandlers, L"sulRegistryAllRegPropertyHandlers"},
    {sulRegistryAllPropertyHandlers, L"sulRegistryAllPropertyHandlers"},
    {sulRegistryDirectoryPropertyHandlers, L"sulRegistryDirectoryPropertyHandlers"},
    {sulRegistryFolderPropertyHandlers, L"sulRegistryFolderPropertyHandlers"},
    {sulRegistryBackgroundPropertyHandlers, L"sulRegistryBackgroundPropertyHandlers"},
    {sulRegistryAllRegCopyHandlers, L"sulRegistryAllRegCopyHandlers"},
    {sulRegistryAllCopyHandlers, L"sulRegistryAllCopyHandlers"},
    {sulRegistryDirectoryCopyHandlers, L"sulRegistryDirectoryCopyHandlers"},
    {sulRegistryFolderCopyHandlers, L"sulRegistryFolderCopyHandlers"},
    {sulRegistryBackgroundCopyHandlers, L"sulRegistryBackgroundCopyHandlers"},
    {sulRegistryShellExtApproved, L"sulRegistryShellExtApproved"},
    {sulRegistryIEBrowserObjects, L"sulRegistryIEBrowserObjects"},
    {sulRegistryUserIEURLSearchHooks, L"sulRegistryUserIEURLSearchHooks"},
    {sulRegistryCommonIEURLSearchHooks, L"sulRegistryCommonIEURLSearchHooks"},
};

constexpr bool InOrdinalOrder() noexcept {
  for (std::size_t i = 0; i < std::size(kLocations); ++i) {
    if (static_cast<std::size_t>(kLocations[i].location) != i) return false;
  }
  return true;
}

static_assert(std::size(kLocations) == kLocationCount);
static_assert(InOrdinalOrder());

}  // namespace

std::wstring_view LocationMemberName(TTypeStartupLocation location) noexcept {
  return location >= 0 && location < kLocationCount ? kLocations[location].memberName : std::wstring_view();
}

std::optional<TTypeStartupLocation> LocationFromMemberName(std::wstring_view name) noexcept {
  const auto row = std::ranges::find_if(
      kLocations, [name](const LocationRow& candidate) { return SameAsciiText(candidate.memberName, name); });
  if (row == std::end(kLocations)) return std::nullopt;
  return row->location;
}

}  // namespace smh
