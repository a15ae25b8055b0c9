#include "hosts/common/language.h"
#include "hosts/gui/text_direction.h"
#include "hosts/gui/visible_text.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

const std::wstring kNul(1, L'\0');

TEST(VisibleTextTest, ShowsWhatWouldBeOverlookedAndCopiesWhatWasThere) {
  const struct {
    std::wstring text;
    std::wstring shown;
  } kCases[] = {
      {L"C:\\my app\\a.exe -v", L"C:\\my app\\a.exe -v"},
      {L"a.exe" + std::wstring(300, L' ') + L"/bad", L"a.exe\u00B7\u00D7300/bad"},
      {L" a  b ", L"\u00B7a\u00B7\u00D72b\u00B7"},
      {L"a\u00A0b" + std::wstring(40, L'\u00A0') + L"c", L"a\\u{a0}b\\u{a0}\u00D740c"},
      {L"gnp.\u202Eexe\r\n\tx", L"gnp.\\u{202e}exe\\u{d}\\u{a}\\u{9}x"},
      {L"aabb\U0001F600\U0001F600", L"aabb\U0001F600\U0001F600"},
      {L"", L""},
  };
  for (const auto& each : kCases) {
    VisibleText shown = MakeVisible(each.text);
    EXPECT_EQ(shown.text, each.shown);
    EXPECT_EQ(AsItWas(shown, 0, shown.text.size()), each.text);
    VisibleText line = {L"Command\t", {}};
    line += shown;
    EXPECT_EQ(AsItWas(line, 8, line.text.size()), each.text);
    EXPECT_EQ(AsItWas(line, 0, 4), L"Comm");
  }
  // A mark that is selected in part is meant as a whole.
  EXPECT_EQ(AsItWas(MakeVisible(L"ab" + std::wstring(12, L' ') + L"cd"), 3, 7),
            std::wstring(12, L' ') + L"c");
  EXPECT_EQ(AsItWas(MakeVisible(L"a" + kNul), 0, 99), L"a\\u{0}");
}

TEST(VisibleTextTest, IsReadFromTheRightInHebrewAndCopiedAsItIs) {
  const std::wstring path = L"\"C:\\x y.exe\" /z", name = L"שעון";
  EXPECT_EQ(Directed(path), path);
  SetLanguage(Language::kHebrew);
  EXPECT_EQ(Directed(path), L"\u202A" + path + L"\u202C");
  EXPECT_EQ(Directed(name + L":\n1"), L"\u202B" + name + L":\u202C\n\u202B1\u202C");
  EXPECT_EQ(Directed(path, 2), L"\u202B  \u202A" + path + L"\u202C\u202C");
  const VisibleText shown = Directed(MakeVisible(path + L" "));
  EXPECT_EQ(AsItWas(shown, 0, shown.text.size()), path + L" ");
  SetLanguage(Language::kEnglish);
}

}  // namespace
}  // namespace smh::test
