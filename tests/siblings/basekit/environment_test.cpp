#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "siblings/basekit/environment.h"
#include "siblings/basekit/helper_parts.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

struct TextCase {
  std::wstring from;
  std::wstring to;
};

TEST(EnvironmentTest, KnownReferencesAreReplacedOnce) {
  const std::wstring value(32'000, L'v');
  const std::wstring filler(40'000, L'f');
  SetEnvironmentVariableW(L"SMH_A", L"value");
  SetEnvironmentVariableW(L"SMH_EMPTY", L"");
  SetEnvironmentVariableW(L"SMH_NESTED", L"%SMH_A%");
  SetEnvironmentVariableW(L"SMH_LONG", value.c_str());
  SetEnvironmentVariableW(L"SMH_NO", nullptr);
  const TextCase cases[] = {
      {L"<%SMH_A%|%smh_a%|%SMH_EMPTY%>", L"<value|value|>"},
      {L"%SMH_NESTED%", L"%SMH_A%"},
      {L"", L""},
      {L"100%", L"100%"},
      {L"%%SMH_A%%", L"%value%"},
      {L"%SMH_NO%", L"%SMH_NO%"},
      {L"50% of %SMH_A%", L"50% of value"},
      {filler + L"%SMH_LONG%%SMH_LONG%", filler + value + value},
  };
  for (const TextCase& row : cases) EXPECT_EQ(ExpandEnvironment(row.from), row.to);
  for (const wchar_t* const name : {L"SMH_A", L"SMH_EMPTY", L"SMH_NESTED", L"SMH_LONG"}) {
    SetEnvironmentVariableW(name, nullptr);
  }
}

TEST(EnvironmentTest, OnlyPathsAreCompleted) {
  wchar_t folder[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, folder);
  const std::wstring deep = L"C:\\" + std::wstring(5'000, L'd') + L"\\e";
  const TextCase cases[] = {
      {L"app.exe", L"app.exe"},
      {L"", L""},
      {L"C:/a//.\\b\\..\\c.exe", L"C:\\a\\c.exe"},
      {L"\\\\server\\share\\x\\..\\c.exe", L"\\\\server\\share\\c.exe"},
      {L".\\app.exe", WithTrailingBackslash(folder) + L"app.exe"},
      {deep, deep},
  };
  for (const TextCase& row : cases) EXPECT_EQ(CanonicalizePath(row.from.c_str()), row.to);
}

TEST(IndirectStringTest, SplitsAtItsNumber) {
  const struct {
    const wchar_t* text;
    const wchar_t* file;
    std::int32_t number;
  } rows[] = {
      {L"a.dll, 7 ", L"a.dll", 7},
      {L"%SystemDrive%\\a,b.dll,-5", L"C:\\a,b.dll", -5},
      {L"\"C:\\x y\\a.dll\",3", L"C:\\x y\\a.dll", 3},
      {L"a.dll,-21801#immutable1", L"a.dll", -21801},
      {L"a.dll,-4;v2", L"a.dll", -4},
      {L"a,b.dll", L"a,b.dll", 0},
      {L"a.dll,", L"a.dll,", 0},
      {L"a.dll,-2147483647", L"a.dll", -2147483647},
      {L"a.dll,99999999999999999999", L"a.dll,99999999999999999999", 0},
      {L"", L"", 0},
  };
  for (const auto& row : rows) {
    const IndirectString parts = SplitIndirectString(row.text);
    EXPECT_EQ(parts.file, row.file) << row.text;
    EXPECT_EQ(parts.number, row.number) << row.text;
  }
}

double OleDateOfLocal(WORD year, WORD month, WORD day, WORD hour) {
  const SYSTEMTIME local = {year, month, 0, day, hour, 0, 0, 0};
  SYSTEMTIME universal;
  FILETIME time;
  EXPECT_TRUE(TzSpecificLocalTimeToSystemTime(nullptr, &local, &universal));
  EXPECT_TRUE(SystemTimeToFileTime(&universal, &time));
  return OleDateOfFileTime(time);
}

TEST(OleDateTest, CountsLocalDays) {
  EXPECT_DOUBLE_EQ(OleDateOfLocal(2009, 7, 14, 18), 40008.75);
  // Before the first day the fraction still counts forward.
  EXPECT_DOUBLE_EQ(OleDateOfLocal(1899, 12, 29, 6), -1.25);
  EXPECT_THROW(OleDateOfFileTime({0, 0x80000000}), EOSError);
}

}  // namespace
}  // namespace smh::test
