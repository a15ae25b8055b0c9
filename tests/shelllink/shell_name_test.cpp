// The three forms of a shell name.

#include "shelllink/desktop_folder.h"

#include <gtest/gtest.h>

#include <cstring>

namespace smh {
namespace {

Bytes BytesOf(std::string_view text) {
  return std::as_bytes(std::span(text));
}

TEST(ShellNameTest, WideStringIsTakenOver) {
  STRRET name{};
  name.uType = STRRET_WSTR;
  name.pOleStr = static_cast<wchar_t*>(CoTaskMemAlloc(6 * sizeof(wchar_t)));
  std::memcpy(name.pOleStr, L"C:\\\u4E2D.", 6 * sizeof(wchar_t));
  EXPECT_EQ(TakeShellName(name, {}), L"C:\\\u4E2D.");
  EXPECT_EQ(name.pOleStr, nullptr);
  EXPECT_EQ(TakeShellName(name, {}), L"");
}

TEST(ShellNameTest, OffsetStaysInsideTheList) {
  constexpr std::string_view kList("ab\0cde", 6);
  STRRET name{};
  name.uType = STRRET_OFFSET;
  EXPECT_EQ(TakeShellName(name, BytesOf(kList)), L"ab");
  name.uOffset = 3;
  EXPECT_EQ(TakeShellName(name, BytesOf(kList)), L"cde");
  for (const UINT offset : {6u, 7u, 0xFFFFFFFFu}) {
    name.uOffset = offset;
    EXPECT_EQ(TakeShellName(name, BytesOf(kList)), L"") << offset;
  }
}

TEST(ShellNameTest, AnsiStringEndsWithItsBuffer) {
  STRRET name{};
  name.uType = STRRET_CSTR;
  std::memcpy(name.cStr, "C:\\a", 5);
  EXPECT_EQ(TakeShellName(name, {}), L"C:\\a");
  std::memset(name.cStr, 'x', sizeof name.cStr);
  EXPECT_EQ(TakeShellName(name, {}), std::wstring(MAX_PATH, L'x'));
  // An unknown form is nothing.
  name.uType = 99;
  EXPECT_EQ(TakeShellName(name, BytesOf("text")), L"");
}

}  // namespace
}  // namespace smh
