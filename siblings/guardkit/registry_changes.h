// Changes of the registry, each recorded in a checkpoint before it is made. For the thread that opened the
// checkpoint, and with it has the journal's lock. Answers are Win32 statuses; what keeps a change from being
// recorded raises EOSError, and the change is not made then.
//
// `expected`, where it is given, is what an undo has planned with: what has another content is left alone,
// ERROR_REVISION_MISMATCH.
#pragma once

#include "siblings/guardkit/checkpoints.h"

namespace smh {

// The key must be open for reading too. A value that has that state already is not touched.
LSTATUS SetValueRecorded(OpenCheckpoint& checkpoint, HKEY key, const std::wstring& name,
                         const ValueState& value, const ValueState* expected = nullptr);
// Writes what the checkpoint changed in other hives through to the disk first. ERROR_FILE_NOT_FOUND when
// there is no such value.
LSTATUS DeleteValueRecorded(OpenCheckpoint& checkpoint, HKEY key, const std::wstring& name,
                            const ValueState* expected = nullptr);

// Makes the missing levels of a path that does not exist, each as a step of its own, and opens the last one
// with `access`, whose view bits hold for all levels. The caller closes `*key`, which is set on success only.
LSTATUS CreateKeyRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& path, REGSAM access,
                          HKEY* key);
// One level, which must be missing, with the class of `like` and nothing else of it. `*key` as above. A link
// that leads nowhere is not written through: ERROR_NOT_SUPPORTED.
LSTATUS CreateLevelRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& level, REGSAM access,
                            const KeyState& like, HKEY* key);

// A key without subkeys, in the view of the bits: ERROR_ACCESS_DENIED for one that has any. Its values and
// security are recorded with it. A registry link is refused: ERROR_NOT_SUPPORTED.
LSTATUS DeleteKeyRecorded(OpenCheckpoint& checkpoint, HKEY parent, const std::wstring& path, REGSAM viewBits,
                          const KeyState* expected = nullptr);

}  // namespace smh
