// The outcomes of changes against the list as it is behind the last one.
#pragma once

#include "hosts/common/operations.h"

#include <span>
#include <vector>

namespace smh {

// Looks every outcome that was good up in the list as it was read anew behind the last change: the one that
// is not there has failed, and says so. Of several changes of one entry the last one counts. Answers the
// changes that have failed here.
std::vector<const EntryChange*> CompareOutcomes(std::span<EntryChange> changes,
                                                std::span<const ItemRecord> listNow);

}  // namespace smh
