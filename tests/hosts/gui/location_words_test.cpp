// The sentence about a location, which says when Windows starts what stands there.
#include "hosts/gui/location_words.h"

#include <gtest/gtest.h>

#include <map>

namespace smh::test {

namespace {

LocationSet Set(std::initializer_list<std::size_t> locations) {
  LocationSet set;
  for (const std::size_t location : locations) set.set(location);
  return set;
}

TEST(LocationWordsTest, EveryLocationAndGroupHasItsOwnSentence) {
  std::map<std::wstring, std::wstring> titleOf;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    const LocationRow& row = LocationRowOf(location);
    const std::wstring sentence = LocationSentence(Set({static_cast<std::size_t>(location)}));
    EXPECT_STRNE(sentence.c_str(), LocationSentence(LocationSet().set())) << location;
    // Kinds of start that differ are told apart.
    const bool isUsers = row.root == LocationRoot::kUser;
    if (FamilyOf(row).canModify && IsReadByDefault(location)) {
      EXPECT_TRUE(titleOf.emplace(sentence, row.title).second) << location;
      EXPECT_EQ(sentence.find(L"this user") != std::wstring::npos, isUsers) << location;
    }
  }
  EXPECT_STRNE(LocationSentence(Set({1, 2})), LocationSentence(Set({1})));
  EXPECT_STRNE(LocationSentence(Set({5, 6, 8})), LocationSentence(Set({5})));
  EXPECT_STREQ(LocationSentence(Set({2, 5})), LocationSentence(LocationSet().set()));
  EXPECT_STREQ(LocationSentence(Set({11, 15})), LocationSentence(Set({12})));
}

TEST(LocationWordsTest, ASinglePlaceIsNamed) {
  const std::vector<DetailLine> run = LocationLines(Set({5}), L"Run, this user");
  ASSERT_EQ(run.size(), 3u);
  EXPECT_EQ(run[0].value.text, L"Run, this user");
  EXPECT_EQ(run[2].value.text, L"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run");
  EXPECT_EQ(LocationLines(LocationSet().set(), L"").size(), 2u);
}

}  // namespace
}  // namespace smh::test
