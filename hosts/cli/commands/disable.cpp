#include "change_runner.h"
#include "commands/commands.h"

namespace smh {
namespace {

Verdict Check(const ItemRecord& item, IStartupItem&) {
  if (!item.enabled) return {Verdict::Kind::nothingToDo, L"is disabled already."};
  if (item.Can(kActionDisable)) return {};
  return {Verdict::Kind::refused, RefusalReason(item)};
}

// The entry may have got a number behind its name, and its command is the one that was stored just then.
bool IsOutcome(const ItemRecord& before, const ItemRecord& now) {
  return now.location == before.location && now.enabled == false &&
         (now.command == before.command || now.caption == before.caption);
}

}  // namespace

void RunDisable(const Arguments& arguments) {
  ChangeItems(arguments, {.verb = L"disable",
                          .done = L"Disabled",
                          .target = {},
                          .check = Check,
                          .apply = [](IStartupItem& item) { return item.Disable(); },
                          .isOutcome = IsOutcome});
}

}  // namespace smh
