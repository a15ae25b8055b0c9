#include "location_names.h"

#include <iterator>

namespace smh {
namespace {

// By ordinal.
constexpr std::wstring_view kNames[] = {
    L"sulNone",
    L"sulFolderUser",
    L"sulFolderCommon",
    L"sulRegistryRunServices",
    L"sulRegistryRunServicesOnce",
    L"sulRegistryUserRun",
    L"sulRegistryUserRunOnce",
    L"sulRegistryUserRunOnceSetup",
    L"sulRegistryCommonRun",
    L"sulRegistryCommonRunOnce",
    L"sulRegistryCommonRunOnceSetup",
    L"sulRegistryAllRegContextMenuHandlers",
    L"sulRegistryAllContextMenuHandlers",
    L"sulRegistryDirectoryContextMenuHandlers",
    L"sulRegistryFolderContextMenuHandlers",
    L"sulRegistryBackgroundContextMenuHandlers",
    L"sulRegistryAllRegDragDropHandlers",
    L"sulRegistryAllDragDropHandlers",
    L"sulRegistryDirectoryDragDropHandlers",
    L"sulRegistryFolderDragDropHandlers",
    L"sulRegistryBackgroundDragDropHandlers",
    L"sulRegistryAllRegColumnHandlers",
    L"sulRegistryAllColumnHandlers",
    L"sulRegistryDirectoryColumnHandlers",
    L"sulRegistryFolderColumnHandlers",
    L"sulRegistryBackgroundColumnHandlers",
    L"sulRegistryAllRegPropertyHandlers",
    L"sulRegistryAllPropertyHandlers",
    L"sulRegistryDirectoryPropertyHandlers",
    L"sulRegistryFolderPropertyHandlers",
    L"sulRegistryBackgroundPropertyHandlers",
    L"sulRegistryAllRegCopyHandlers",
    L"sulRegistryAllCopyHandlers",
    L"sulRegistryDirectoryCopyHandlers",
    L"sulRegistryFolderCopyHandlers",
    L"sulRegistryBackgroundCopyHandlers",
    L"sulRegistryShellExtApproved",
    L"sulRegistryIEBrowserObjects",
    L"sulRegistryUserIEURLSearchHooks",
    L"sulRegistryCommonIEURLSearchHooks",
};
static_assert(std::size(kNames) == kLastLocation + 1);

// What may be left out in front of a name.
constexpr std::wstring_view kPrefixes[] = {L"", L"sul", L"sulRegistry"};

wchar_t AsciiLower(wchar_t unit) noexcept {
  return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
}

bool SameAsciiText(std::wstring_view a, std::wstring_view b) noexcept {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
  }
  return true;
}

}  // namespace

std::wstring_view LocationName(std::int32_t location) noexcept {
  return location >= kFirstLocation && location <= kLastLocation ? kNames[location] : kNames[sulNone];
}

std::optional<TTypeStartupLocation> LocationByName(std::wstring_view name) noexcept {
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    for (const std::wstring_view prefix : kPrefixes) {
      const std::wstring_view full = kNames[location];
      if (full.starts_with(prefix) && SameAsciiText(name, full.substr(prefix.size()))) {
        return static_cast<TTypeStartupLocation>(location);
      }
    }
  }
  return std::nullopt;
}

bool IsUsualLocation(std::int32_t location) noexcept {
  switch (location) {
    case sulFolderUser:
    case sulFolderCommon:
    case sulRegistryUserRun:
    case sulRegistryUserRunOnce:
    case sulRegistryCommonRun:
    case sulRegistryCommonRunOnce:
      return true;
    default:
      return false;
  }
}

}  // namespace smh
