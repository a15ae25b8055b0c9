#include "hosts/cli/change_runner.h"
#include "hosts/cli/commands/commands.h"
#include "hosts/cli/stored_command.h"
#include "hosts/common/location_names.h"

namespace smh {

namespace {

Verdict Check(const ItemRecord& item, IStartupItem& listed, std::int32_t target) {
  const std::wstring name(LocationName(target));
  if (item.location == target) return {Verdict::Kind::kNothingToDo, L"is in " + name + L" already."};
  if (!item.Can(kActionMove)) return {Verdict::Kind::kRefused, RefusalReason(item)};
  if (listed.CanMoveTo(target)) return {};
  return {Verdict::Kind::kRefused,
          name + L" does not take it: it may hold an entry of the same program, or take no entries at all" +
              (item.fileFound ? L"." : L", or none without a file.")};
}

}  // namespace

void RunMove(const Arguments& arguments) {
  const std::int32_t target = arguments.target.value_or(sulNone);
  const Library* library = nullptr;
  ChangeItems(
      arguments,
      {.verb = L"move",
       .done = L"Moved",
       .target = L" to " + std::wstring(LocationName(target)),
       .check = [=](const ItemRecord& item, IStartupItem& listed) { return Check(item, listed, target); },
       .apply = [=](IStartupItem& item) { return item.MoveTo(target); },
       // The entry gets the short name of its program, or of its shortcut, as its name in the new place.
       .isOutcome =
           [&](const ItemRecord& before, const ItemRecord& now) {
             return now.location == target && now.enabled == before.enabled &&
                    HoldsCommand(*library, now, before.command);
           },
       .prepare = [&](const Library& loaded) { library = &loaded; }});
}

}  // namespace smh
