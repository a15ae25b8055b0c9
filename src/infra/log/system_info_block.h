// The first block of the statistics log: the machine, its user, the versions, and the Run keys, whose dump
// serves any key.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// Dumps the values of a key, with `recurse` those of the keys below it too, but for links; the log's lock is
// held meanwhile. `view` is 0 or KEY_WOW64_64KEY, `root` a predefined key. Nothing for a key that cannot be
// opened; raises EOSError when it cannot be read to its end. Any thread.
void LogRegistryKey(REGSAM view, HKEY root, bool recurse, const std::wstring& key);

// Empties the log and writes the block, while the log's lock is held. Also fixes the names that a save at
// process exit uses. Initialises COM for the time of the call. A Run key that cannot be read leaves an error
// record in its place; raises what the services of basekit raise. Any thread.
void LogSystemInfo();

}  // namespace smh
