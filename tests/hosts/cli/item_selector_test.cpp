#include "hosts/cli/item_selector.h"
#include "hosts/common/host_error.h"
#include "hosts/common/short_id.h"
#include "hosts/common/text_encoding.h"
#include "tests/hosts/common/test_items.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace smh::test {

namespace {

const std::wstring kUser = L"(x64)HKEY_CURRENT_USER\\Run";
const std::wstring kCommon = L"(x64)HKEY_LOCAL_MACHINE\\Run";

const std::vector<ItemRecord> kItems = {
    MakeItem(sulRegistryUserRun, kUser, L"Mixer"),
    MakeItem(sulRegistryCommonRun, kCommon, L"mixer"),
    MakeItem(sulRegistryUserRun, kUser, L"Alone"),
    MakeItem(sulRegistryUserRun, kUser, std::wstring(L"odd") + static_cast<wchar_t>(0xD800)),
    MakeItem(sulRegistryUserRun, kUser, L"\\u0041"),
    MakeItem(sulRegistryUserRun, kUser, L"A"),
    // Its caption is the full name of another entry.
    MakeItem(sulRegistryCommonRun, kCommon, kUser + L"\\Alone"),
};

std::wstring Refusal(std::wstring_view text, std::optional<std::int32_t> location = {}) {
  try {
    return L"selected " + SelectItem(kItems, text, location).name;
  } catch (const HostError& error) {
    EXPECT_EQ(error.Code(), ExitCode::kFailed);
    return error.Message();
  }
}

TEST(ItemSelector, FullNameBeatsCaption) {
  EXPECT_EQ(&SelectItem(kItems, kUser + L"\\Alone", {}), &kItems[2]);
  EXPECT_EQ(&SelectItem(kItems, L"(x64)hkey_current_user\\run\\mixer", {}), &kItems[0]);
  EXPECT_EQ(&SelectItem(kItems, L"alone", {}), &kItems[2]);
}

TEST(ItemSelector, AmbiguousCaptionIsRefusedWithItsCandidates) {
  const std::wstring refusal = Refusal(L"Mixer");
  EXPECT_NE(refusal.find(kItems[0].name), std::wstring::npos) << "first candidate";
  EXPECT_NE(refusal.find(kItems[1].name), std::wstring::npos) << "second candidate";
  EXPECT_NE(refusal.find(L"sulRegistryCommonRun"), std::wstring::npos);
  EXPECT_EQ(refusal.find(L"Alone"), std::wstring::npos);
}

TEST(ItemSelector, LocationNarrowsNamesAndCaptions) {
  EXPECT_EQ(&SelectItem(kItems, L"MIXER", sulRegistryCommonRun), &kItems[1]);
  EXPECT_NE(Refusal(kItems[2].name, sulRegistryUserRunOnce).find(L"No entry"), std::wstring::npos);
  EXPECT_NE(Refusal(L"nothing").find(L"No entry"), std::wstring::npos);
  EXPECT_NE(Refusal(L"").find(L"No entry"), std::wstring::npos);
}

// What a selector means, as captions; "refused" when it means nothing that can be told.
std::wstring Meant(const Selector& selector) {
  try {
    const Selection selection = SelectItems(kItems, selector);
    std::wstring captions = selection.isBroad ? L"broad:" : L"";
    for (const std::size_t at : selection.positions) captions += L" " + kItems[at].caption;
    return captions;
  } catch (const HostError&) {
    return L"refused";
  }
}

TEST(ItemSelector, NamesCaptionsIdsPatternsAndFilters) {
  const std::wstring id = WholeId(sulRegistryUserRun, kItems[2].name);
  ItemFilter inUserRun;
  inUserRun.locations = {sulRegistryUserRun};
  ItemFilter ofAurora;
  ofAurora.company = L"AURORA";
  const std::pair<Selector, std::wstring> cases[] = {
      {{.items = {id.substr(0, 8), L"alone"}}, L" Alone"},
      {{.items = {L"AB12" + id.substr(4)}}, L"refused"},
      {{.items = {id.substr(0, 7)}}, L"refused"},
      {{.items = {L"00000000"}}, L"refused"},
      {{.items = {L"mixer"}}, L"refused"},
      {{.items = {L"mixer"}, .filter = inUserRun}, L" Mixer"},
      {{.items = {L"M?XER*"}}, L"broad: Mixer mixer"},
      {{.items = {L"*\\run\\al*e"}}, L"broad: Alone " + kUser + L"\\Alone"},
      {{.items = {L"Al*"}}, L" Alone"},
      {{.items = {L"x*"}}, L"refused"},
      {{.lines = {L"Alone", L"A"}}, L"broad: Alone A"},
      {{.lines = {L"Al*"}}, L"refused"},
      {{.filter = ofAurora}, L""},
      {{.items = {L"A"}, .filter = ofAurora}, L"refused"},
  };
  for (const auto& [selector, meant] : cases) {
    EXPECT_EQ(Meant(selector), meant);
    if (meant == L"refused") continue;
    RequireUnambiguous(kItems, selector);
    const auto isMeant = [&](const ItemRecord& item) { return IsMeant(selector, item); };
    const auto count = static_cast<std::size_t>(std::ranges::count_if(kItems, isMeant));
    EXPECT_EQ(count, SelectItems(kItems, selector).positions.size()) << "one by one";
  }
  RequireUnambiguous(kItems, {.items = {L"comes later"}});
  EXPECT_THROW(RequireUnambiguous(kItems, {.items = {L"mixer"}}), HostError);
}

// Texts and entries by ten thousands: each pair compared would take a minute.
TEST(ItemSelector, ManyTextsAreFoundAmongManyEntries) {
  constexpr std::size_t kCount = 30'000;
  std::vector<ItemRecord> items;
  Selector selector;
  for (std::size_t i = 0; i < kCount; ++i) {
    items.push_back(MakeItem(sulRegistryUserRun, kUser, L"Entry " + std::to_wstring(i)));
    const bool isCaption = i % 2 == 0;
    selector.lines.push_back(isCaption ? L"ENTRY " + std::to_wstring(i)
                                       : WholeId(sulRegistryUserRun, items.back().name));
  }
  const ULONGLONG begin = GetTickCount64();
  EXPECT_EQ(SelectItems(items, selector).positions.size(), kCount);
  EXPECT_LT(GetTickCount64() - begin, 5'000U);
}

TEST(ItemSelector, IdsGrowWhereTheyCollide) {
  std::vector<ItemRecord> items = kItems;
  items.push_back(items[2]);
  AssignShortIds(items);
  EXPECT_EQ(items[0].id.size(), kShortIdDigits);
  EXPECT_EQ(items[2].id, WholeId(items[2].location, items[2].name)) << "no digits are left";
  EXPECT_EQ(WholeId(sulRegistryUserRun, L"name"), L"49760fce408714f9");
}

TEST(ItemFilter, TimesAndFacts) {
  ItemRecord item = kItems[0];
  item.company = L"Northlight Audio Ltd.";
  item.rating = 2;
  item.lastWriteTime = ParseTime(L"2024-05-31T18:00");
  ASSERT_TRUE(item.lastWriteTime);
  const std::pair<ItemFilter, bool> cases[] = {{{.company = L"northlight"}, true},
                                               {{.company = L"aurora"}, false},
                                               {{.ratings = {0, 2}}, true},
                                               {{.ratings = {1}}, false},
                                               {{.reachabilities = {kFileMissing}}, true},
                                               {{.reachabilities = {kFileUnreachable}}, false},
                                               {{.match = L"RISKY"}, true},
                                               {{.match = L"one.EXE"}, true},
                                               {{.match = L"two.exe"}, false},
                                               {{.since = ParseTime(L"2024-05-31")}, true},
                                               {{.since = ParseTime(L"2024-05-31T18:00:01")}, false},
                                               {{.since = ParseTime(L"7d")}, false}};
  for (const auto& [filter, isShown] : cases)
    EXPECT_EQ(filter.Shows(item), isShown) << ToUtf8(filter.company + filter.match);
  for (const wchar_t* const text : {L"", L"d", L"7", L"7y", L"2024-5-31", L"2024-02-30", L"1234567d"}) {
    EXPECT_FALSE(ParseTime(text)) << ToUtf8(text);
  }
}

TEST(ItemSelector, EscapesAreTriedAfterTheTextItself) {
  EXPECT_EQ(&SelectItem(kItems, L"odd\\ud800", {}), &kItems[3]);
  EXPECT_EQ(&SelectItem(kItems, L"odd\\u{d800}", {}), &kItems[3]);
  EXPECT_EQ(&SelectItem(kItems, kUser + L"\\odd\\ud800", {}), &kItems[3]);
  EXPECT_EQ(&SelectItem(kItems, L"\\u0041", {}), &kItems[4]);
}

}  // namespace
}  // namespace smh::test
