// A link with the command of another: nothing of the old target is left, and nothing else is lost.

#include "samples/link_builder.h"
#include "shelllink/format/link_splice.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

constexpr std::uint32_t kRunAsUser = 0x2000;
constexpr std::uint32_t kDisableTracking = 0x40000;

std::u16string FromLatin(std::string_view text) {
  std::u16string wide;
  for (const char unit : text) wide += static_cast<unsigned char>(unit);
  return wide;
}

std::u16string Wide(const StoredText& text) {
  std::u16string units(text.Utf16Length(), u'\0');
  text.CopyUtf16(units.data());
  return units;
}

std::string Text(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// A command as the shell writes it: nothing but a list, LinkInfo and arguments.
BuiltLink NewCommand() {
  LinkBuilder link;
  link.idList = IdListOf({"new"});
  link.info = LinkInfoSpec{.basePath = "D:\\new\\", .suffix = "new.exe"};
  link.strings = {{LinkString::kRelativePath, u"..\\new.exe"}, {LinkString::kArguments, u"/new"}};
  link.blocks = {{0xA0000003, std::string(88, 'n')}};
  link.showCommand = 1;
  return link.Build().With("FileSize", 77).With("FileAttributes", 0x21);
}

// The spliced link, loaded; fails the test when it is none.
class Spliced : public LinkSections {
 public:
  Spliced(const BuiltLink& kept, const BuiltLink& command, std::u16string_view file = u"tool.exe") {
    LinkSections old;
    LinkSections fresh;
    old.Load(kept.AsBytes());
    fresh.Load(command.AsBytes());
    bytes = SpliceLink(old, fresh, file, FromLatin);
    Load(std::as_bytes(std::span(bytes)));
  }

  std::uint32_t HeaderField(std::size_t offset) const { return SectionView(Header().Stored()).U32At(offset); }

  std::string bytes;
};

std::vector<std::uint32_t> Signatures(const LinkSections& link) {
  std::vector<std::uint32_t> signatures;
  for (const TExtraData& block : link.ExtraData()) signatures.push_back(block.Signature());
  return signatures;
}

TEST(LinkSpliceTest, AllThatSpeaksOfTheTargetIsNew) {
  LinkBuilder old = FullLink();
  old.moreFlags = kHasExpString | kHasDarwinId | kPreferEnvironmentPath;
  const BuiltLink command = NewCommand();
  const Spliced link(old.Build(), command);
  LinkSections fresh;
  fresh.Load(command.AsBytes());
  EXPECT_EQ(Text(link.TargetIDList().List()), IdListOf({"new"}));
  EXPECT_EQ(Text(link.LinkInfo().Stored()), Text(fresh.LinkInfo().Stored()));
  EXPECT_EQ(Wide(link.Strings().Text(LinkString::kArguments)), u"/new");
  EXPECT_TRUE(link.Strings().Text(LinkString::kRelativePath).Empty());
  EXPECT_TRUE(link.EnvironmentTarget().Empty());
  EXPECT_EQ(link.HeaderField(24), 0x21u);
  EXPECT_EQ(link.HeaderField(52), 77u);
  EXPECT_FALSE(link.Header().Has(kHasExpString | kHasDarwinId | kPreferEnvironmentPath | kHasRelativePath));
  const std::vector<std::uint32_t> kept = {0xA0000002, 0xA0000004, 0xA0000007,
                                           0xA0000008, 0xA0000009, 0xDEADBEEF};
  EXPECT_EQ(Signatures(link), kept);
}

TEST(LinkSpliceTest, AllElseIsKept) {
  LinkBuilder old = FullLink();
  old.moreFlags = kRunAsUser | kDisableTracking | kForceNoLinkInfo;
  old.strings.pop_back();
  const BuiltLink built = old.Build();
  const Spliced link(built, NewCommand());
  LinkSections before;
  before.Load(built.AsBytes());
  EXPECT_TRUE(link.Header().Has(kRunAsUser));
  EXPECT_TRUE(link.Header().Has(kDisableTracking));
  EXPECT_TRUE(link.Header().Has(kForceNoLinkInfo));
  EXPECT_FALSE(link.Header().Has(kHasIconLocation));
  EXPECT_EQ(link.Header().IconIndex(), -3) << "without an icon location too";
  EXPECT_EQ(link.Header().ShowCommand(), 7u);
  EXPECT_EQ(link.Header().HotKey(), 0x0641);
  for (const LinkString which : {LinkString::kName, LinkString::kWorkingDir}) {
    EXPECT_EQ(Text(link.Strings().Stored(which)), Text(before.Strings().Stored(which)));
  }
  for (const TExtraData& block : link.ExtraData()) {
    const TExtraData* const same = before.FindExtraData(block.Kind());
    ASSERT_NE(same, nullptr);
    EXPECT_EQ(Text(block.Data()), Text(same->Data()));
  }
  // Once more with the same command: nothing is left to change.
  BuiltLink again;
  again.Put(link.bytes);
  EXPECT_EQ(Spliced(again, NewCommand()).bytes, link.bytes);
}

TEST(LinkSpliceTest, WhatTheCommandLacksGoes) {
  const Spliced link(FullLink().Build(), LinkBuilder{}.Build());
  EXPECT_FALSE(link.Header().Has(kHasLinkTargetIDList | kHasLinkInfo | kHasArguments));
  EXPECT_TRUE(link.TargetIDList().List().empty());
  EXPECT_TRUE(link.Strings().Text(LinkString::kArguments).Empty());
  EXPECT_EQ(Wide(link.Strings().Text(LinkString::kIconLocation)), u"C:\\Tools\\icons.dll");
}

TEST(LinkSpliceTest, LinkInfoMayBeLeftOut) {
  LinkSections old;
  LinkSections fresh;
  old.Load(FullLink().Build().AsBytes());
  fresh.Load(NewCommand().AsBytes());
  const std::string bytes = SpliceLink(old, fresh, u"", FromLatin, false);
  LinkSections link;
  link.Load(std::as_bytes(std::span(bytes)));
  EXPECT_FALSE(link.Header().Has(kHasLinkInfo));
  EXPECT_EQ(Text(link.TargetIDList().List()), IdListOf({"new"}));
  EXPECT_EQ(Wide(link.Strings().Text(LinkString::kArguments)), u"/new");
}

TEST(LinkSpliceTest, TextsOfTheCodePageBecomeUtf16) {
  LinkBuilder old;
  old.isUnicode = false;
  old.strings = {{LinkString::kName, u"caf\u00E9"}, {LinkString::kWorkingDir, u""}};
  const Spliced link(old.Build(), NewCommand());
  EXPECT_EQ(Wide(link.Strings().Text(LinkString::kName)), u"caf\u00E9");
  EXPECT_TRUE(link.Header().Has(kHasWorkingDir));
  EXPECT_EQ(Wide(link.Strings().Text(LinkString::kArguments)), u"/new");
}

// A storage of a property store around a UTF-16 text at an odd place.
std::string Storage(std::u16string_view text) {
  BuiltLink storage;
  storage.PutField("Size", 0, 4);
  storage.Put("1SPS-------id-------");
  storage.Put("-");
  storage.PutUnits(text);
  storage.Set("Size", storage.Size());
  return storage.Text();
}

std::string StoreAfterwards(const std::string& store, std::u16string_view file) {
  LinkBuilder old;
  old.blocks = {{0xA0000009, store}};
  const Spliced link(old.Build(), NewCommand(), file);
  const TExtraData* const block = link.FindExtraData(TExtraDataKind::edkPropertyStore);
  return block == nullptr ? "none" : Text(block->Data());
}

TEST(LinkSpliceTest, OfAPropertyStoreOnlyWhatNamesTheTargetGoes) {
  const std::string application = Storage(u"Maker.Application.1");
  const std::string target = Storage(u"C:\\Tools\\TOOL.exe");
  const std::string end(4, '\0');
  EXPECT_EQ(StoreAfterwards(application + target + end, u"tool.EXE"), application + end);
  EXPECT_EQ(StoreAfterwards(target + application + end + "behind", u"tool.exe"),
            application + end + "behind");
  EXPECT_EQ(StoreAfterwards(target + end, u"tool.exe"), "none");
  EXPECT_EQ(StoreAfterwards(target + end, u"pool.exe"), target + end);
  EXPECT_EQ(StoreAfterwards(target + end, u""), target + end);
  // Not made of storages: kept whole or not at all.
  EXPECT_EQ(StoreAfterwards(application + target, u"tool.exe"), "none");
  EXPECT_EQ(StoreAfterwards(application + "\xFF", u"tool.exe"), application + "\xFF");
  EXPECT_EQ(StoreAfterwards("", u"tool.exe"), "none");
}

}  // namespace
}  // namespace smh::test
