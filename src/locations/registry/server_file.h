// From a class identifier to the file that serves it. Any thread.
#pragma once

#include "infra/runtime/module_global.h"

#include <windows.h>

#include <optional>
#include <string>

namespace smh {

// Text in braces that the platform takes for a class identifier ("{8-4-4-4-12}").
bool IsClassIdentifier(const std::wstring& text);

// The in-process server of a class as registered in a view ("InprocServer32"), unexpanded; empty for no
// identifier, no server, one that may not be looked at, or one that is no text. None when the registration
// cannot be opened now, though it may be there. Raises EOSError when it cannot be read.
std::optional<std::wstring> ServerFile(const std::wstring& identifier, REGSAM view);
// The same for a change, which must not take what cannot be looked at for nothing: raises EOSError when the
// registration cannot be opened, too.
std::wstring RequireServerFile(const std::wstring& identifier, REGSAM view);

// What both look through; from the module's start to its stop.
struct NativeClasses;
extern ModuleGlobal<NativeClasses> g_nativeClasses;

}  // namespace smh
