#include "hosts/gui/comparison.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/texts/column_texts.h"
#include "hosts/gui/texts/details_texts.h"
#include "hosts/gui/texts/entry_texts.h"

#include <utility>

namespace smh {

ComparedEntries Compare(const Snapshot& before, std::span<const ItemRecord* const> now) {
  std::vector<SnapshotEntry> entries;
  entries.reserve(now.size());
  for (const ItemRecord* item : now) entries.push_back(EntryOf(*item));
  ComparedEntries compared;
  compared.items.resize(now.size());
  for (const Difference& difference : CompareEntries(before.entries, entries)) {
    if (difference.after == nullptr) {
      compared.gone.push_back(static_cast<std::size_t>(difference.before - before.entries.data()));
      continue;
    }
    EntryDifference& own =
        compared.items[static_cast<std::size_t>(difference.after - entries.data())].emplace();
    own.kind = difference.kind;
    if (difference.before != nullptr) own.before = *difference.before;
  }
  return compared;
}

ItemRecord GoneRecord(const SnapshotEntry& entry) {
  ItemRecord item;
  item.location = entry.location;
  item.root = entry.root;
  item.view = entry.view;
  item.key = entry.key;
  item.value = entry.valueName;
  item.caption = entry.Name();
  item.name = entry.root.empty() ? entry.file : entry.root + L"\\" + entry.key;
  if (entry.valueName) item.name += L"\\" + *entry.valueName;
  item.command = entry.command;
  item.enabled = entry.enabled;
  item.disabledBy = entry.disabledBy;
  item.starts = kStartsNo;
  return item;
}

std::wstring_view DifferenceTitle(DifferenceKind kind) noexcept {
  switch (kind) {
    case DifferenceKind::kAdded:
      return texts::kDifferenceAdded.Get();
    case DifferenceKind::kRemoved:
      return texts::kDifferenceRemoved.Get();
    case DifferenceKind::kChanged:
      return texts::kDifferenceChanged.Get();
    default:
      return texts::kDifferenceSwitched.Get();
  }
}

std::wstring DifferenceCountText(const DifferenceCounts& counts) {
  // By DifferenceKind.
  constexpr Text kCounts[] = {texts::kCountAdded, texts::kCountRemoved, texts::kCountChanged,
                              texts::kCountSwitched};
  std::wstring text;
  for (std::size_t kind = 0; kind < counts.size(); ++kind) {
    if (counts[kind] == 0) continue;
    if (!text.empty()) text += L", ";
    text += Format(kCounts[kind], counts[kind]);
  }
  return text.empty() ? texts::kNothingDiffers.Get() : text;
}

std::vector<DetailLine> DifferenceLines(const EntryDifference& difference) {
  std::vector<DetailLine> lines;
  lines.push_back({texts::kComparedLine.Get(), PlainText(std::wstring(DifferenceTitle(difference.kind)))});
  if (!difference.before) return lines;
  const SnapshotEntry& before = *difference.before;
  std::wstring state = (before.enabled ? texts::kOn : texts::kOff).Get();
  if (before.switchedOff == true) state = Format(texts::kBut, state, texts::kSwitchedOff.Get());
  lines.push_back({texts::kStatusBeforeLine.Get(), PlainText(std::move(state))});
  lines.push_back({texts::kCommandBeforeLine.Get(), MakeVisible(before.command)});
  if (before.twin) lines.push_back({texts::kView32BeforeLine.Get(), MakeVisible(*before.twin)});
  if (difference.kind != DifferenceKind::kRemoved) return lines;
  const ItemRecord gone = GoneRecord(before);
  lines.push_back({texts::kLocationTitle.Get(), PlainText(FullTitle(gone.location))});
  lines.push_back({texts::kWasStoredAsLine.Get(), MakeVisible(gone.name)});
  return lines;
}

}  // namespace smh
