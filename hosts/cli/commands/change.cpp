#include "hosts/cli/change_runner.h"
#include "hosts/cli/commands/commands.h"
#include "hosts/cli/stored_command.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

Verdict Check(const Library& library, const ItemRecord& item, const std::wstring& command) {
  if (HoldsCommand(library, item, command)) {
    return {Verdict::Kind::kNothingToDo, L"has that command already."};
  }
  if (!item.Can(kActionChangeCommand)) return {Verdict::Kind::kRefused, RefusalReason(item)};
  if (!SameText(item.command, command)) return {};
  return {Verdict::Kind::kRefused,
          L"the new command differs in case only, which does not count as a change."};
}

}  // namespace

void RunChange(const Arguments& arguments) {
  const std::wstring& command = arguments.command;
  const Library* library = nullptr;
  ChangeItems(arguments,
              {.verb = L"change",
               .done = L"Changed",
               .target = {},
               .check = [&](const ItemRecord& item, IStartupItem&) { return Check(*library, item, command); },
               .apply = [&](IStartupItem& item) { return item.ChangeCommand(command.c_str()); },
               .isOutcome =
                   [&](const ItemRecord& before, const ItemRecord& now) {
                     return now.location == before.location && now.name == before.name &&
                            now.enabled == before.enabled && HoldsCommand(*library, now, command);
                   },
               .prepare = [&](const Library& loaded) { library = &loaded; }});
}

}  // namespace smh
