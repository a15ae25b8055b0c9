#include "hosts/common/location_names.h"

#include "infra/runtime/ascii_text.h"

#include <iterator>

namespace smh {

namespace {

enum class Family { kNone, kStartupFolder, kRunKey, kHandlers, kApproved, kBrowserObjects, kSearchHooks };

struct FamilyRow {
  std::wstring_view name;
  bool canModify;
  bool entriesAreKeys;
};
// By Family.
constexpr FamilyRow kFamilies[] = {
    {L"", false, false},
    {L"Startup folder", true, false},
    {L"Run key", true, false},
    {L"Shell extension handlers", false, true},
    {L"Approved shell extensions", false, false},
    {L"Browser helper objects", false, true},
    {L"URL search hooks", false, false},
};
static_assert(std::size(kFamilies) == static_cast<std::size_t>(Family::kSearchHooks) + 1);

struct LocationRow {
  std::wstring_view name;
  Family family;
  // A key path without a root is read under both.
  std::wstring_view place;
};
// By ordinal.
constexpr LocationRow kRows[] = {
    {L"sulNone", Family::kNone, L""},
    {L"sulFolderUser", Family::kStartupFolder, L"shell:startup"},
    {L"sulFolderCommon", Family::kStartupFolder, L"shell:common startup"},
    {L"sulRegistryRunServices", Family::kRunKey,
     L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\RunServices"},
    {L"sulRegistryRunServicesOnce", Family::kRunKey,
     L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce"},
    {L"sulRegistryUserRun", Family::kRunKey,
     L"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {L"sulRegistryUserRunOnce", Family::kRunKey,
     L"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {L"sulRegistryUserRunOnceSetup", Family::kRunKey,
     L"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\Setup"},
    {L"sulRegistryCommonRun", Family::kRunKey,
     L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {L"sulRegistryCommonRunOnce", Family::kRunKey,
     L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {L"sulRegistryCommonRunOnceSetup", Family::kRunKey,
     L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\Setup"},
    {L"sulRegistryAllRegContextMenuHandlers", Family::kHandlers,
     L"Software\\Classes\\*\\shellex\\ContextMenuHandlers"},
    {L"sulRegistryAllContextMenuHandlers", Family::kHandlers,
     L"Software\\Classes\\AllFilesystemObjects\\shellex\\ContextMenuHandlers"},
    {L"sulRegistryDirectoryContextMenuHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\shellex\\ContextMenuHandlers"},
    {L"sulRegistryFolderContextMenuHandlers", Family::kHandlers,
     L"Software\\Classes\\Folder\\shellex\\ContextMenuHandlers"},
    {L"sulRegistryBackgroundContextMenuHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\Background\\shellex\\ContextMenuHandlers"},
    {L"sulRegistryAllRegDragDropHandlers", Family::kHandlers,
     L"Software\\Classes\\*\\shellex\\DragDropHandlers"},
    {L"sulRegistryAllDragDropHandlers", Family::kHandlers,
     L"Software\\Classes\\AllFilesystemObjects\\shellex\\DragDropHandlers"},
    {L"sulRegistryDirectoryDragDropHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\shellex\\DragDropHandlers"},
    {L"sulRegistryFolderDragDropHandlers", Family::kHandlers,
     L"Software\\Classes\\Folder\\shellex\\DragDropHandlers"},
    {L"sulRegistryBackgroundDragDropHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\Background\\shellex\\DragDropHandlers"},
    {L"sulRegistryAllRegColumnHandlers", Family::kHandlers, L"Software\\Classes\\*\\shellex\\ColumnHandlers"},
    {L"sulRegistryAllColumnHandlers", Family::kHandlers,
     L"Software\\Classes\\AllFilesystemObjects\\shellex\\ColumnHandlers"},
    {L"sulRegistryDirectoryColumnHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\shellex\\ColumnHandlers"},
    {L"sulRegistryFolderColumnHandlers", Family::kHandlers,
     L"Software\\Classes\\Folder\\shellex\\ColumnHandlers"},
    {L"sulRegistryBackgroundColumnHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\Background\\shellex\\ColumnHandlers"},
    {L"sulRegistryAllRegPropertyHandlers", Family::kHandlers,
     L"Software\\Classes\\*\\shellex\\PropertySheetHandlers"},
    {L"sulRegistryAllPropertyHandlers", Family::kHandlers,
     L"Software\\Classes\\AllFilesystemObjects\\shellex\\PropertySheetHandlers"},
    {L"sulRegistryDirectoryPropertyHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\shellex\\PropertySheetHandlers"},
    {L"sulRegistryFolderPropertyHandlers", Family::kHandlers,
     L"Software\\Classes\\Folder\\shellex\\PropertySheetHandlers"},
    {L"sulRegistryBackgroundPropertyHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\Background\\shellex\\PropertySheetHandlers"},
    {L"sulRegistryAllRegCopyHandlers", Family::kHandlers, L"Software\\Classes\\*\\shellex\\CopyHookHandlers"},
    {L"sulRegistryAllCopyHandlers", Family::kHandlers,
     L"Software\\Classes\\AllFilesystemObjects\\shellex\\CopyHookHandlers"},
    {L"sulRegistryDirectoryCopyHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\shellex\\CopyHookHandlers"},
    {L"sulRegistryFolderCopyHandlers", Family::kHandlers,
     L"Software\\Classes\\Folder\\shellex\\CopyHookHandlers"},
    {L"sulRegistryBackgroundCopyHandlers", Family::kHandlers,
     L"Software\\Classes\\Directory\\Background\\shellex\\CopyHookHandlers"},
    {L"sulRegistryShellExtApproved", Family::kApproved,
     L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved"},
    {L"sulRegistryIEBrowserObjects", Family::kBrowserObjects,
     L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects"},
    {L"sulRegistryUserIEURLSearchHooks", Family::kSearchHooks,
     L"HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer\\URLSearchHooks"},
    {L"sulRegistryCommonIEURLSearchHooks", Family::kSearchHooks,
     L"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Internet Explorer\\URLSearchHooks"},
};
static_assert(std::size(kRows) == kLastLocation + 1);

// What may be left out in front of a name.
constexpr std::wstring_view kPrefixes[] = {L"", L"sul", L"sulRegistry"};

}  // namespace

std::wstring_view LocationName(std::int32_t location) noexcept {
  return location >= kFirstLocation && location <= kLastLocation ? kRows[location].name : kRows[sulNone].name;
}

LocationFacts FactsOf(TTypeStartupLocation location) {
  const LocationRow& row = kRows[location];
  const FamilyRow& family = kFamilies[static_cast<std::size_t>(row.family)];
  LocationFacts facts{family.name, row.place, {L"enable", L"disable", L"delete"}, family.entriesAreKeys};
  if (family.canModify) facts.can.insert(facts.can.end(), {L"add", L"move", L"changeCommand"});
  return facts;
}

std::optional<TTypeStartupLocation> LocationByName(std::wstring_view name) noexcept {
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    for (const std::wstring_view prefix : kPrefixes) {
      const std::wstring_view full = kRows[location].name;
      if (full.starts_with(prefix) && SameAsciiText(name, full.substr(prefix.size()))) {
        return static_cast<TTypeStartupLocation>(location);
      }
    }
  }
  return std::nullopt;
}

}  // namespace smh
