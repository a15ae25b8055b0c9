// What decides whether Windows starts the entries of a location: one row for each, beside location_rows.h.
#pragma once

#include "core/contracts/location_table.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace smh {

// The keys of StartupApproved that hold the switches of a list. kRun32 is that of the machine's Run key in
// the 32-bit view.
enum class SwitchList : std::uint8_t { kNone, kRun, kRun32, kStartupFolder };

// Who reads a location.
enum class StartedBy : std::uint8_t {
  kShell,        // the shell starts a program
  kSetup,        // a set-up that is under way: nothing tells whether there is one
  kNobody,       // Windows 95 to Me did
  kExtensions,   // the shell, and every program that shows its dialogs, loads the class
  kColumns,      // as kExtensions, until Windows Vista
  kPermissions,  // only what is loaded for another entry
  kBrowser,      // the browser loads the class
  kSearch,       // the same, for addresses that are none
};

struct StartRow {
  TTypeStartupLocation location;
  StartedBy by;
  SwitchList switches = SwitchList::kNone;
  // Of what stands in the 32-bit view of a 64-bit Windows; kNone where both views are one key.
  SwitchList switches32 = SwitchList::kNone;
  // The value of Policies\Explorer that has the list passed over.
  std::wstring_view policy{};
};

// Locations that are not named are the shell's extensions.
inline constexpr StartRow kStartRows[] = {
    {sulFolderUser, StartedBy::kShell, SwitchList::kStartupFolder},
    {sulFolderCommon, StartedBy::kShell, SwitchList::kStartupFolder},
    {sulRegistryRunServices, StartedBy::kNobody},
    {sulRegistryRunServicesOnce, StartedBy::kNobody},
    {sulRegistryUserRun, StartedBy::kShell, SwitchList::kRun, SwitchList::kNone, L"DisableCurrentUserRun"},
    {sulRegistryUserRunOnce, StartedBy::kShell, SwitchList::kNone, SwitchList::kNone,
     L"DisableCurrentUserRunOnce"},
    {sulRegistryUserRunOnceSetup, StartedBy::kSetup},
    {sulRegistryCommonRun, StartedBy::kShell, SwitchList::kRun, SwitchList::kRun32,
     L"DisableLocalMachineRun"},
    {sulRegistryCommonRunOnce, StartedBy::kShell, SwitchList::kNone, SwitchList::kNone,
     L"DisableLocalMachineRunOnce"},
    {sulRegistryCommonRunOnceSetup, StartedBy::kSetup},
    {sulRegistryAllRegColumnHandlers, StartedBy::kColumns},
    {sulRegistryAllColumnHandlers, StartedBy::kColumns},
    {sulRegistryDirectoryColumnHandlers, StartedBy::kColumns},
    {sulRegistryFolderColumnHandlers, StartedBy::kColumns},
    {sulRegistryBackgroundColumnHandlers, StartedBy::kColumns},
    {sulRegistryShellExtApproved, StartedBy::kPermissions},
    {sulRegistryIEBrowserObjects, StartedBy::kBrowser},
    {sulRegistryUserIEURLSearchHooks, StartedBy::kSearch},
    {sulRegistryCommonIEURLSearchHooks, StartedBy::kSearch},
};

// A copy: valid as long as it is kept.
constexpr StartRow StartRowOf(TTypeStartupLocation location) noexcept {
  const auto* const row = std::ranges::find(kStartRows, location, &StartRow::location);
  return row == std::end(kStartRows) ? StartRow{location, StartedBy::kExtensions} : *row;
}

}  // namespace smh
