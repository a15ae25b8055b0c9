#include "hosts/cli/change_runner.h"
#include "hosts/cli/commands/commands.h"

namespace smh {

namespace {

Verdict Check(const ItemRecord& item, IStartupItem&) {
  if (item.Can(kActionDelete)) return {};
  return {Verdict::Kind::kRefused, RefusalReason(item)};
}

}  // namespace

void RunDelete(const Arguments& arguments) {
  ChangeItems(arguments, {.verb = L"delete",
                          .done = L"Deleted",
                          .target = {},
                          .check = Check,
                          .apply = [](IStartupItem& item) { return item.Delete(); },
                          .isOutcome = {}});
}

}  // namespace smh
