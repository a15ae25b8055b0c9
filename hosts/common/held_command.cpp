#include "hosts/common/held_command.h"

#include "core/contracts/location_table.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <optional>

namespace smh {

namespace {

constexpr std::wstring_view kBlanks = L" \t";

// A command line in two.
struct Parts {
  std::wstring program;
  std::wstring arguments;
};

// None when its quotes are not closed, or a word goes on behind them.
std::optional<Parts> SplitQuoted(std::wstring_view command) {
  const std::size_t close = command.find(L'"', 1);
  if (close == std::wstring_view::npos) return std::nullopt;
  const std::wstring_view rest = command.substr(close + 1);
  if (!rest.empty() && kBlanks.find(rest.front()) == std::wstring_view::npos) return std::nullopt;
  return Parts{Trim(command.substr(1, close - 1)), Trim(rest)};
}

// As the library shows the command of a shortcut: a program with blanks is in quotes.
std::optional<Parts> SplitShown(std::wstring_view command) {
  if (command.starts_with(L'"')) return SplitQuoted(command);
  const std::size_t end = std::min(command.find(L' '), command.size());
  return Parts{std::wstring(command.substr(0, end)), Trim(command.substr(end))};
}

// Without quotes only the arguments that are looked for tell where the program ends.
std::optional<Parts> SplitGiven(std::wstring_view command, const std::wstring& arguments) {
  if (command.starts_with(L'"')) return SplitQuoted(command);
  if (arguments.empty()) return Parts{std::wstring(command), {}};
  if (!command.ends_with(arguments)) return std::nullopt;
  const std::wstring_view program = command.substr(0, command.size() - arguments.size());
  if (program.empty() || kBlanks.find(program.back()) == std::wstring_view::npos) return std::nullopt;
  return Parts{Trim(program), arguments};
}

// Whether the text is one name for that file, and not a name with arguments behind it.
bool NamesFile(const Library& library, const std::wstring& program, const std::wstring& file) {
  if (SameText(program, file)) return true;
  const std::wstring_view name = FileNamePart(program);
  const std::wstring_view wanted = FileNamePart(file);
  const bool isNameOfIt = SameText(name, wanted) || (ExtensionPart(name).empty() &&
                                                     SameText(name, wanted.substr(0, wanted.rfind(L'.'))));
  if (!isNameOfIt || FolderPart(program).find(name) != std::wstring_view::npos) return false;
  return SameText(library.ResolveCommandFile(QuoteText(program)), file);
}

}  // namespace

bool HoldsCommand(const Library& library, const ItemRecord& item, const std::wstring& command) {
  if (item.command == command) return true;
  if (LocationRowOf(item.location).family != LocationFamily::kStartupFolder) return false;
  const std::optional<Parts> held = SplitShown(item.command);
  if (!held) return false;
  const std::optional<Parts> given = SplitGiven(Trim(command), held->arguments);
  return given && given->arguments == held->arguments && NamesFile(library, given->program, held->program);
}

}  // namespace smh
