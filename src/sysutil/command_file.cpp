#include "sysutil/command_file.h"

namespace smh {

namespace {

std::wstring ResolveProgram(std::wstring_view program) {
  std::wstring path = FileUtils::NormalizePath(program);
  if (std::wstring found; FileUtils::FindFileByName(path, found)) path = std::move(found);
  return FileUtils::MapWow64Path(path);
}

}  // namespace

CommandParts ResolveCommand(std::wstring_view command) {
  CommandParts parts = FileUtils::SplitCommandLine(command);
  parts.path = ResolveProgram(parts.path);
  return parts;
}

std::wstring ResolveCommandToFile(std::wstring_view command) {
  return ResolveProgram(FileUtils::ProgramOfCommand(command));
}

}  // namespace smh
