#include "sysutil/command_file.h"

namespace smh {

namespace {

std::wstring ResolveProgram(std::wstring_view program) {
  std::wstring path = FileUtils::NormalizePath(program);
  if (std::wstring found; FileUtils::FindFileByName(path, found)) path = std::move(found);
  FileUtils::FileExistsWow64(path);
  return path;
}

}  // namespace

CommandParts ResolveCommand(const std::wstring& command) {
  CommandParts parts = FileUtils::SplitCommandLine(command);
  parts.path = ResolveProgram(parts.path);
  return parts;
}

std::wstring ResolveCommandToFile(const std::wstring& command) {
  return ResolveProgram(FileUtils::ProgramOfCommand(command));
}

}  // namespace smh
