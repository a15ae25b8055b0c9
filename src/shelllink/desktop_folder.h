// Names of the shell's namespace, asked of the desktop folder.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "infra/runtime/module_global.h"

#include <windows.h>
#include <shlobj.h>

#include <string>

namespace smh {

// The display name for parsing of a well-formed ID list in memory that the shell may read; empty when the
// shell gives none. The desktop folder is fetched by the first call and kept until the module stops. Raises
// EOleSysError when there is no desktop folder. From any thread; the shell is asked outside the lock.
std::wstring ParsingName(Bytes idList);

// The text of a shell name in any of its three forms; frees what the form owns. An offset is followed only
// inside `idList`, which is the list that the shell was asked about. Any thread; raises std::bad_alloc.
std::wstring TakeShellName(STRRET& name, Bytes idList);

// The desktop folder, released by the stop.
struct DesktopFolder;
extern ModuleGlobal<DesktopFolder> g_desktopFolder;

}  // namespace smh
