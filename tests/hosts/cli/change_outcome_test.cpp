// How the host tells whether a change happened, and what `watch` makes of two looks at the list.
#include "hosts/cli/change_runner.h"
#include "hosts/common/entry_watch.h"
#include "hosts/common/host_error.h"
#include "tests/hosts/common/test_items.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

const std::wstring kRun = L"(x64)HKEY_CURRENT_USER\\Run";
const std::wstring kSide = kRun + L"\\Disabled (Startup Manager)";

const Change kDelete = {
    .verb = L"delete", .done = L"Deleted", .target = {}, .check = {}, .apply = {}, .isOutcome = {}};
const Change kDisable = {.verb = L"disable",
                         .done = L"Disabled",
                         .target = {},
                         .check = {},
                         .apply = {},
                         .isOutcome = [](const ItemRecord& before, const ItemRecord& now) {
                           return !now.enabled && now.command == before.command;
                         }};

TEST(ChangeOutcome, NeedsTheOldEntryGoneAndTheNewOneThere) {
  const ItemRecord before = MakeItem(sulRegistryUserRun, kRun, L"a");
  const ItemRecord other = MakeItem(sulRegistryUserRun, kRun, L"b");
  const ItemRecord moved = MakeItem(sulRegistryUserRun, kSide, L"a (1)", before.command, false);
  const std::vector<ItemRecord> list = {before, other};
  EXPECT_TRUE(FindFault(kDisable, before, list, std::vector{other, moved}).empty());
  EXPECT_FALSE(FindFault(kDisable, before, list, list).empty());
  EXPECT_FALSE(FindFault(kDisable, before, list, std::vector{other}).empty());
  EXPECT_FALSE(FindFault(kDisable, before, list, std::vector{before, other, moved}).empty());
  // One that looks like the outcome but was there before is none.
  const std::vector<ItemRecord> twins = {before, moved};
  EXPECT_FALSE(FindFault(kDisable, before, twins, std::vector{moved}).empty());
}

TEST(ChangeOutcome, AnotherEntryMayTakeTheNameOver) {
  const ItemRecord before = MakeItem(sulRegistryUserRun, kSide, L"a", L"C:\\one.exe", false);
  const ItemRecord shadowed = MakeItem(sulRegistryUserRun, kSide, L"a", L"C:\\two.exe", true);
  EXPECT_TRUE(FindFault(kDelete, before, std::vector{before}, std::vector{shadowed}).empty());
  EXPECT_FALSE(FindFault(kDelete, before, std::vector{before}, std::vector{before}).empty());
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
