#include "hosts/cli/stored_command.h"

#include "infra/runtime/text.h"

namespace smh {

namespace {

bool IsInFolder(const ItemRecord& item) noexcept {
  return item.location == sulFolderUser || item.location == sulFolderCommon;
}

}  // namespace

bool HoldsCommand(const Library& library, const ItemRecord& item, const std::wstring& command) {
  if (item.command == command) return true;
  if (!IsInFolder(item)) return false;
  // The library shows the file, in quotes when it has a blank, and then the arguments.
  const std::wstring file = library.ResolveCommandFile(item.command);
  const std::wstring shown = file.find(L' ') == std::wstring::npos ? file : QuoteText(file);
  if (!item.command.starts_with(shown)) return false;
  const std::wstring arguments = Trim(std::wstring_view(item.command).substr(shown.size()));
  std::wstring program = Trim(command);
  if (!program.ends_with(arguments)) return false;
  program = Trim(program.substr(0, program.size() - arguments.size()));
  return SameText(library.ResolveCommandFile(QuoteText(DequoteText(program))), file);
}

}  // namespace smh
