// What of a state counts when an undo compares two of them. Pure functions, for any thread.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <cstdint>

namespace smh {

// Whether two states are the same to an undo. Of a key the values count, in any order, and not class and
// rights; of a file its streams, and not times, attributes and rights: these change without anybody's doing.
bool SameContent(const ValueState& a, const ValueState& b);
bool SameContent(const KeyState& a, const KeyState& b);
bool SameContent(const FileState& a, const FileState& b);

// A checksum of what SameContent compares: the same for states that are the same. Raises std::bad_alloc.
std::uint32_t ContentSum(const ValueState& state);
std::uint32_t ContentSum(const KeyState& state);
std::uint32_t ContentSum(const FileState& state);

}  // namespace smh
