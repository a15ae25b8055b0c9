#include "model/rundll_rule.h"

#include <gtest/gtest.h>

#include <set>

namespace smh::test {

TEST(RundllRule, TheLastExistingFileBehindTheLibraryAndItsEntryPoint) {
  const std::set<std::wstring, std::less<>> files = {L"a.dll", L"b.cpl", L"c:\\my files\\c.dll", L"Entry"};
  const auto existing = [&](std::wstring_view element) {
    return files.contains(element) ? std::wstring(element) : std::wstring();
  };
  struct Row {
    const wchar_t* command;
    const wchar_t* target;
  };
  const Row rows[] = {
      {L"rundll32 a.dll,Control_RunDLL b.cpl", L"b.cpl"},
      {L"rundll32.exe a.dll,Start", L"a.dll"},
      {L"rundll32 a.dll,Start gone.cpl", L"a.dll"},
      {L"rundll32 a.dll,Entry", L"a.dll"},
      {L"\"C:\\windows\\rundll32.exe\" \"c:\\my files\\c.dll\",Start x", L"c:\\my files\\c.dll"},
      {L"rundll32   a.dll   ,  Start", L"a.dll"},
      {L"rundll32 a.dll", L"a.dll"},
      {L"rundll32 gone.dll,Start", L""},
      {L"rundll32", L""},
      {L"", L""},
      {L"rundll32 \"a.dll", L"a.dll"},
      {L"rundll32 a.dll,Start b.cpl,1", L"a.dll"},
  };
  for (const Row& row : rows) EXPECT_EQ(RundllTarget(row.command, existing), row.target) << row.command;

  EXPECT_TRUE(IsRundll(L"RunDLL32"));
  EXPECT_TRUE(IsRundll(L"rundll"));
  EXPECT_FALSE(IsRundll(L"rundll64"));
}

}  // namespace smh::test
