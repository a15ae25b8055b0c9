// The places from which Windows starts programs, for the library and for its hosts: what each is called,
// where it lies and what it allows. One row of location_rows.h makes a location; nothing else lists them.
//
// Everything here is constant: it may be used from any thread, and texts live as long as the program. Nothing
// fails but SidePaths, for want of memory.
#pragma once

#include "core/contracts/location_rows.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// The ordinals cross the module's boundary, and the names stand in logs and command lines: neither may
// change.
enum TTypeStartupLocation : std::int32_t {
  sulNone = 0,
#define SMH_MEMBER(ordinal, member, ...) member = ordinal,
  SMH_LOCATIONS(SMH_MEMBER)
#undef SMH_MEMBER
};

// How a location keeps its entries. A location class serves one or more families.
enum class LocationFamily : std::uint8_t {
  kNone,
  kStartupFolder,
  kRunKey,
  kHandlers,
  kApproved,
  kBrowserObjects,
  kSearchHooks,
};

// Whose programs are started: the user's (HKEY_CURRENT_USER), everybody's (HKEY_LOCAL_MACHINE), or both, in
// which case the key is read under both roots.
enum class LocationRoot : std::uint8_t { kNone, kUser, kMachine, kBoth };

// Whether a location is read only after SetShowAllLocations, or always.
enum class LocationReading : bool { kOnRequest, kByDefault };

// What the locations of one family have in common.
struct LocationFamilyRow {
  LocationFamily family;
  // As people see it: "Run key".
  std::wstring_view name;
  // Whether entries can be added, moved and given another command; enabled, disabled and deleted can all be.
  bool canModify;
  // Whether an entry is a key of its own, named by the last part of the item's name, instead of a value.
  bool entriesAreKeys;
  // Whether a location's title tells nothing without the group's before it.
  bool titleNeedsGroup;
  // What follows the key path of a location in the paths of its side keys, which hold disabled entries. Empty
  // for a Startup folder: its disabled files lie in other places altogether.
  std::span<const std::wstring_view> sideSuffixes;
};

// This system's own, an older name of the same kind, and the places of two other tools.
inline constexpr std::wstring_view kRunKeySides[] = {
    L"\\Disabled (Startup Manager)", L"\\Disabled (Quillmark Startup Manager)", L"\\AutorunsDisabled", L"-"};
inline constexpr std::wstring_view kExtensionSides[] = {L"\\AutorunsDisabled"};

// By LocationFamily.
inline constexpr LocationFamilyRow kLocationFamilies[] = {
    {LocationFamily::kNone, L"", false, false, false, {}},
    {LocationFamily::kStartupFolder, L"Startup folder", true, false, false, {}},
    {LocationFamily::kRunKey, L"Run key", true, false, false, kRunKeySides},
    {LocationFamily::kHandlers, L"Shell extension handlers", false, true, true, kExtensionSides},
    {LocationFamily::kApproved, L"Approved shell extensions", false, false, false, kExtensionSides},
    {LocationFamily::kBrowserObjects, L"Browser helper objects", false, true, false, kExtensionSides},
    {LocationFamily::kSearchHooks, L"URL search hooks", false, false, false, kExtensionSides},
};

// What is known of one location, the same for the library and its hosts.
struct LocationRow {
  TTypeStartupLocation location;
  // "sulRegistryUserRun"
  std::wstring_view memberName;
  // "TLocationRegistryUserRun"
  std::wstring_view className;
  // A key path below the root, without a leading backslash; for a folder, "shell:" and the shell's name of
  // it.
  std::wstring_view place;
  LocationFamily family;
  LocationRoot root;
  // As people see it: "Run keys", and "Run, this user" within them.
  std::wstring_view group;
  std::wstring_view title;
  LocationReading reading;
  // From 0.
  int listPosition;
};

// By ordinal; the first row, that of sulNone, is no location.
inline constexpr LocationRow kLocationTable[] = {
    {sulNone, L"sulNone", {}, {}, LocationFamily::kNone, LocationRoot::kNone, {}, {}, {}, -1},
#define SMH_ROW(ordinal, member, type, place, family, root, group, title, reading, listPosition) \
  {member,                                                                                       \
   L"" #member,                                                                                  \
   L"" #type,                                                                                    \
   place,                                                                                        \
   LocationFamily::family,                                                                       \
   LocationRoot::root,                                                                           \
   group,                                                                                        \
   title,                                                                                        \
   LocationReading::reading,                                                                     \
   listPosition},
    SMH_LOCATIONS(SMH_ROW)
#undef SMH_ROW
};

inline constexpr std::int32_t kFirstLocation = 1;
inline constexpr std::int32_t kLastLocation = std::size(kLocationTable) - 1;

// The row of a TTypeStartupLocation; that of sulNone for any other number.
constexpr const LocationRow& LocationRowOf(std::int32_t location) noexcept {
  return kLocationTable[location >= 0 && location <= kLastLocation ? location : sulNone];
}

// The row of the location's family.
constexpr const LocationFamilyRow& FamilyOf(const LocationRow& row) noexcept {
  return kLocationFamilies[static_cast<std::size_t>(row.family)];
}

// "sulRegistryUserRun"; empty for a number outside the enumeration.
constexpr std::wstring_view LocationMemberName(std::int32_t location) noexcept {
  const LocationRow& row = LocationRowOf(location);
  return row.location == location ? row.memberName : std::wstring_view();
}

// Whether the location, a TTypeStartupLocation, is read without IStartupItemCollection::SetShowAllLocations.
constexpr bool IsReadByDefault(std::int32_t location) noexcept {
  return LocationRowOf(location).reading == LocationReading::kByDefault;
}

// The paths of the location's side keys, below the same root or roots, in the order of reading. Entries that
// are disabled go to the first.
inline std::vector<std::wstring> SidePaths(const LocationRow& row) {
  std::vector<std::wstring> paths;
  for (const std::wstring_view suffix : FamilyOf(row).sideSuffixes) {
    paths.push_back(std::wstring(row.place).append(suffix));
  }
  return paths;
}

// The locations in the order of the location list, which is the order of reading. Fails to compile when the
// positions of the rows are not 0 to kLastLocation - 1, each once.
inline constexpr auto kLocationListOrder = [] {
  std::array<TTypeStartupLocation, kLastLocation> order{};
  for (const LocationRow& row : kLocationTable) {
    if (row.location == sulNone) continue;
    TTypeStartupLocation& place = order.at(static_cast<std::size_t>(row.listPosition));
    if (place != sulNone) throw "two locations at one position";
    place = row.location;
  }
  return order;
}();

static_assert(
    [] {
      for (std::size_t i = 0; i < std::size(kLocationTable); ++i) {
        if (kLocationTable[i].location != static_cast<std::int32_t>(i)) return false;
      }
      return true;
    }(),
    "rows stand in the order of their ordinals, which have no gap");
static_assert([] {
  for (std::size_t i = 0; i < std::size(kLocationFamilies); ++i) {
    if (kLocationFamilies[i].family != static_cast<LocationFamily>(i)) return false;
  }
  return true;
}());

}  // namespace smh
