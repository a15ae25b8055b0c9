#include "hosts/common/outcome_check.h"

#include "hosts/common/start_words.h"

#include <map>
#include <string_view>
#include <utility>

namespace smh {

namespace {

constexpr wchar_t kNotThereAtTheEnd[] = L"at the end the entry was not there as it had been made.";
constexpr wchar_t kStillThereAtTheEnd[] = L"at the end the entry was still there as it was.";

// What has to be listed under one name behind the last change.
struct Expectation {
  EntryChange* change;
  const ItemRecord* entry;
  bool isThere;
};

}  // namespace

std::vector<const EntryChange*> CompareOutcomes(std::span<EntryChange> changes,
                                                std::span<const ItemRecord> listNow) {
  using Key = std::pair<std::int32_t, std::wstring_view>;
  const auto keyOf = [](const ItemRecord& item) { return Key(item.location, item.name); };
  std::map<Key, Expectation> expected;
  for (EntryChange& change : changes) {
    if (!change.outcome || !change.outcome->IsGood()) continue;
    const ItemRecord& before = change.before;
    if (!before.name.empty()) expected.insert_or_assign(keyOf(before), Expectation{&change, &before, false});
    const std::optional<ItemRecord>& now = change.outcome->now;
    if (now && !now->name.empty()) expected.insert_or_assign(keyOf(*now), Expectation{&change, &*now, true});
  }
  std::map<Key, const ItemRecord*> listed;
  for (const ItemRecord& item : listNow) listed.emplace(keyOf(item), &item);
  std::vector<const EntryChange*> failed;
  for (const auto& [key, expectation] : expected) {
    const auto found = listed.find(key);
    const bool isThere = found != listed.end() && found->second->enabled == expectation.entry->enabled &&
                         found->second->command == expectation.entry->command &&
                         IsSwitchedOff(*found->second) == IsSwitchedOff(*expectation.entry);
    if (isThere == expectation.isThere) continue;
    expectation.change->outcome =
        Outcome{OutcomeKind::kFailed, expectation.isThere ? kNotThereAtTheEnd : kStillThereAtTheEnd};
    failed.push_back(expectation.change);
  }
  return failed;
}

}  // namespace smh
