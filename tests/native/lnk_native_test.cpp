// The parser over the corpus and over everything that can go wrong with one field or one byte.

#include "samples/link_builder.h"
#include "tests/native/every_accessor.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

std::string FileBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

Bytes BytesOf(const std::string& text) {
  return std::as_bytes(std::span(text));
}

std::optional<LinkFault> FaultOf(const BuiltLink& link) {
  LinkSections sections;
  return LoadAndRead(sections, link.AsBytes()).fault;
}

// Every rule and every refusal of the format once, in a file that is named after what becomes of it. The
// fuzzer starts from them too.
TEST(CorpusTest, EveryLinkIsAcceptedOrRefusedAsItsNameSays) {
  const std::map<std::string, std::optional<LinkFault>> outcomes = {{"accepted", std::nullopt},
                                                                    {"class", LinkFault::kClassId},
                                                                    {"data", LinkFault::kSizeOrData},
                                                                    {"header", LinkFault::kHeaderSize},
                                                                    {"info", LinkFault::kLinkInfo}};
  std::map<std::string, int> met;
  LinkSections reused;
  for (const fs::directory_entry& file : fs::directory_iterator(SMH_LNK_CORPUS)) {
    if (file.path().extension() != ".lnk") continue;
    const std::string name = file.path().stem().string();
    const std::string outcome = name.substr(0, name.find('-'));
    const std::string bytes = FileBytes(file.path());
    ASSERT_TRUE(outcomes.contains(outcome)) << name;
    LinkSections fresh;
    const ReadLink result = LoadAndRead(fresh, BytesOf(bytes));
    EXPECT_EQ(result.fault, outcomes.at(outcome)) << name;
    EXPECT_EQ(LoadAndRead(reused, BytesOf(bytes)), result) << name << " after others";
    ++met[outcome];
  }
  EXPECT_EQ(met.size(), outcomes.size()) << "files of every outcome";
}

// Of all the places where a full link may end, only the one right after its strings is a link again.
TEST(CorruptionTest, EveryTruncationIsRefusedButTheOneAfterTheStrings) {
  const BuiltLink full = FullLink().Build();
  LinkBuilder plain = FullLink();
  plain.blocks.clear();
  plain.hasTerminal = false;
  const std::size_t stringsEnd = plain.Build().Size();
  for (std::size_t size = 0; size < full.Size(); ++size) {
    const std::optional<LinkFault> expected =
        size == stringsEnd ? std::nullopt : std::optional(LinkFault::kSizeOrData);
    ASSERT_EQ(FaultOf(full.CutTo(size)), expected) << "cut to " << size;
  }
  EXPECT_EQ(FaultOf(full), std::nullopt);
}

TEST(CorruptionTest, ChainsOfBlocksAreAsLongAsTheFile) {
  LinkBuilder link;
  link.blocks.assign(100'000, {0xA000000A, {}});
  LinkSections sections;
  ASSERT_EQ(LoadAndRead(sections, link.Build().AsBytes()).fault, std::nullopt);
  EXPECT_EQ(sections.ExtraData().size(), 100'000u);
}

}  // namespace
}  // namespace smh::test
