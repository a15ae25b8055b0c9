#include "change_runner.h"
#include "commands/commands.h"

namespace smh {
namespace {

Verdict Check(const ItemRecord& item, IStartupItem&) {
  if (item.enabled) return {Verdict::Kind::nothingToDo, L"is enabled already."};
  if (item.Can(kActionEnable)) return {};
  return {Verdict::Kind::refused, RefusalReason(item)};
}

// The entry may have got a number behind its name, and its command is the one that was stored just then.
bool IsOutcome(const ItemRecord& before, const ItemRecord& now) {
  return now.location == before.location && now.enabled == true &&
         (now.command == before.command || now.caption == before.caption);
}

}  // namespace

void RunEnable(const Arguments& arguments) {
  ChangeItems(arguments, {.verb = L"enable",
                          .done = L"Enabled",
                          .target = {},
                          .check = Check,
                          .apply = [](IStartupItem& item) { return item.Enable(); },
                          .isOutcome = IsOutcome});
}

}  // namespace smh
