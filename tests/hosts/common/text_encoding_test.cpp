#include "hosts/common/text_encoding.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

const std::wstring kHigh(1, static_cast<wchar_t>(0xD83D));
const std::wstring kLow(1, static_cast<wchar_t>(0xDE00));

TEST(TextEncoding, Utf8KeepsEveryUnit) {
  const std::wstring texts[] = {L"plain", L"\u00E4\u20AC\u4E2D", kHigh + kLow,           kLow + kHigh,
                                kHigh,    L"a" + kHigh + L"b",   std::wstring(L"\0x", 2)};
  for (const std::wstring& text : texts) EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
  EXPECT_EQ(ToUtf8(L"\u00E4\u20AC"), "\xC3\xA4\xE2\x82\xAC");
  EXPECT_EQ(ToUtf8(kHigh + kLow), "\xF0\x9F\x98\x80");
}

TEST(TextEncoding, BytesThatAreNoUtf8AreReplaced) {
  const std::wstring bad(1, static_cast<wchar_t>(0xFFFD));
  EXPECT_EQ(FromUtf8("a\xFF"
                     "b"),
            L"a" + bad + L"b");
  EXPECT_EQ(FromUtf8("a\xE2\x82"), L"a" + bad + bad);  // cut off
  EXPECT_EQ(FromUtf8("\xC0\xAF"), bad + bad);          // an overlong slash
  EXPECT_EQ(FromUtf8("\xE0\x80\xAF").find(L'/'), std::wstring::npos);
  EXPECT_EQ(FromUtf8("\xF5\x80\x80\x80"), bad + bad + bad + bad);  // beyond the last code point
}

TEST(TextEncoding, PrintableShowsWhatCannotBeSeen) {
  EXPECT_EQ(Printable(L"a\x01\tz\x7F"), L"a\\u{1}\\u{9}z\\u{7f}");
  EXPECT_EQ(Printable(L"x" + kHigh + L"y"), L"x\\u{d83d}y");
  EXPECT_EQ(Printable(kHigh + kLow), kHigh + kLow);
  EXPECT_EQ(Printable(L"exe.\u202Egpj"), L"exe.\\u{202e}gpj");
  EXPECT_EQ(Printable(Printable(L"\u061C\n")), L"\\u{61c}\\u{a}");
}

TEST(TextEncoding, DecodesBothEscapesAndLeavesPathsAlone) {
  EXPECT_EQ(DecodeEscapes(L"x\\ud83dy\\u0041"), L"x" + kHigh + L"yA");
  EXPECT_EQ(DecodeEscapes(L"\\u{1f600}\\u{1}"), kHigh + kLow + L"\x01");
  for (const wchar_t* text :
       {L"C:\\users\\u", L"Run\\update", L"\\u12", L"\\u{}", L"\\u{12", L"\\u{110000}"}) {
    EXPECT_EQ(DecodeEscapes(text), text);
  }
  const std::wstring odd = L"\x01 " + kLow;
  EXPECT_EQ(DecodeEscapes(Printable(odd)), odd);
}

TEST(TextEncoding, CutsByCellsOfTheConsole) {
  EXPECT_EQ(CutEnd(L"abcdef", 6), L"abcdef");
  EXPECT_EQ(CutEnd(L"abcdefg", 6), L"abcde\u2026");
  EXPECT_EQ(DisplayWidth(L"\u4E2D\u6587e\u0301"), 5u);
  // A wide character is not halved.
  EXPECT_EQ(CutEnd(L"\u4E2D\u6587\u5B57", 4), L"\u4E2D\u2026");
  EXPECT_EQ(CutEnd(kHigh + kLow + L"bc", 2), L"\u2026");
  EXPECT_EQ(CutEnd(L"abc", 0), L"");
  EXPECT_EQ(CutBeginning(L"abcdefg", 7), L"abcdefg");
  EXPECT_EQ(CutBeginning(L"abcdefg", 3), L"\u2026fg");
  EXPECT_EQ(CutBeginning(L"\u4E2D\u6587\u5B57", 4), L"\u2026\u5B57");
  EXPECT_EQ(CutBeginning(L"a" + kHigh + kLow, 1), L"\u2026");
  EXPECT_EQ(CutBeginning(L"abc", 0), L"");
}

}  // namespace
}  // namespace smh::test
