#include "sysutil/command_file.h"

namespace smh {

namespace {

SharedText ResolveProgram(const SharedText& program) {
  SharedText path = FileUtils::NormalizePath(program);
  if (std::wstring found; FileUtils::FindFileByName(path, found)) path = found;
  FileUtils::FileExistsWow64(path);
  return path;
}

}  // namespace

CommandParts ResolveCommand(const wchar_t* command) {
  CommandParts parts = FileUtils::SplitCommandLine(command);
  parts.path = ResolveProgram(parts.path);
  return parts;
}

SharedText ResolveCommandToFile(const wchar_t* command) {
  return ResolveProgram(FileUtils::ProgramOfCommand(command));
}

}  // namespace smh
