// Formatting, text and exceptions.
#include "infra/runtime/assertion.h"
#include "infra/runtime/text.h"

#include <gtest/gtest.h>

#include <string>

namespace smh::test {
namespace {

TEST(FormatTest, FormatsTextAndNumbersAndRefusesTheRest) {
  EXPECT_EQ(Format(L"%s (%s) = \"%s\"", L"a", std::wstring(L"b"), std::wstring_view(L"c")), L"a (b) = \"c\"");
  EXPECT_EQ(Format(L"%d|%d|%d", -1, 4'000'000'000u, std::int64_t{1} << 40), L"-1|4000000000|1099511627776");
  EXPECT_EQ(Format(L"100%% %s", L"%s%d"), L"100% %s%d");
  EXPECT_EQ(Format(L"%s", std::wstring(L"a\0b", 3)), std::wstring(L"a\0b", 3));
  EXPECT_THROW(Format(L"%s %s", L"a"), EConvertError);
  EXPECT_THROW(Format(L"%d", L"text"), EConvertError);
  EXPECT_THROW(Format(L"%s", 1), EConvertError);
  EXPECT_THROW(Format(L"at the end %", 1), EConvertError);
}

TEST(TextTest, ComparisonTrimAndReplace) {
  EXPECT_TRUE(SameText(L"\x00C4pfel", L"\x00E4PFEL"));
  EXPECT_FALSE(SameText(L"ss", L"\x00DF"));
  EXPECT_FALSE(SameText(std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3)));
  EXPECT_LT(CompareText(L"a", L"B"), 0);
  EXPECT_GT(CompareText(L"b", {}), 0);
  EXPECT_TRUE(StartsText(L"(X64)", L"(x64)HKEY"));
  EXPECT_FALSE(StartsText(L"(x64)", L"(x6"));
  EXPECT_TRUE(EndsText(L".LNK", L"a.lnk"));
  EXPECT_TRUE(SameLocaleText(L"READ Me", L"read mE"));
  EXPECT_EQ(Trim(L" \t\r\na b\x01 "), L"a b");
  EXPECT_EQ(ReplaceText(L"aXbxc", L"x", L"--"), L"a--b--c");
  EXPECT_EQ(ReplaceText(L"aaa", L"aa", L"b"), L"ba");
  EXPECT_EQ(ReplaceText(L"abc", L"", L"x"), L"abc");
}

TEST(TextTest, OnlyAnEnclosingPairOfQuotesGoes) {
  const struct {
    const wchar_t* text;
    const wchar_t* expected;
  } rows[] = {
      {L"\"a b\"", L"a b"},
      {L"\"a\" \"b\"", L"\"a\" \"b\""},
      {L"\"say \"\"hi\"\"\"", L"say \"hi\""},
      {L"\"", L"\""},
      {L"\"\"", L""},
      {L"\"\"\"", L"\"\"\""},
      {L"\"open \"\"", L"\"open \"\""},
  };
  for (const auto& row : rows) EXPECT_EQ(DequoteText(row.text), row.expected) << std::wstring(row.text);
  for (const wchar_t* text : {L"", L"plain", L"\"", L"a\"\"b"}) EXPECT_EQ(DequoteText(QuoteText(text)), text);
}

TEST(TextTest, PartsOfPaths) {
  const struct {
    const wchar_t* path;
    const wchar_t* folder;
    const wchar_t* file;
    const wchar_t* extension;
  } rows[] = {
      {L"C:\\a.b\\c", L"C:\\a.b\\", L"c", L""},
      {L"C:x.exe", L"C:", L"x.exe", L".exe"},
      {L"a/b.tar.gz", L"a/", L"b.tar.gz", L".gz"},
      {L"\\\\host\\share\\", L"\\\\host\\share\\", L"", L""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FolderPart(row.path), row.folder);
    EXPECT_EQ(FileNamePart(row.path), row.file);
    EXPECT_EQ(ExtensionPart(row.path), row.extension);
  }
}

TEST(ExceptionTest, MessagesAndResults) {
  const EOSError error(ERROR_ACCESS_DENIED);
  EXPECT_EQ(error.Message(), L"System Error.  Code: 5.\r\n" + SystemErrorText(ERROR_ACCESS_DENIED));
  EXPECT_FALSE(SystemErrorText(ERROR_ACCESS_DENIED).empty());
  EXPECT_EQ(error.Result(), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  try {
    SMH_ASSERT(L"uLocationStartup", 1 + 1 == 3);
    FAIL();
  } catch (const EAssertionFailed& failure) {
    EXPECT_EQ(failure.Message(), Format(L"Assertion failure (uLocationStartup, line %d)", __LINE__ - 3));
    EXPECT_EQ(failure.Result(), E_UNEXPECTED);
  }
}

}  // namespace
}  // namespace smh::test
