#include "hosts/cli/apply_plan.h"

#include "hosts/cli/texts/plan_texts.h"
#include "hosts/common/location_names.h"
#include "hosts/common/snapshot_compare.h"
#include "hosts/common/start_words.h"
#include "hosts/common/texts/refusal_texts.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

constexpr std::wstring_view kShortcut = L".lnk";

Phrase NotAllowed(const Text& why, const ItemRecord& item) {
  return Say(why, LocationName(item.location));
}

// Why an entry cannot get the wanted command; empty when it can.
Phrase WhyNotChanged(const ItemRecord& item, const SnapshotEntry& wanted) {
  if (!item.Can(kActionChangeCommand)) return NotAllowed(texts::kForbidsCommand, item);
  if (wanted.command.empty()) return texts::kEmptyCommand;
  if (HoldsNul(wanted.command)) return texts::kCommandHoldsNul;
  if (!SameText(item.command, wanted.command)) return {};
  return texts::kOnlyCase;
}

// One for an entry that is there and differs.
ApplyStep Adjustment(const ItemRecord& item, const SnapshotEntry& wanted) {
  const bool needsSwitch = item.enabled != wanted.enabled;
  ApplyStep step{.verb = wanted.enabled ? Verb::kEnable : Verb::kDisable, .item = &item, .wanted = &wanted};
  if (needsSwitch && !item.Can(wanted.enabled ? kActionEnable : kActionDisable)) {
    step.reason = NotAllowed(wanted.enabled ? texts::kForbidsEnabling : texts::kForbidsDisabling, item);
  }
  const bool switchDiffers =
      wanted.switchedOff && (item.enabled && IsSwitchedOff(item)) != *wanted.switchedOff;
  if (switchDiffers && item.enabled && !item.canSwitch)
    step.reason = NotAllowed(texts::kForbidsSwitching, item);
  if (item.command != wanted.command) {
    step.verb = Verb::kChange;
    if (step.reason.IsEmpty()) step.reason = WhyNotChanged(item, wanted);
  } else if (!needsSwitch && switchDiffers) {
    step.verb = *wanted.switchedOff ? Verb::kSwitchOff : Verb::kSwitchOn;
  } else if (!needsSwitch) {
    step.verb = Verb::kChange;
    step.reason = texts::kOtherViewLeft;
  }
  return step;
}

ApplyStep Deletion(const ItemRecord& item) {
  ApplyStep step{.verb = Verb::kDelete, .item = &item};
  if (!item.Can(kActionDelete)) step.reason = NotAllowed(texts::kForbidsDeleting, item);
  return step;
}

}  // namespace

std::optional<Phrase> WhyNotAddable(const SnapshotEntry& entry, const MachineFacts& machine) {
  const LocationRow& row = LocationRowOf(entry.location);
  if (!FamilyOf(row).canModify) {
    return Say(texts::kCannotBeAdded, LocationName(entry.location));
  }
  if (!entry.enabled && entry.disabledBy != kDisabledByUs) {
    return texts::kDisabledByOther;
  }
  if (entry.root.empty()) {
    if (!EndsText(kShortcut, entry.file)) return texts::kNameOnly;
  } else if (entry.view != machine.OwnView()) {
    return texts::kOnlyIn32View;
  }
  if (NameToAdd(entry).empty()) return texts::kHasNoName;
  if (entry.command.empty()) return texts::kLacksCommand;
  if (HoldsNul(entry.Name()) || HoldsNul(entry.command)) return texts::kNameOrCommandHoldsNul;
  return std::nullopt;
}

std::wstring NameToAdd(const SnapshotEntry& entry) {
  std::wstring name(entry.Name());
  if (entry.root.empty() && EndsText(kShortcut, name)) name.resize(name.size() - kShortcut.size());
  return name;
}

std::vector<ApplyStep> PlanApply(std::span<const SnapshotEntry> wanted, std::span<const ItemRecord> items,
                                 const MachineFacts& machine, OtherEntries others) {
  const std::vector<SnapshotEntry> present = EntriesOf(items);
  const std::vector<Difference> differences = CompareEntries(present, wanted);
  const auto itemOf = [&](const Difference& difference) -> const ItemRecord& {
    return items[static_cast<std::size_t>(difference.before - present.data())];
  };
  std::vector<ApplyStep> steps;
  for (const Difference& difference : differences) {
    const bool isOther = difference.after == nullptr;
    if (isOther && others == OtherEntries::kDeleted) steps.push_back(Deletion(itemOf(difference)));
  }
  for (const Difference& difference : differences) {
    if (difference.before == nullptr || difference.after == nullptr) continue;
    steps.push_back(Adjustment(itemOf(difference), *difference.after));
  }
  for (const Difference& difference : differences) {
    if (difference.before != nullptr) continue;
    steps.push_back({.verb = Verb::kAdd,
                     .item = nullptr,
                     .wanted = difference.after,
                     .reason = WhyNotAddable(*difference.after, machine).value_or(Phrase())});
  }
  return steps;
}

std::vector<EntryChange> ChangesOf(std::span<const ApplyStep> steps, const WrapperFinder& wrapperOf) {
  std::vector<EntryChange> changes;
  for (const ApplyStep& step : steps) {
    EntryChange& change = changes.emplace_back();
    change.verb = step.verb;
    if (step.item != nullptr) {
      change.before = *step.item;
      change.listed = wrapperOf(*step.item);
    } else {
      change.before.location = step.wanted->location;
      change.before.caption = NameToAdd(*step.wanted);
      change.before.command = step.wanted->command;
    }
    if (step.verb == Verb::kChange) change.order.command = step.wanted->command;
    if (step.wanted != nullptr) {
      change.order.enabled = step.wanted->enabled;
      change.order.switchedOff = step.wanted->switchedOff;
    }
    if (!step.reason.IsEmpty()) change.outcome = Outcome{OutcomeKind::kRefused, step.reason};
  }
  return changes;
}

}  // namespace smh
