// The outcomes of changes against the list as it is behind the last one.
#pragma once

#include "hosts/common/operations.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace smh {

// What of an entry is compared: much less than a record of it, for lists of many.
struct EntryStand {
  std::int32_t location = sulNone;
  std::wstring name{};
  std::wstring command{};
  bool isEnabled = false;
  bool isSwitchedOff = false;
};
EntryStand StandOf(const ItemRecord& item);
// Of every listed entry: one state of the list, under its lock. Raises HostError.
std::vector<EntryStand> ReadStands(const Library& library);

// Looks every outcome that was good up in the list as it was read anew behind the last change: the one that
// is not there has failed, and says so. Of several changes of one entry the last one counts. Answers the
// changes that have failed here.
std::vector<const EntryChange*> CompareOutcomes(std::span<EntryChange> changes,
                                                std::span<const EntryStand> listNow);

}  // namespace smh
