// The texts of a link: target rules, conversion, description.

#include "infra/handle.h"
#include "shelllink/desktop_folder.h"
#include "shelllink/shell_link_fixture.h"

#include <shlobj.h>

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

TEST_F(LinkTargetTest, EnvironmentBlockFirst) {
  LinkBuilder link = FullLink();
  EXPECT_EQ(TargetOf(link), L"%wide%\\tool.exe");
  link.blocks = {{0xA0000001, StringBlockData("%ansi%\\tool.exe", u"")}};
  EXPECT_EQ(TargetOf(link), L"%ansi%\\tool.exe");
}

TEST_F(LinkTargetTest, IdListBeforeLinkInfo) {
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

TEST_F(LinkTargetTest, IconLocationFromTheBlockOrTheString) {
  LinkBuilder link = FullLink();
  const TShellLinkInfo full(WriteLink(link));
  EXPECT_EQ(full.IconLocation(), L"%wide%\\icon.ico");
  EXPECT_EQ(full.IconIndex(), -3);
  link.blocks.clear();
  EXPECT_EQ(TShellLinkInfo(WriteLink(link)).IconLocation(), L"C:\\Tools\\icons.dll");
}

// The first string resource of a system library.
struct NumberedText {
  UINT number = 0;
  std::wstring text;
};

NumberedText FirstStringOf(const wchar_t* library) {
  const ScopedModule module(LoadLibraryExW(library, nullptr, LOAD_LIBRARY_AS_DATAFILE));
  wchar_t buffer[260];
  for (UINT number = 1; number < 0xFFFF; ++number) {
    const int length = LoadStringW(module.Get(), number, buffer, 260);
    if (length > 0) return {number, std::wstring(buffer, static_cast<std::size_t>(length))};
  }
  return {};
}

TEST_F(LinkTargetTest, DescriptionMayNameAResource) {
  const NumberedText resource = FirstStringOf(L"shell32.dll");
  ASSERT_FALSE(resource.text.empty());
  const std::string reference = "@shell32.dll,-" + std::to_string(resource.number);
  LinkBuilder link;
  link.strings = {{LinkString::kName, std::u16string(reference.begin(), reference.end())}};
  const TShellLinkInfo info(WriteLink(link));
  EXPECT_EQ(info.Description(), resource.text);
  EXPECT_EQ(info.StoredDescription(), std::wstring(reference.begin(), reference.end()));
  EXPECT_EQ(TShellLinkInfo(WriteLink(FullLink())).Description(), L"Does things");
  EXPECT_EQ(TShellLinkInfo(WriteLink(LinkBuilder{})).Description(), L"");
}

TEST_F(LinkTargetTest, DesktopFolderIsFetchedAnewAfterAStop) {
  LinkBuilder link;
  const std::wstring file = folder.Write(L"named.exe", "x");
  link.idList = ShellIdList(file);
  const TShellLinkInfo info(WriteLink(link));
  EXPECT_EQ(info.Target(), file);
  StopShellLink();
  StartShellLink();
  EXPECT_EQ(info.Target(), file);
}

}  // namespace
}  // namespace smh::test
