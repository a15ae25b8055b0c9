#include "hosts/common/outcome_check.h"

#include "hosts/common/item_property.h"
#include "hosts/common/start_words.h"
#include "hosts/common/texts/operation_texts.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace smh {

namespace {

// What has to be listed under one name behind the last change.
struct Expectation {
  EntryChange* change;
  const ItemRecord* entry;
  bool isThere;
};

bool IsSame(const EntryStand& listed, const ItemRecord& made) noexcept {
  return listed.isEnabled == made.enabled && listed.command == made.command &&
         listed.isSwitchedOff == IsSwitchedOff(made);
}

}  // namespace

EntryStand StandOf(const ItemRecord& item) {
  return {item.location, item.name, item.command, item.enabled, IsSwitchedOff(item)};
}

std::vector<EntryStand> ReadStands(const Library& library) {
  const ListLock lock(library);
  const std::int32_t count = library.Items().GetCount();
  std::vector<EntryStand> stands;
  stands.reserve(static_cast<std::size_t>(std::max(count, 0)));
  for (std::int32_t index = 0; index < count; ++index) {
    const ComPtr<IStartupItem> item = library.ItemAt(index);
    const FactReader facts(*item);
    ItemRecord known;
    known.location = item->GetLocation();
    known.name = TakeText([&](BoundaryText* name) { return item->GetName(name); });
    known.command = TextProperty(*item, kPropertyCommand);
    known.enabled = FlagProperty(*item, kPropertyEnabled);
    known.starts = facts.Number(kFactStarts).value_or(kStartsUnknown);
    known.reasons = facts.Number(kFactStartReasons).value_or(0);
    stands.push_back(StandOf(known));
  }
  return stands;
}

std::vector<const EntryChange*> CompareOutcomes(std::span<EntryChange> changes,
                                                std::span<const EntryStand> listNow) {
  using Key = std::pair<std::int32_t, std::wstring_view>;
  const auto keyOf = [](const auto& entry) { return Key(entry.location, entry.name); };
  std::map<Key, Expectation> expected;
  for (EntryChange& change : changes) {
    if (!change.outcome || !change.outcome->IsGood()) continue;
    const ItemRecord& before = change.before;
    if (!before.name.empty()) expected.insert_or_assign(keyOf(before), Expectation{&change, &before, false});
    const std::optional<ItemRecord>& now = change.outcome->now;
    if (now && !now->name.empty()) expected.insert_or_assign(keyOf(*now), Expectation{&change, &*now, true});
  }
  std::map<Key, const EntryStand*> listed;
  for (const EntryStand& entry : listNow) listed.emplace(keyOf(entry), &entry);
  std::vector<const EntryChange*> failed;
  for (const auto& [key, expectation] : expected) {
    const auto found = listed.find(key);
    const bool isThere = found != listed.end() && IsSame(*found->second, *expectation.entry);
    if (isThere == expectation.isThere) continue;
    expectation.change->outcome = Outcome{
        OutcomeKind::kFailed, expectation.isThere ? texts::kNotThereAtTheEnd : texts::kStillThereAtTheEnd};
    failed.push_back(expectation.change);
  }
  return failed;
}

}  // namespace smh
