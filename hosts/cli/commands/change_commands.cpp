#include "hosts/cli/commands/change_commands.h"

#include "hosts/cli/change_runner.h"

namespace smh {

void RunEnable(const Arguments& arguments) {
  ChangeEntries(arguments, Verb::kEnable);
}

void RunDisable(const Arguments& arguments) {
  ChangeEntries(arguments, arguments.likeTaskManager ? Verb::kSwitchOff : Verb::kDisable);
}

void RunDelete(const Arguments& arguments) {
  ChangeEntries(arguments, Verb::kDelete);
}

void RunMove(const Arguments& arguments) {
  ChangeEntries(arguments, Verb::kMove, {.target = arguments.target.value_or(sulNone)});
}

void RunChange(const Arguments& arguments) {
  ChangeEntries(arguments, Verb::kChange, {.command = arguments.command});
}

void RunAdd(const Arguments& arguments) {
  EntryChange change{.verb = Verb::kAdd};
  // The command line requires one.
  change.before.location = arguments.locations.front();
  change.before.caption = arguments.name;
  change.before.command = arguments.command;
  AddEntry(arguments, std::move(change));
}

}  // namespace smh
