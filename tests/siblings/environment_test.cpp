#include "basekit/environment.h"

#include "basekit/indirect_string.h"
#include "basekit/ole_date.h"
#include "infra/exceptions.h"
#include "infra/text.h"

#include <gtest/gtest.h>

namespace smh {
namespace {

class EnvironmentTest : public testing::Test {
 protected:
  EnvironmentTest() {
    SetEnvironmentVariableW(L"SMH_A", L"value");
    SetEnvironmentVariableW(L"SMH_EMPTY", L"");
    SetEnvironmentVariableW(L"SMH_NESTED", L"%SMH_A%");
    SetEnvironmentVariableW(L"SMH_NO", nullptr);
  }
  ~EnvironmentTest() override {
    for (const wchar_t* const name : {L"SMH_A", L"SMH_EMPTY", L"SMH_NESTED"}) {
      SetEnvironmentVariableW(name, nullptr);
    }
  }
};

TEST_F(EnvironmentTest, KnownReferencesAreReplacedOnce) {
  EXPECT_EQ(ExpandEnvironment(L"<%SMH_A%|%smh_a%>"), L"<value|value>");
  EXPECT_EQ(ExpandEnvironment(L"<%SMH_EMPTY%>"), L"<>");
  EXPECT_EQ(ExpandEnvironment(L"%SMH_NESTED%"), L"%SMH_A%");
  EXPECT_EQ(ExpandEnvironment(L""), L"");
}

TEST_F(EnvironmentTest, OtherPercentSignsStay) {
  EXPECT_EQ(ExpandEnvironment(L"100%"), L"100%");
  EXPECT_EQ(ExpandEnvironment(L"%%SMH_A%%"), L"%value%");
  EXPECT_EQ(ExpandEnvironment(L"%SMH_NO%"), L"%SMH_NO%");
  EXPECT_EQ(ExpandEnvironment(L"50% of %SMH_A%"), L"50% of value");
}

TEST_F(EnvironmentTest, TextsAndValuesMayBeLong) {
  const std::wstring value(32'000, L'v');
  SetEnvironmentVariableW(L"SMH_LONG", value.c_str());
  const std::wstring filler(40'000, L'f');
  EXPECT_EQ(ExpandEnvironment(filler + L"%SMH_LONG%%SMH_LONG%"), filler + value + value);
  SetEnvironmentVariableW(L"SMH_LONG", nullptr);
}

TEST_F(EnvironmentTest, OnlyPathsAreCompleted) {
  EXPECT_EQ(CanonicalizePath(L"app.exe"), L"app.exe");
  EXPECT_EQ(CanonicalizePath(L""), L"");
  EXPECT_EQ(CanonicalizePath(L"C:\\a\\.\\b\\..\\c.exe"), L"C:\\a\\c.exe");
  EXPECT_EQ(CanonicalizePath(L"C:/a//c.exe"), L"C:\\a\\c.exe");
  EXPECT_EQ(CanonicalizePath(L"\\\\server\\share\\x\\..\\c.exe"), L"\\\\server\\share\\c.exe");
  wchar_t folder[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, folder);
  EXPECT_EQ(CanonicalizePath(L".\\app.exe"), WithTrailingBackslash(folder) + L"app.exe");
  const std::wstring deep = L"C:\\" + std::wstring(5'000, L'd') + L"\\e";
  EXPECT_EQ(CanonicalizePath(deep), deep);
}

TEST_F(EnvironmentTest, IndirectStringsSplitAtTheirNumber) {
  struct Row {
    const wchar_t* text;
    const wchar_t* file;
    std::int32_t number;
  };
  const Row rows[] = {
      {L"a.dll,-12", L"a.dll", -12},
      {L"a.dll, 7 ", L"a.dll", 7},
      {L"%SMH_A%\\a,b.dll,-5", L"value\\a,b.dll", -5},
      {L"\"C:\\x y\\a.dll\",3", L"C:\\x y\\a.dll", 3},
      {L"a.dll,-21801#immutable1", L"a.dll", -21801},
      {L"a.dll,-4;v2", L"a.dll", -4},
      {L"a.dll", L"a.dll", 0},
      {L"a,b.dll", L"a,b.dll", 0},
      {L"a.dll,", L"a.dll,", 0},
      {L"a.dll,-2147483647", L"a.dll", -2147483647},
      {L"a.dll,99999999999999999999", L"a.dll,99999999999999999999", 0},
      {L"", L"", 0},
  };
  for (const Row& row : rows) {
    const IndirectString parts = SplitIndirectString(row.text);
    EXPECT_EQ(parts.file, row.file) << row.text;
    EXPECT_EQ(parts.number, row.number) << row.text;
  }
}

FILETIME LocalMoment(WORD year, WORD month, WORD day, WORD hour) {
  const SYSTEMTIME local = {year, month, 0, day, hour, 0, 0, 0};
  SYSTEMTIME universal;
  FILETIME time;
  EXPECT_TRUE(TzSpecificLocalTimeToSystemTime(nullptr, &local, &universal));
  EXPECT_TRUE(SystemTimeToFileTime(&universal, &time));
  return time;
}

TEST(OleDateTest, CountsLocalDays) {
  EXPECT_DOUBLE_EQ(OleDateOfFileTime(LocalMoment(2000, 1, 1, 0)), 36526.0);
  EXPECT_DOUBLE_EQ(OleDateOfFileTime(LocalMoment(2009, 7, 14, 18)), 40008.75);
  // Before the first day the fraction still counts forward.
  EXPECT_DOUBLE_EQ(OleDateOfFileTime(LocalMoment(1899, 12, 29, 6)), -1.25);
  EXPECT_THROW(OleDateOfFileTime({0, 0x80000000}), EOSError);
}

}  // namespace
}  // namespace smh
