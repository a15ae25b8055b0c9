// The commands enable and disable.

#include "hosts/cli/change_runner.h"
#include "hosts/cli/commands/commands.h"

namespace smh {

namespace {

Verdict CheckSwitch(const ItemRecord& item, bool enable) {
  if (item.enabled == enable) {
    return {Verdict::Kind::kNothingToDo, enable ? L"is enabled already." : L"is disabled already."};
  }
  if (item.Can(enable ? kActionEnable : kActionDisable)) return {};
  return {Verdict::Kind::kRefused, RefusalReason(item)};
}

Change Switch(bool enable) {
  return {.verb = enable ? L"enable" : L"disable",
          .done = enable ? L"Enabled" : L"Disabled",
          .target = {},
          .check = [enable](const ItemRecord& item, IStartupItem&) { return CheckSwitch(item, enable); },
          .apply = [enable](IStartupItem& item) { return enable ? item.Enable() : item.Disable(); },
          // The entry may have got a number behind its name, and its command is the one that was stored just
          // then.
          .isOutcome =
              [enable](const ItemRecord& before, const ItemRecord& now) {
                return now.location == before.location && now.enabled == enable &&
                       (now.command == before.command || now.caption == before.caption);
              }};
}

}  // namespace

void RunEnable(const Arguments& arguments) {
  ChangeItems(arguments, Switch(true));
}

void RunDisable(const Arguments& arguments) {
  ChangeItems(arguments, Switch(false));
}

}  // namespace smh
