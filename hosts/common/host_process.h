// What every host does first of all.
#pragma once

namespace smh {

// Takes the current folder out of the search for libraries, and makes critical disk errors fail instead of
// asking. For the whole process: call it once, before anything else is loaded.
void SetUpHostProcess() noexcept;

}  // namespace smh
