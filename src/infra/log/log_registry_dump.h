// Registry keys in the statistics log.
#pragma once

#include <windows.h>

#include <string>

namespace smh {

// Dumps the values of a key, with `recurse` those of the keys below it too, but for links; the log's lock is
// held meanwhile. `view` is 0 or KEY_WOW64_64KEY, `root` a predefined key. Nothing for a key that cannot be
// opened; raises EOSError when it cannot be read to its end. Any thread.
void LogRegistryKey(REGSAM view, HKEY root, bool recurse, const std::wstring& key);

}  // namespace smh
