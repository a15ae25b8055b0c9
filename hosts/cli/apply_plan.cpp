#include "hosts/cli/apply_plan.h"

#include "hosts/cli/snapshot_compare.h"
#include "hosts/common/location_names.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

constexpr std::wstring_view kShortcut = L".lnk";

ApplyStep Impossible(const ItemRecord* item, const SnapshotEntry* wanted, std::wstring reason) {
  return {.action = ApplyAction::kImpossible, .item = item, .wanted = wanted, .reason = std::move(reason)};
}

std::wstring NotAllowed(const ItemRecord& item, std::wstring_view action) {
  return L"entries of " + std::wstring(LocationName(item.location)) + L" do not allow " +
         std::wstring(action) + L", or this account may not write there.";
}

// The steps for one entry that is there but differs.
class EntrySteps {
 public:
  EntrySteps(const ItemRecord& item, const SnapshotEntry& wanted, std::vector<ApplyStep>& steps)
      : item_(item), wanted_(wanted), steps_(steps) {}

  void Plan() {
    const std::wstring reason = WhyNot();
    if (!reason.empty()) return steps_.push_back(Impossible(&item_, &wanted_, reason));
    if (NeedsCommand()) Add(ApplyAction::kChangeCommand);
    if (NeedsSwitch()) Add(wanted_.enabled ? ApplyAction::kEnable : ApplyAction::kDisable);
  }

 private:
  bool NeedsCommand() const { return item_.command != wanted_.command; }
  bool NeedsSwitch() const { return item_.enabled != wanted_.enabled; }

  std::wstring WhyNot() const {
    if (NeedsCommand()) {
      if (!item_.Can(kActionChangeCommand)) return NotAllowed(item_, L"another command");
      if (SameText(item_.command, wanted_.command)) {
        return L"the commands differ in case only, which does not count as a change.";
      }
      if (wanted_.command.empty()) return L"a command must not be empty.";
      if (HoldsNul(wanted_.command)) return L"the command holds a NUL.";
    }
    if (NeedsSwitch() && !item_.Can(wanted_.enabled ? kActionEnable : kActionDisable)) {
      return NotAllowed(item_, wanted_.enabled ? L"to be enabled" : L"to be disabled");
    }
    if (!NeedsCommand() && !NeedsSwitch()) return L"what the 32-bit view holds under its name is left alone.";
    return {};
  }
  void Add(ApplyAction action) { steps_.push_back({.action = action, .item = &item_, .wanted = &wanted_}); }

  const ItemRecord& item_;
  const SnapshotEntry& wanted_;
  std::vector<ApplyStep>& steps_;
};

ApplyStep Addition(const SnapshotEntry& wanted, const MachineFacts& machine) {
  if (std::optional<std::wstring> reason = WhyNotAddable(wanted, machine)) {
    return Impossible(nullptr, &wanted, *std::move(reason));
  }
  return {.action = ApplyAction::kAdd, .item = nullptr, .wanted = &wanted, .disabled = !wanted.enabled};
}

ApplyStep Deletion(const ItemRecord& item) {
  if (!item.Can(kActionDelete)) return Impossible(&item, nullptr, NotAllowed(item, L"to be deleted"));
  return {.action = ApplyAction::kDelete, .item = &item};
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
    if (difference.after == nullptr && others == OtherEntries::kDeleted) {
      steps.push_back(Deletion(itemOf(difference)));
    }
  }
  for (const Difference& difference : differences) {
    if (difference.before == nullptr || difference.after == nullptr) continue;
    EntrySteps(itemOf(difference), *difference.after, steps).Plan();
  }
  for (const Difference& difference : differences) {
    if (difference.before == nullptr) steps.push_back(Addition(*difference.after, machine));
  }
  return steps;
}

}  // namespace smh
