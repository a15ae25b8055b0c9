// The reader of version records over the corpus and over everything that can go wrong with one byte.

#include "siblings/basekit/format/version_record.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace smh::test {
namespace {

namespace fs = std::filesystem;
using ByteVector = std::vector<std::byte>;

// In memory of exactly that size, so that the sanitizer sees a read past its end.
ByteVector FileBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(file), {});
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

ByteVector SampleOf(std::string_view name) {
  return FileBytes(fs::path(SMH_VERSION_CORPUS) / name);
}

std::string OutcomeOf(const VersionRecord& record) {
  const bool hasNumber = !record.FileVersionNumber().empty();
  const bool hasText = !record.String(L"CompanyName").empty();
  if (hasNumber) return hasText ? "whole" : "number";
  return hasText ? "text" : "nothing";
}

// Every way to be right or wrong once, in a file that is named after what can be read of it. The fuzzer
// starts from them too.
TEST(VersionCorpusTest, EveryRecordGivesWhatItsNameSays) {
  std::map<std::string, int> met;
  for (const fs::directory_entry& file : fs::directory_iterator(SMH_VERSION_CORPUS)) {
    const std::string name = file.path().stem().string();
    const std::string outcome = name.substr(0, name.find('-'));
    EXPECT_EQ(OutcomeOf(VersionRecord(FileBytes(file.path()))), outcome) << name;
    ++met[outcome];
  }
  EXPECT_EQ(met.size(), 4u) << "files of every outcome";
}

TEST(VersionRecordNativeTest, AnyCutOrChangedRecordIsReadWithinItsBounds) {
  const ByteVector whole = SampleOf("whole-compiled-languages.bin");
  const std::wstring text = L"Sample Works Ltd.";
  ASSERT_EQ(VersionRecord(whole).String(L"CompanyName"), text);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const VersionRecord cut(ByteVector(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    EXPECT_TRUE(text.starts_with(cut.String(L"CompanyName"))) << size;
  }
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int value : {0x00, 0x01, 0x05, 0x06, 0x7F, 0xFF}) {
      ByteVector changed = whole;
      changed[at] = static_cast<std::byte>(value);
      EXPECT_LE(VersionRecord(changed).String(L"Rest").size(), whole.size());
    }
  }
}

void PutUnit(ByteVector& bytes, std::size_t value) {
  bytes.push_back(static_cast<std::byte>(value & 0xFF));
  bytes.push_back(static_cast<std::byte>(value >> 8));
}

// A block of text type whose value is a text, or that has children.
ByteVector BlockOf(std::wstring_view key, std::wstring_view value, const std::vector<ByteVector>& children) {
  ByteVector body;
  const auto align = [&] { body.resize((body.size() + 6 + 3) / 4 * 4 - 6); };
  for (const wchar_t unit : key) PutUnit(body, static_cast<std::size_t>(unit));
  PutUnit(body, 0);
  align();
  for (const wchar_t unit : value) PutUnit(body, static_cast<std::size_t>(unit));
  for (const ByteVector& child : children) {
    align();
    body.insert(body.end(), child.begin(), child.end());
  }
  ByteVector block;
  for (const std::size_t field : {body.size() + 6, value.size(), std::size_t{1}}) PutUnit(block, field);
  block.insert(block.end(), body.begin(), body.end());
  return block;
}

// A record whose tables name one language each, 0, 1, 2, ...; each has a string of that language's name.
VersionRecord RecordOfLanguages(std::size_t count) {
  std::vector<ByteVector> tables;
  for (std::size_t i = 0; i < count; ++i) {
    const std::wstring name = std::to_wstring(i);
    tables.push_back(BlockOf(name, {}, {BlockOf(L"Own" + name, name, {})}));
  }
  return VersionRecord(BlockOf(L"VS_VERSION_INFO", {}, {BlockOf(L"StringFileInfo", {}, tables)}));
}

TEST(VersionRecordNativeTest, LanguagesAreBounded) {
  constexpr std::size_t kMost = VersionRecord::kMostLanguages;
  const VersionRecord record = RecordOfLanguages(kMost + 1);
  EXPECT_EQ(record.String(L"Own" + std::to_wstring(kMost - 1)), std::to_wstring(kMost - 1));
  EXPECT_EQ(record.String(L"Own" + std::to_wstring(kMost)), L"");
  // As many translations, of which the last alone has a table: a language that is listed before an unlisted
  // one wins over it, one behind the bound does not.
  const auto answerOf = [](std::size_t listed) {
    std::wstring units;
    for (std::size_t i = 0; i < listed; ++i) units += {static_cast<wchar_t>(i + 1), L'\x04B0'};
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    const std::wstring last = {L'0', kDigits[listed >> 8], kDigits[listed >> 4 & 15], kDigits[listed & 15]};
    const ByteVector other = BlockOf(L"FFFF04B0", {}, {BlockOf(L"Name", L"other", {})});
    const ByteVector wanted = BlockOf(last + L"04B0", {}, {BlockOf(L"Name", L"listed", {})});
    return std::wstring(
        VersionRecord(BlockOf(L"VS_VERSION_INFO", {},
                              {BlockOf(L"StringFileInfo", {}, {other, wanted}),
                               BlockOf(L"VarFileInfo", {}, {BlockOf(L"Translation", units, {})})}))
            .String(L"Name"));
  };
  EXPECT_EQ(answerOf(kMost), L"listed");
  EXPECT_EQ(answerOf(kMost + 1), L"other");
}

}  // namespace
}  // namespace smh::test
