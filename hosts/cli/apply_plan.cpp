#include "hosts/cli/apply_plan.h"

#include "hosts/common/location_names.h"
#include "hosts/common/snapshot_compare.h"
#include "hosts/common/start_words.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

constexpr std::wstring_view kShortcut = L".lnk";

std::wstring NotAllowed(const ItemRecord& item, std::wstring_view action) {
  return L"entries of " + std::wstring(LocationName(item.location)) + L" do not allow " +
         std::wstring(action) + L", or this account may not write there.";
}

// Why an entry cannot get the wanted command; empty when it can.
std::wstring WhyNotChanged(const ItemRecord& item, const SnapshotEntry& wanted) {
  if (!item.Can(kActionChangeCommand)) return NotAllowed(item, L"another command");
  if (wanted.command.empty()) return L"a command must not be empty.";
  if (HoldsNul(wanted.command)) return L"the command holds a NUL.";
  if (!SameText(item.command, wanted.command)) return {};
  return L"the commands differ in case only, which does not count as a change.";
}

// One for an entry that is there and differs.
ApplyStep Adjustment(const ItemRecord& item, const SnapshotEntry& wanted) {
  const bool needsSwitch = item.enabled != wanted.enabled;
  ApplyStep step{.verb = wanted.enabled ? Verb::kEnable : Verb::kDisable, .item = &item, .wanted = &wanted};
  if (needsSwitch && !item.Can(wanted.enabled ? kActionEnable : kActionDisable)) {
    step.reason = NotAllowed(item, wanted.enabled ? L"to be enabled" : L"to be disabled");
  }
  const bool switchDiffers =
      wanted.switchedOff && (item.enabled && IsSwitchedOff(item)) != *wanted.switchedOff;
  if (switchDiffers && item.enabled && !item.canSwitch) step.reason = NotAllowed(item, L"to be switched");
  if (item.command != wanted.command) {
    step.verb = Verb::kChange;
    if (step.reason.empty()) step.reason = WhyNotChanged(item, wanted);
  } else if (!needsSwitch && switchDiffers) {
    step.verb = *wanted.switchedOff ? Verb::kSwitchOff : Verb::kSwitchOn;
  } else if (!needsSwitch) {
    step.verb = Verb::kChange;
    step.reason = L"what the 32-bit view holds under its name is left alone.";
  }
  return step;
}

ApplyStep Deletion(const ItemRecord& item) {
  ApplyStep step{.verb = Verb::kDelete, .item = &item};
  if (!item.Can(kActionDelete)) step.reason = NotAllowed(item, L"to be deleted");
  return step;
}

}  // namespace

std::optional<std::wstring> WhyNotAddable(const SnapshotEntry& entry, const MachineFacts& machine) {
  const LocationRow& row = LocationRowOf(entry.location);
  if (!FamilyOf(row).canModify) {
    return L"entries of " + std::wstring(LocationName(entry.location)) + L" cannot be added.";
  }
  if (!entry.enabled && entry.disabledBy != kDisabledByUs) {
    return L"it was disabled by another tool, and nothing is added to that one's place.";
  }
  if (entry.root.empty()) {
    if (!EndsText(kShortcut, entry.file)) return L"it is a file, of which a snapshot has the name only.";
  } else if (entry.view != machine.OwnView()) {
    return L"it was in the 32-bit view alone, where nothing is added.";
  }
  if (NameToAdd(entry).empty()) return L"it has no name.";
  if (entry.command.empty()) return L"it has no command.";
  if (HoldsNul(entry.Name()) || HoldsNul(entry.command)) return L"its name or command holds a NUL.";
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
                     .reason = WhyNotAddable(*difference.after, machine).value_or(std::wstring())});
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
    if (!step.reason.empty()) change.outcome = Outcome{OutcomeKind::kRefused, step.reason};
  }
  return changes;
}

}  // namespace smh
