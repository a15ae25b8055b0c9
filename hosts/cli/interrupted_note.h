// Changes that ended half-way, named at the start of a command.
#pragma once

namespace smh {

// Says on standard error, in one line, which changes were interrupted; nothing when none was, or when that
// cannot be told.
void NameInterruptedCheckpoints() noexcept;

}  // namespace smh
