// The folders that 64-bit Windows redirects for 32-bit programs (WOW64), and the paths behind them.
#pragma once

#include "infra/runtime/module_global.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// A folder as this process names it and another name that reaches its other side. Both with a trailing
// backslash.
struct FolderTwin {
  std::wstring folder;
  std::wstring twin;
};

// The system folder and "Sysnative", the two Program Files folders, each both ways; empty when the process is
// not a 32-bit one on 64-bit Windows.
std::vector<FolderTwin> GatherFolderTwins();
// `path` with the first row's folder that begins it replaced by its twin, ignoring case; empty without such a
// row.
std::wstring RedirectedTwin(std::wstring_view path, std::span<const FolderTwin> twins);
// Whether `path` or its twin names a file. The rows are gathered by the first call and kept; any thread may
// call between start and stop. Asks the disk.
bool FileOrTwinExists(const std::wstring& path);

// The rows, which live from start-up to shut-down.
struct ModuleFolderTwins;
extern ModuleGlobal<ModuleFolderTwins> g_folderTwins;

}  // namespace smh
