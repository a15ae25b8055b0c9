// What stands somewhere now, as the source of what is going to be written elsewhere.
#pragma once

#include "siblings/guardkit/format/journal_steps.h"

#include <windows.h>

#include <optional>
#include <string>

namespace smh {

// A value, a key by its own values, and a file by its full path; none for what is not there. The key is open
// for KEY_READ. Raises EOSError. Any thread.
std::optional<StepSource> SourceAt(HKEY key, const std::wstring& name);
std::optional<StepSource> SourceAt(HKEY key);
std::optional<StepSource> SourceAt(const std::wstring& path);

}  // namespace smh
