// The texts of a link: target rules, conversion, description, names of the shell. Links as the shell saves
// them are tested with the Startup folders.
#include "shelllink/desktop_folder.h"
#include "tests/shelllink/shell_link_fixture.h"
#include "tests/support/child_process.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <cstring>

namespace smh::test {
namespace {

class LinkTargetTest : public ShellLinkTest {
 protected:
  // As the shell makes it for a file that exists.
  static std::string ShellIdList(const std::wstring& path) {
    PIDLIST_ABSOLUTE list = ILCreateFromPathW(path.c_str());
    if (list == nullptr) return {};
    std::string bytes(reinterpret_cast<const char*>(list), ILGetSize(list));
    ILFree(list);
    return bytes;
  }

  static LinkInfoSpec LocalInfo() { return {.basePath = "C:\\Tools\\", .suffix = "tool.exe"}; }
};

TEST_F(LinkTargetTest, EnvironmentBlockBeforeIdListBeforeLinkInfo) {
  EXPECT_EQ(TargetOf(FullLink()), L"%wide%\\tool.exe");
  const std::wstring file = folder.Write(L"named.exe", "x");
  LinkBuilder link{.info = LocalInfo()};
  link.idList = ShellIdList(file);
  ASSERT_FALSE(link.idList->empty());
  EXPECT_EQ(TargetOf(link), file);
  link.moreFlags = kForceNoLinkInfo;
  EXPECT_EQ(TargetOf(link), file);
  // Without its terminator the same list does not reach the shell.
  link.idList->resize(link.idList->size() - 2);
  EXPECT_EQ(TargetOf(link), L"");
  link.moreFlags = 0;
  EXPECT_EQ(TargetOf(link), L"C:\\Tools\\tool.exe");
}

TEST_F(LinkTargetTest, AListTheShellRefusesGivesWayToLinkInfo) {
  LinkBuilder link{.info = LocalInfo()};
  // An item inside a namespace extension that is not registered.
  link.idList = IdListOf({"\x1FP0123456789abcdef", "item"});
  EXPECT_EQ(TargetOf(link), L"C:\\Tools\\tool.exe");
}

TEST_F(LinkTargetTest, LocalPathThenNetName) {
  LinkInfoSpec info = LocalInfo();
  info.network = NetworkSpec{.netName = "\\\\server\\share"};
  const BuiltLink both = LinkBuilder{.info = info}.Build();
  EXPECT_EQ(TargetOf(both), L"C:\\Tools\\tool.exe");
  EXPECT_EQ(TargetOf(both.With("LocalBasePathOffset", 0)), L"tool.exe");
  EXPECT_EQ(TargetOf(both.With("LocalBasePathOffset", 0).With("CommonPathSuffixOffset", 0)),
            L"\\\\server\\share");
  EXPECT_EQ(TargetOf(both.With("LinkInfoFlags", 2)), L"\\\\server\\share");
  EXPECT_EQ(TargetOf(both.With("LinkInfoFlags", 0)), L"");
  EXPECT_EQ(TargetOf(both.With("LinkFlags", kHasLinkInfo | kForceNoLinkInfo)), L"");
}

TEST_F(LinkTargetTest, BothKindsOfCharacters) {
  ASSERT_EQ(GetACP(), 1252u);
  LinkInfoSpec info{
      .basePath = "C:\\caf\xE9\\", .suffix = "old", .hasUnicode = true, .suffixUnicode = u"\u4E2D.exe"};
  EXPECT_EQ(TargetOf(LinkBuilder{.info = info}), L"C:\\caf\u00E9\\\u4E2D.exe");
  LinkBuilder ansi;
  ansi.isUnicode = false;
  ansi.strings = {{LinkString::kArguments, u"caf\u00E9 \u0080"}};
  EXPECT_EQ(TShellLinkInfo(WriteLink(ansi)).Arguments(), L"caf\u00E9 \u20AC");
  // Unpaired surrogates come through as they are.
  LinkBuilder wide;
  wide.strings = {{LinkString::kArguments, u"a\xD800z"}};
  EXPECT_EQ(TShellLinkInfo(WriteLink(wide)).Arguments(), L"a\xD800z");
}

TEST_F(LinkTargetTest, DescriptionMayNameAResource) {
  const std::wstring reference =
      L"@" + ThisFolder() + L"..\\samples\\drive_c\\Samples\\Texts\\clienttexts.dll,-101";
  LinkBuilder link;
  link.strings = {{LinkString::kName, std::u16string(reference.begin(), reference.end())}};
  const TShellLinkInfo info(WriteLink(link));
  EXPECT_EQ(info.Description(), L"Tidewater Mail");
  EXPECT_EQ(info.StoredDescription(), reference);
  EXPECT_EQ(TShellLinkInfo(WriteLink(FullLink())).Description(), L"Does things");
  EXPECT_EQ(TShellLinkInfo(WriteLink(LinkBuilder{})).Description(), L"");
}

TEST_F(LinkTargetTest, DesktopFolderIsFetchedAnewAfterAStop) {
  LinkBuilder link;
  const std::wstring file = folder.Write(L"named.exe", "x");
  link.idList = ShellIdList(file);
  const TShellLinkInfo info(WriteLink(link));
  EXPECT_EQ(info.Target(), file);
  g_desktopFolder.Stop();
  g_desktopFolder.Start();
  EXPECT_EQ(info.Target(), file);
}

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
}  // namespace smh::test
