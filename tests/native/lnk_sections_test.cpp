// What the sections of an accepted link say, and what is left of a refused one.

#include "samples/link_builder.h"
#include "tests/native/every_accessor.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

using namespace std::string_literals;

class LoadedLink : public LinkSections {
 public:
  explicit LoadedLink(const BuiltLink& link) { fault = LoadAndRead(*this, link.AsBytes()).fault; }
  explicit LoadedLink(const LinkBuilder& link) : LoadedLink(link.Build()) {}

  std::optional<LinkFault> fault;
};

std::u16string Wide(const StoredText& text) {
  EXPECT_TRUE(text.IsUtf16() || text.Empty());
  std::u16string units(text.Utf16Length(), u'\0');
  text.CopyUtf16(units.data());
  return units;
}

std::string Ansi(const StoredText& text) {
  EXPECT_FALSE(text.IsUtf16());
  return std::string(text.AnsiView());
}

TEST(IdListTest, OnlyWellFormedListsPass) {
  struct Row {
    std::string list;
    bool isWellFormed;
  };
  const Row rows[] = {{IdListOf({"a", "bc"}), true},
                      {IdListOf({}), true},
                      {IdListOf({"a"}) + "behind", true},
                      {"", false},
                      {"\0"s, false},
                      {"\x01\0\0\0"s, false},
                      {"\x02\0\0\0"s, false},
                      {"\x03\0a"s, false},
                      {"\x03\0a\0"s, false},
                      {"\x04\0a\0\0"s, false},
                      {"\xFF\xFF\0\0"s, false}};
  for (const Row& row : rows) {
    LinkBuilder builder;
    builder.idList = row.list;
    const LoadedLink link(builder);
    EXPECT_FALSE(link.fault);
    EXPECT_EQ(link.TargetIDList().List().size(), row.list.size());
    EXPECT_EQ(link.TargetIDList().IsWellFormed(), row.isWellFormed) << testing::PrintToString(row.list);
  }
}

TEST(LinkInfoTest, UnicodeOffsetsWinOneByOne) {
  LinkInfoSpec info{.basePath = "C:\\old\\", .suffix = "old.exe", .hasUnicode = true};
  info.basePathUnicode = u"C:\\n\u00E9w\\";
  const LoadedLink mixed(LinkBuilder{.info = info});
  EXPECT_EQ(Wide(mixed.LinkInfo().LocalBasePath()), u"C:\\n\u00E9w\\");
  EXPECT_EQ(Ansi(mixed.LinkInfo().CommonPathSuffix()), "old.exe");
  info.hasUnicode = false;
  info.basePathUnicode.clear();
  const BuiltLink ansi = LinkBuilder{.info = info}.Build();
  EXPECT_EQ(Ansi(LoadedLink(ansi).LinkInfo().LocalBasePath()), "C:\\old\\");
  EXPECT_TRUE(LoadedLink(ansi.With("LocalBasePathOffset", 0)).LinkInfo().LocalBasePath().Empty());
  EXPECT_TRUE(LoadedLink(ansi.With("LinkInfoFlags", 0)).LinkInfo().LocalBasePath().Empty());
}

TEST(LinkInfoTest, TextsEndWithTheStructure) {
  LinkInfoSpec info{.basePath = "C:\\", .suffix = "end"};
  LinkBuilder builder{.info = info};
  builder.strings = {{LinkString::kName, u"behind"}};
  const BuiltLink link = builder.Build();
  // Without its last byte, the suffix has no NUL inside the structure any more.
  const LoadedLink cut(link.With("LinkInfoSize", link.ValueOf("LinkInfoSize") - 1));
  EXPECT_EQ(Ansi(cut.LinkInfo().CommonPathSuffix()), "end");
  const LoadedLink atEnd(link.With("CommonPathSuffixOffset", link.ValueOf("LinkInfoSize")));
  EXPECT_FALSE(atEnd.fault);
  EXPECT_TRUE(atEnd.LinkInfo().CommonPathSuffix().Empty());
}

// The offsets are refused, and yet the accessors may be asked.
TEST(LinkInfoTest, TextsBehindTheStructureAreEmpty) {
  const BuiltLink unicode = FullLink().Build();
  const std::uint64_t size = unicode.ValueOf("LinkInfoSize");
  const BuiltLink ansi = LinkBuilder{.info = LinkInfoSpec{}}.Build();
  for (const std::uint64_t more : {std::uint64_t{1}, std::uint64_t{2}, 0xFFFFFFFF - size}) {
    const LoadedLink wide(unicode.With("LocalBasePathOffsetUnicode", size + more));
    EXPECT_EQ(wide.fault, LinkFault::kLinkInfo);
    EXPECT_TRUE(wide.LinkInfo().LocalBasePath().Empty()) << more;
    const LoadedLink narrow(ansi.With("LocalBasePathOffset", ansi.ValueOf("LinkInfoSize") + more));
    EXPECT_EQ(narrow.fault, LinkFault::kLinkInfo);
    EXPECT_TRUE(narrow.LinkInfo().LocalBasePath().Empty()) << more;
  }
  // Half a unit is none.
  const LoadedLink half(unicode.With("LocalBasePathOffsetUnicode", size - 1));
  EXPECT_FALSE(half.fault);
  EXPECT_TRUE(half.LinkInfo().LocalBasePath().Empty());
  // Fields of a volume there are zero.
  for (const std::uint64_t at : {size, size - 3})
    EXPECT_FALSE(LoadedLink(unicode.With("VolumeIDOffset", at)).fault);
}

TEST(LinkInfoTest, NetNameIsAnsiUpToOffset20) {
  LinkInfoSpec info{.volume = std::nullopt, .network = NetworkSpec{.netName = "\\\\old\\share"}};
  const BuiltLink ansi = LinkBuilder{.info = info}.Build();
  EXPECT_EQ(ansi.ValueOf("NetNameOffset"), 20u);
  EXPECT_EQ(Ansi(LoadedLink(ansi).LinkInfo().NetName()), "\\\\old\\share");
  info.network->hasUnicode = true;
  info.network->netNameUnicode = u"\\\\n\u00E9w\\share";
  const BuiltLink unicode = LinkBuilder{.info = info}.Build();
  EXPECT_EQ(Wide(LoadedLink(unicode).LinkInfo().NetName()), u"\\\\n\u00E9w\\share");
  EXPECT_TRUE(LoadedLink(unicode.With("LinkInfoFlags", 1)).LinkInfo().NetName().Empty());
  EXPECT_TRUE(LoadedLink(unicode.With("CommonNetworkRelativeLinkOffset", 0)).LinkInfo().NetName().Empty());
}

TEST(StringTest, CutAtTheFirstNul) {
  LinkBuilder builder;
  builder.strings = {{LinkString::kName, u"ab\0cd"s}, {LinkString::kArguments, u"\0x"s}};
  const LoadedLink unicode(builder);
  EXPECT_EQ(Wide(unicode.Strings().Text(LinkString::kName)), u"ab");
  EXPECT_TRUE(unicode.Strings().Text(LinkString::kArguments).Empty());
  builder.isUnicode = false;
  EXPECT_EQ(Ansi(LoadedLink(builder).Strings().Text(LinkString::kName)), "ab");
}

TEST(ExtraDataTest, SignaturesChooseTheKind) {
  const LoadedLink link(FullLink());
  using enum TExtraDataKind;
  const TExtraDataKind kinds[] = {edkEnvironment,   edkConsole,     edkTracker,         edkConsoleFE,
                                  edkSpecialFolder, edkDarwin,      edkIconEnvironment, edkShim,
                                  edkPropertyStore, edkKnownFolder, edkVistaIDList,     edkUnknown};
  ASSERT_EQ(link.ExtraData().size(), std::size(kinds));
  for (std::size_t i = 0; i < std::size(kinds); ++i) {
    EXPECT_EQ(link.ExtraData()[i].Kind(), kinds[i]) << i;
    EXPECT_EQ(link.FindExtraData(kinds[i]), &link.ExtraData()[i]) << i;
  }
  EXPECT_EQ(link.FindExtraData(edkShim)->Data().size(), 17u);
}

TEST(ExtraDataTest, Utf16TargetBeforeAnsi) {
  const auto environment = [](std::string_view ansi, std::u16string_view unicode) {
    LinkBuilder builder;
    builder.blocks = {{0xA0000001, StringBlockData(ansi, unicode)}};
    return builder;
  };
  EXPECT_EQ(Wide(LoadedLink(environment("a.exe", u"w.exe")).EnvironmentTarget()), u"w.exe");
  EXPECT_EQ(Ansi(LoadedLink(environment("a.exe", u"")).EnvironmentTarget()), "a.exe");
  // Neither text runs on into what follows it.
  const std::string longest(260, 'a');
  EXPECT_EQ(Ansi(LoadedLink(environment(longest, u"")).EnvironmentTarget()), longest);
  const std::u16string wideLongest(260, u'w');
  EXPECT_EQ(Wide(LoadedLink(environment("", wideLongest)).EnvironmentTarget()), wideLongest);
}

TEST(IconLocationTest, IconEnvironmentBeforeTheString) {
  LinkBuilder builder;
  builder.strings = {{LinkString::kIconLocation, u"plain.ico"}};
  EXPECT_EQ(Wide(LoadedLink(builder).IconLocation()), u"plain.ico");
  builder.blocks = {{0xA0000007, StringBlockData("", u"")}};
  EXPECT_EQ(Wide(LoadedLink(builder).IconLocation()), u"plain.ico");
  builder.blocks = {{0xA0000007, StringBlockData("block.ico", u"")}};
  EXPECT_EQ(Ansi(LoadedLink(builder).IconLocation()), "block.ico");
}

TEST(FaultTest, SectionsBeforeTheFaultAreKept) {
  const BuiltLink full = FullLink().Build();
  const LoadedLink header(full.With("LinkCLSIDLow", 0));
  EXPECT_EQ(header.fault, LinkFault::kClassId);
  EXPECT_EQ(header.Header().HotKey(), 0x0641);
  EXPECT_TRUE(header.TargetIDList().List().empty());
  const LoadedLink blocks(full.With("BlockSize1", 203));
  EXPECT_EQ(blocks.fault, LinkFault::kSizeOrData);
  EXPECT_EQ(Wide(blocks.EnvironmentTarget()), u"%wide%\\tool.exe");
  EXPECT_EQ(Wide(blocks.Strings().Text(LinkString::kName)), u"Does things");
  EXPECT_EQ(blocks.ExtraData().size(), 1u);
  const LoadedLink info(full.With("VolumeIDOffset", 0xFFFFFFFF));
  EXPECT_EQ(info.fault, LinkFault::kLinkInfo);
  EXPECT_EQ(Wide(info.LinkInfo().LocalBasePath()), u"C:\\Tools\u00E4\\");
  EXPECT_TRUE(info.Strings().Text(LinkString::kName).Empty());
}

}  // namespace
}  // namespace smh::test
