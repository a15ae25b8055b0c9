// The first block of the statistics log: the machine, its user, the versions and the Run keys.
#pragma once

namespace smh {

// Empties the log and writes the block, while the log's lock is held. Also fixes the names that a save at
// process exit uses. Initialises COM for the time of the call. A Run key that cannot be read leaves an error
// record in its place; raises what the services of basekit raise. Any thread.
void LogSystemInfo();

}  // namespace smh
