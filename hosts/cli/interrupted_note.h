// Changes that ended half-way, named at the start of a command.
#pragma once

namespace smh {

// Says on standard error, in one line, which changes of this user or, elevated, of the machine were
// interrupted; nothing when none was, or when the journal cannot be read.
void NameInterruptedCheckpoints() noexcept;

}  // namespace smh
