#include "change_runner.h"
#include "commands/commands.h"

#include "infra/text.h"

namespace smh {
namespace {

Verdict Check(const ItemRecord& item, const std::wstring& command) {
  if (item.command == command) return {Verdict::Kind::nothingToDo, L"has that command already."};
  if (!item.Can(kActionChangeCommand)) return {Verdict::Kind::refused, RefusalReason(item)};
  if (!SameText(item.command, command)) return {};
  return {Verdict::Kind::refused, L"the new command differs in case only, which does not count as a change."};
}

}  // namespace

void RunChange(const Arguments& arguments) {
  const std::wstring& command = arguments.command;
  ChangeItems(arguments,
              {.verb = L"change",
               .done = L"Changed",
               .target = {},
               .check = [&command](const ItemRecord& item, IStartupItem&) { return Check(item, command); },
               .apply = [&command](IStartupItem& item) { return item.ChangeCommand(command.c_str()); },
               .isOutcome =
                   [&command](const ItemRecord& before, const ItemRecord& now) {
                     return now.location == before.location && now.name == before.name &&
                            now.enabled == before.enabled && now.command == command;
                   }});
}

}  // namespace smh
