// Which entries the options of a command line leave: --location, --enabled and the like.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/library.h"
#include "hosts/common/reading.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// An entry is left by all that was named; what was not named does not matter. Texts are compared ignoring
// case.
struct ItemFilter {
  bool allLocations = false;              // --all: read all locations, whichever are shown
  std::vector<std::int32_t> locations{};  // --location; empty: all that were read
  std::optional<bool> enabled{};          // --enabled, --disabled
  std::vector<std::int32_t> ratings{};    // --rating
  std::wstring company{};                 // --company: somewhere in it
  std::vector<std::int32_t>
      reachabilities{};           // --missing, --unreachable: FileReachability, of a command's file
  std::wstring match{};           // --match: somewhere in any column
  std::optional<double> since{};  // --since: last write of the file, an OLE date in local time
  std::optional<bool> starts{};   // --starts, --not-starting: what Windows certainly does

  // Whether the filter leaves every entry.
  bool IsEmpty() const noexcept;
  bool Shows(const ItemRecord& item) const;
  // What has to be read. Naming a location that is not read by default is reason enough to read all.
  ReadScope Scope() const;
  // Whether it asks for what only a complete reading tells.
  bool NeedsDetails() const noexcept;
};

// "trusted", "unknown", "risky", ignoring case; none for any other text.
std::optional<std::int32_t> RatingByName(std::wstring_view name) noexcept;
// A point in time as an OLE date in local time: "2024-05-31", "2024-05-31T23:59" and "...:59", in local time,
// or so long before now: "90m", "36h", "7d", "2w". None for any other text.
std::optional<double> ParseTime(std::wstring_view text);

}  // namespace smh
