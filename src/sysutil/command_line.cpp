// Joining and splitting of command lines.
#include "sysutil/uFileUtils.h"

#include "core/uDllGlobals.h"
#include "infra/text.h"

#include <algorithm>

namespace smh {

std::wstring FileUtils::MakeCommandLine(std::wstring_view path, std::wstring_view arguments) {
  std::wstring command = Trim(path);
  if (command.find(L' ') != std::wstring::npos) command = QuoteText(command);
  const std::wstring trimmed = Trim(arguments);
  if (!trimmed.empty()) command.append(1, L' ').append(trimmed);
  return command;
}

std::wstring FileUtils::ProgramOfCommand(const std::wstring& command) {
  BoundaryString program;
  DLLGlobals::ShellHelper().GetProgramPart(command.c_str(), program.Put());
  return Trim(program.View());
}

CommandParts FileUtils::SplitCommandLine(const std::wstring& command) {
  CommandParts parts;
  parts.path = ProgramOfCommand(command);
  // Kept on purpose: the path goes from the arguments too where it is named again.
  const std::wstring rest = Trim(ReplaceText(command, parts.path, L""));
  parts.arguments =
      Trim(std::wstring_view(rest).substr(std::min(rest.find_first_not_of(L"\" "), rest.size())));
  return parts;
}

}  // namespace smh
