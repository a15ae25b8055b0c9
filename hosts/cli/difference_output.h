// What differs between two states, as the outputs of compare. Pure functions, for any thread.
#pragma once

#include "hosts/cli/table_output.h"
#include "hosts/common/field.h"
#include "hosts/common/snapshot_compare.h"

#include <span>

namespace smh {

// The columns of all outputs, in their order; valid for ever.
std::span<const Field<Difference>> DifferenceFields() noexcept;
// The differences for people.
TextTable DifferenceTable(std::span<const Difference> differences);

}  // namespace smh
