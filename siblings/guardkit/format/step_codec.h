// The fields of a step, and of what it wrote a copy of, within their record. docs/undo.md describes them.
#pragma once

#include "siblings/guardkit/format/record_codec.h"

#include <optional>

namespace smh {

// The step's kind, fixed in the format, and its fields. Raises std::bad_alloc; any thread.
void WriteStep(RecordWriter& out, const Step& step);
// None for a kind that there is not. What else is not as it should be makes the cursor fail. Raises
// std::bad_alloc; any thread.
std::optional<Step> ReadStep(ByteCursor& in);

// A source of no kind leaves no trace, and nothing at the cursor is one. As above.
void WriteSource(RecordWriter& out, const StepSource& source);
StepSource ReadSource(ByteCursor& in);

}  // namespace smh
