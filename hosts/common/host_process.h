// What every host does first of all.
#pragma once

namespace smh {

// No library comes from the current folder, and no box about a missing disk holds the program. Call it before
// anything else is loaded.
void SetUpHostProcess() noexcept;

}  // namespace smh
