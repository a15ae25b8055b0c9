// Changes of the registry, each recorded in a checkpoint before it is made. Answers are the system's
// statuses; what keeps a change from being recorded raises EOSError, and the change is not made then.
#pragma once

#include "siblings/guardkit/open_checkpoint.h"

namespace smh {

// The key must be open for reading too.
LSTATUS SetValueRecorded(OpenCheckpoint& checkpoint, HKEY key, const std::wstring& name,
                         const ValueState& value);
LSTATUS DeleteValueRecorded(OpenCheckpoint& checkpoint, HKEY key, const std::wstring& name);

// Makes the missing levels of a path that does not exist, each as a step of its own, and opens the last one
// with `access`, whose view bits hold for all levels.
LSTATUS CreateKeyRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& path, REGSAM access,
                          HKEY* key);
// One level. `like` gives its class.
LSTATUS CreateLevelRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& level, REGSAM access,
                            const KeyState& like, HKEY* key);

// A key without subkeys, in the view of the bits. A registry link is refused: ERROR_NOT_SUPPORTED.
LSTATUS DeleteKeyRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& path, REGSAM viewBits);

}  // namespace smh
