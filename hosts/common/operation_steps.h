// What a change will do, before it is made: told from the entry's place alone, without a look at the registry
// or the disk. Numbers that an entry gets where its name is taken are not foreseen. Pure, for any thread.
#pragma once

#include "hosts/common/operations.h"

#include <cstdint>
#include <string>
#include <vector>

namespace smh {

// The steps in their order, as sentences without an end: "Delete the value "X" of the key "..."". Not yet
// printable.
std::vector<Phrase> StepsOf(const EntryChange& change);
// How much of the journal the change takes, in bytes: an estimate for Journal::WouldDrop. Looks at the size
// of a file that is deleted or replaced.
std::uint64_t RecordedBytes(const EntryChange& change);

}  // namespace smh
