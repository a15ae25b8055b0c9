#include "sysutil/command_file.h"

namespace smh {

CommandParts ResolveCommand(std::wstring_view command) {
  CommandParts parts = FileUtils::SplitCommandLine(command);
  parts.path = FileUtils::NormalizePath(parts.path);
  std::wstring found;
  if (FileUtils::FindFileByName(parts.path, found)) parts.path = std::move(found);
  parts.path = FileUtils::MapWow64Path(parts.path);
  return parts;
}

}  // namespace smh
