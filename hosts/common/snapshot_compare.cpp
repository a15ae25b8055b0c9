#include "hosts/common/snapshot_compare.h"

#include "hosts/common/texts/title_texts.h"

#include <algorithm>

namespace smh {

namespace {

using Entries = std::vector<const SnapshotEntry*>;

Entries Sorted(std::span<const SnapshotEntry> entries) {
  Entries sorted;
  for (const SnapshotEntry& entry : entries) sorted.push_back(&entry);
  std::ranges::stable_sort(
      sorted, [](const SnapshotEntry* a, const SnapshotEntry* b) { return CompareIdentity(*a, *b) < 0; });
  return sorted;
}

// Takes the entries of the identity of `first` from the front of `rest`.
Entries TakeGroup(std::span<const SnapshotEntry* const>& rest, const SnapshotEntry& first) {
  Entries group;
  while (!rest.empty() && CompareIdentity(*rest.front(), first) == 0) {
    group.push_back(rest.front());
    rest = rest.subspan(1);
  }
  return group;
}

bool HasSameText(const SnapshotEntry& a, const SnapshotEntry& b) {
  return a.command == b.command && a.twin == b.twin;
}

// A switch that one of the two does not know differs from none.
bool HasSameSwitch(const SnapshotEntry& a, const SnapshotEntry& b) noexcept {
  return !a.switchedOff || !b.switchedOff || a.switchedOff == b.switchedOff;
}

using Pairing = bool (*)(const SnapshotEntry& before, const SnapshotEntry& after);

// Pairs what `fits`, and tells `found`.
template <typename Found>
void Pair(Entries& before, Entries& after, Pairing fits, Found&& found) {
  std::erase_if(before, [&](const SnapshotEntry* old) {
    const auto match =
        std::ranges::find_if(after, [&](const SnapshotEntry* now) { return fits(*old, *now); });
    if (match == after.end()) return false;
    found(*old, **match);
    after.erase(match);
    return true;
  });
}

void CompareGroup(Entries before, Entries after, std::vector<Difference>& differences) {
  const auto report = [&](DifferenceKind kind) {
    return [&differences, kind](const SnapshotEntry& old, const SnapshotEntry& now) {
      differences.push_back({kind, &old, &now});
    };
  };
  Pair(
      before, after,
      [](const SnapshotEntry& old, const SnapshotEntry& now) {
        return old.enabled == now.enabled && HasSameText(old, now) && HasSameSwitch(old, now);
      },
      [](const SnapshotEntry&, const SnapshotEntry&) {});
  // The same entry by its text first, of those the one in the same state.
  Pair(
      before, after,
      [](const SnapshotEntry& old, const SnapshotEntry& now) {
        return old.enabled == now.enabled && HasSameText(old, now);
      },
      report(DifferenceKind::kSwitched));
  Pair(before, after, HasSameText, report(DifferenceKind::kSwitched));
  Pair(
      before, after,
      [](const SnapshotEntry& old, const SnapshotEntry& now) { return old.enabled == now.enabled; },
      report(DifferenceKind::kChanged));
  Pair(
      before, after, [](const SnapshotEntry&, const SnapshotEntry&) { return true; },
      report(DifferenceKind::kChanged));
  for (const SnapshotEntry* old : before) differences.push_back({DifferenceKind::kRemoved, old, nullptr});
  for (const SnapshotEntry* now : after) differences.push_back({DifferenceKind::kAdded, nullptr, now});
}

}  // namespace

std::vector<Difference> CompareEntries(std::span<const SnapshotEntry> before,
                                       std::span<const SnapshotEntry> after) {
  const Entries sortedBefore = Sorted(before);
  const Entries sortedAfter = Sorted(after);
  std::span<const SnapshotEntry* const> restBefore = sortedBefore;
  std::span<const SnapshotEntry* const> restAfter = sortedAfter;
  std::vector<Difference> differences;
  while (!restBefore.empty() || !restAfter.empty()) {
    const bool beforeLeads =
        restAfter.empty() ||
        (!restBefore.empty() && CompareIdentity(*restBefore.front(), *restAfter.front()) <= 0);
    const SnapshotEntry& first = beforeLeads ? *restBefore.front() : *restAfter.front();
    Entries groupBefore = TakeGroup(restBefore, first);
    Entries groupAfter = TakeGroup(restAfter, first);
    CompareGroup(std::move(groupBefore), std::move(groupAfter), differences);
  }
  return differences;
}

std::wstring_view DifferenceName(DifferenceKind kind) noexcept {
  switch (kind) {
    case DifferenceKind::kAdded:
      return L"added";
    case DifferenceKind::kRemoved:
      return L"removed";
    case DifferenceKind::kChanged:
      return L"changed";
    case DifferenceKind::kSwitched:
      break;
  }
  return L"switched";
}

const Text& DifferenceText(DifferenceKind kind) noexcept {
  return texts::kDifferences[static_cast<std::size_t>(kind)];
}

}  // namespace smh
