// How a host compares at the end what changes have made, and what `watch` makes of two looks at the list.
#include "hosts/common/entry_watch.h"
#include "hosts/common/host_error.h"
#include "hosts/common/outcome_check.h"
#include "tests/hosts/common/test_items.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace smh::test {

namespace {

const std::wstring kRun = L"(x64)HKEY_CURRENT_USER\\Run";
const std::wstring kSide = kRun + L"\\Disabled (Startup Manager)";

TEST(CompareOutcomes, FindsWhatIsNotAsItWasMade) {
  const ItemRecord before = MakeItem(sulRegistryUserRun, kRun, L"a");
  const ItemRecord moved = MakeItem(sulRegistryUserRun, kSide, L"a (1)", before.command, false);
  const ItemRecord other = MakeItem(sulRegistryUserRun, kRun, L"a", L"C:\\other.exe");
  const std::pair<std::vector<ItemRecord>, bool> lists[] = {
      {{moved}, true}, {{moved, other}, true}, {{}, false}, {{before}, false}, {{before, moved}, false}};
  for (const auto& [list, isGood] : lists) {
    EntryChange change;
    change.verb = Verb::kDisable;
    change.before = before;
    change.outcome = Outcome{.now = moved};
    std::vector<EntryStand> stands;
    std::ranges::transform(list, std::back_inserter(stands), StandOf);
    EXPECT_EQ(CompareOutcomes({&change, 1}, stands).empty(), isGood);
    EXPECT_EQ(change.outcome->IsGood(), isGood);
  }
}

class Looks {
 public:
  explicit Looks(std::vector<Sighting> first) : watch_(first, Reader(first)) {}

  // "changed a", ... of the next look.
  std::vector<std::wstring> Next(const std::vector<Sighting>& sightings) {
    std::vector<std::wstring> texts;
    for (const WatchEvent& event : watch_.Update(sightings, Reader(sightings))) {
      texts.push_back(std::wstring(event.kind) + L" " + event.item.name);
    }
    return texts;
  }

 private:
  static EntryWatch::Reader Reader(const std::vector<Sighting>& sightings) {
    return [&sightings](std::size_t index) {
      ItemRecord item;
      item.name = sightings[index].name;
      item.location = sightings[index].location;
      item.enabled = !item.name.starts_with(L"off ");
      item.caption = item.enabled ? item.name : item.name.substr(4);
      return item;
    };
  }

  EntryWatch watch_;
};

using Events = std::vector<std::wstring>;

TEST(EntryWatch, TellsWhatChanged) {
  Looks looks({{5, L"a", true}, {5, L"b", false}});
  EXPECT_EQ(looks.Next({{5, L"a", false}, {5, L"b", false}}), Events());
  EXPECT_EQ(looks.Next({{5, L"a", false}, {5, L"b", true}}), Events{L"changed b"});
  EXPECT_EQ(looks.Next({{5, L"b", false}}), Events{L"removed a"});
  // The same name in another location is another entry.
  EXPECT_EQ(looks.Next({{8, L"b", true}}), (Events{L"added b", L"removed b"}));
}

TEST(EntryWatch, WaitsForTheDetailsOfANewEntry) {
  Looks looks({});
  EXPECT_EQ(looks.Next({{5, L"a", false}}), Events());
  EXPECT_EQ(looks.Next({{5, L"a", true}}), Events{L"added a"});
  // One whose details never come is shown all the same; one that goes before is never mentioned.
  EXPECT_EQ(looks.Next({{5, L"a", false}, {5, L"short", false}}), Events());
  Events events;
  for (int i = 0; i < 30 && events.empty(); ++i) events = looks.Next({{5, L"a", false}, {5, L"slow", false}});
  EXPECT_EQ(events, Events{L"added slow"});
}

TEST(EntryWatch, PairsWhatGoesAndComesInTheOtherState) {
  Looks looks({{5, L"a", false}, {5, L"b", false}});
  // Held back until its details are there.
  EXPECT_EQ(looks.Next({{5, L"b", false}, {5, L"off a", false}}), Events());
  EXPECT_EQ(looks.Next({{5, L"b", false}, {5, L"off a", true}}), Events{L"disabled off a"});
  EXPECT_EQ(looks.Next({{5, L"b", false}, {5, L"a", true}}), Events{L"enabled a"});
  // One that goes before was removed all the same; another location's is none.
  EXPECT_EQ(looks.Next({{5, L"a", false}, {5, L"off b", false}}), Events());
  EXPECT_EQ(looks.Next({{5, L"a", false}}), Events{L"removed b"});
  EXPECT_EQ(looks.Next({{8, L"off a", true}}), (Events{L"added off a", L"removed a"}));
}

TEST(EntryWatch, ALookInTheMiddleOfASwitchWaitsForItsEnd) {
  Looks looks({{5, L"a", false}});
  EXPECT_EQ(looks.Next({{5, L"a", false}, {5, L"off a", true}}), Events());
  EXPECT_EQ(looks.Next({{5, L"off a", false}}), Events{L"disabled off a"});
  // Both stay: the second is one of its own.
  Events events;
  EXPECT_EQ(looks.Next({{5, L"a", true}, {5, L"off a", false}}), Events());
  for (int i = 0; i < 30 && events.empty(); ++i)
    events = looks.Next({{5, L"a", false}, {5, L"off a", false}});
  EXPECT_EQ(events, Events{L"added a"});
}

TEST(EntryWatch, ALookThatFailsLosesNothing) {
  EntryWatch watch(Announce::kAtOnce);
  const std::vector<Sighting> two = {{5, L"a", true}, {5, L"b", true}};
  const auto failing = [](std::size_t index) {
    if (index == 1) throw HostError(L"gone");
    return ItemRecord();
  };
  EXPECT_THROW(watch.Update(two, failing), HostError);
  const std::vector<Sighting> quiet = {{5, L"a", false}, {5, L"b", false}};
  EXPECT_EQ(watch.Update(quiet, [](std::size_t) { return ItemRecord(); }).size(), 2u);
  EXPECT_TRUE(watch.Update(quiet, failing).empty());
}

}  // namespace
}  // namespace smh::test
