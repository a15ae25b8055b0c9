#include "basekit/version_record.h"

#include "basekit/version_cache.h"
#include "support/child_process.h"
#include "support/file_fixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>

namespace smh {
namespace {

using Bytes = std::vector<std::byte>;

void Append(Bytes& bytes, std::uint16_t word) {
  bytes.push_back(static_cast<std::byte>(word & 0xFF));
  bytes.push_back(static_cast<std::byte>(word >> 8));
}

void Align(Bytes& bytes) {
  while (bytes.size() % 4 != 0) bytes.push_back({});
}

// A block as resource compilers lay it out: its length is counted without the padding after it.
Bytes Block(std::u16string_view key, bool text, std::uint16_t valueLength, const Bytes& value,
            const std::vector<Bytes>& children) {
  Bytes bytes;
  Append(bytes, 0);
  Append(bytes, valueLength);
  Append(bytes, text ? 1 : 0);
  for (const char16_t unit : key) Append(bytes, unit);
  Append(bytes, 0);
  Align(bytes);
  bytes.insert(bytes.end(), value.begin(), value.end());
  for (const Bytes& child : children) {
    Align(bytes);
    bytes.insert(bytes.end(), child.begin(), child.end());
  }
  bytes[0] = static_cast<std::byte>(bytes.size() & 0xFF);
  bytes[1] = static_cast<std::byte>(bytes.size() >> 8);
  return bytes;
}

Bytes TextBlock(std::u16string_view name, std::u16string_view text, bool lengthInBytes = false) {
  Bytes value;
  for (const char16_t unit : text) Append(value, unit);
  Append(value, 0);
  return Block(name, true, static_cast<std::uint16_t>(value.size() / (lengthInBytes ? 1 : 2)), value, {});
}

Bytes Translations(const std::vector<std::uint16_t>& words) {
  Bytes value;
  for (const std::uint16_t word : words) Append(value, word);
  const auto length = static_cast<std::uint16_t>(value.size());
  return Block(u"VarFileInfo", true, 0, {}, {Block(u"Translation", false, length, value, {})});
}

Bytes Strings(const std::vector<Bytes>& tables) {
  return Block(u"StringFileInfo", true, 0, {}, tables);
}

Bytes Table(std::u16string_view language, const std::vector<Bytes>& strings) {
  return Block(language, true, 0, {}, strings);
}

Bytes Record(const std::vector<Bytes>& parts, DWORD signature = VS_FFI_SIGNATURE) {
  VS_FIXEDFILEINFO fixed = {};
  fixed.dwSignature = signature;
  fixed.dwFileVersionMS = MAKELONG(2, 1);
  fixed.dwFileVersionLS = MAKELONG(65535, 3);
  Bytes value(sizeof(fixed));
  std::memcpy(value.data(), &fixed, sizeof(fixed));
  return Block(u"VS_VERSION_INFO", false, sizeof(fixed), value, parts);
}

TEST(VersionRecordTest, FixedPartGivesTheNumber) {
  EXPECT_EQ(VersionRecord(Record({})).FileVersionNumber(), L"1.2.3.65535");
  EXPECT_EQ(VersionRecord(Record({}, 1)).FileVersionNumber(), L"");
  EXPECT_EQ(VersionRecord(Block(u"VS_VERSION_INFO", false, 0, {}, {})).FileVersionNumber(), L"");
  EXPECT_EQ(VersionRecord(Block(u"SOMETHING_ELSE", false, 0, {}, {})).String(L"CompanyName"), L"");
}

TEST(VersionRecordTest, LanguagesAreAskedInOrder) {
  const Bytes tables = Strings({
      Table(u"041F04E6", {TextBlock(u"Name", u"other"), TextBlock(u"Rest", u"only here")}),
      Table(u"000004B0", {TextBlock(u"Name", u"neutral"), TextBlock(u"Comments", u"neutral too")}),
      Table(u"040904b0", {TextBlock(u"Name", u"English"), TextBlock(u"Comments", u"")}),
      Table(u"040704B0", {TextBlock(u"Name", u"German")}),
  });
  const VersionRecord listed(Record({Translations({0x0C0A, 0x04B0, 0x0407, 0x04B0}), tables}));
  EXPECT_EQ(listed.String(L"name"), L"German");
  EXPECT_EQ(listed.String(L"Comments"), L"neutral too");
  EXPECT_EQ(listed.String(L"Rest"), L"only here");
  EXPECT_EQ(listed.String(L"Missing"), L"");
  EXPECT_EQ(listed.String(L""), L"");
  EXPECT_EQ(VersionRecord(Record({tables})).String(L"Name"), L"English");
}

TEST(VersionRecordTest, ValueLengthsOfEitherUnitAreRead) {
  const Bytes table = Table(u"040904B0", {TextBlock(u"A", u"units", false), TextBlock(u"Bb", u"bytes", true),
                                          TextBlock(u"C", u"last")});
  const VersionRecord record(Record({Strings({table})}));
  EXPECT_EQ(record.String(L"A"), L"units");
  EXPECT_EQ(record.String(L"Bb"), L"bytes");
  EXPECT_EQ(record.String(L"C"), L"last");
}

// Bytes that end where readable memory ends: a read past them is a fault.
class EdgeOfMemory {
 public:
  EdgeOfMemory()
      : pages_(static_cast<std::byte*>(VirtualAlloc(nullptr, 2 * kPage, MEM_COMMIT, PAGE_READWRITE))) {
    DWORD old = 0;
    VirtualProtect(pages_ + kPage, kPage, PAGE_NOACCESS, &old);
  }
  ~EdgeOfMemory() { VirtualFree(pages_, 0, MEM_RELEASE); }

  std::span<const std::byte> Put(std::span<const std::byte> bytes) const {
    std::byte* const start = pages_ + kPage - bytes.size();
    if (!bytes.empty()) std::memcpy(start, bytes.data(), bytes.size());
    return {start, bytes.size()};
  }

 private:
  static constexpr std::size_t kPage = 4096;
  std::byte* pages_;
};

TEST(VersionRecordTest, AnyCutOrChangedRecordIsReadWithinItsBounds) {
  const EdgeOfMemory edge;
  const Bytes table = Table(u"040904B0", {TextBlock(u"Name", u"text"), TextBlock(u"B", u"b")});
  const Bytes whole = Record({Translations({0x0409, 0x04B0}), Strings({table})});
  ASSERT_EQ(VersionRecord(edge.Put(whole)).String(L"Name"), L"text");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::wstring text = VersionRecord(edge.Put(std::span(whole).first(size))).String(L"Name");
    EXPECT_TRUE(std::wstring(L"text").starts_with(text)) << size;
  }
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int value : {0x00, 0x01, 0x05, 0x06, 0x7F, 0xFF}) {
      Bytes changed = whole;
      changed[at] = static_cast<std::byte>(value);
      EXPECT_LE(VersionRecord(edge.Put(changed)).String(L"B").size(), whole.size());
    }
  }
}

class VersionFileTest : public testing::Test {
 protected:
  std::wstring Description(const std::wstring& path) { return cache_.Get(path)->String(L"FileDescription"); }

  const std::wstring sample_ = test::ThisFolder() + L"version_sample.exe";
  VersionCache cache_;
};

TEST_F(VersionFileTest, ProgramsRecordIsRead) {
  const auto record = cache_.Get(sample_);
  EXPECT_EQ(record->FileVersionNumber(), L"3.14.159.26535");
  EXPECT_EQ(record->String(L"FileDescription"), L"Deutsches Beispiel");
  EXPECT_EQ(record->String(L"CompanyName"), L"Sample Works Ltd.");
  EXPECT_EQ(record->String(L"Comments"), L"");
  EXPECT_EQ(cache_.Get(sample_), record);
}

TEST_F(VersionFileTest, FilesWithoutARecordGiveNothing) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(Description(folder.Write(L"a.exe", "MZ, but no program")), L"");
  EXPECT_EQ(Description(folder.Write(L"empty.exe", "")), L"");
  EXPECT_EQ(Description(folder.File(L"missing.exe")), L"");
  EXPECT_EQ(Description(folder.Path()), L"");
  EXPECT_EQ(Description(L""), L"");
  // Not looked for in the system's search folders.
  EXPECT_EQ(Description(L"kernel32.dll"), L"");
}

TEST_F(VersionFileTest, ChangedFileIsReadAgain) {
  const test::TemporaryFolder folder;
  const std::wstring path = folder.Write(L"a.exe", "no program yet");
  EXPECT_EQ(Description(path), L"");
  ASSERT_TRUE(CopyFileW(sample_.c_str(), path.c_str(), FALSE));
  EXPECT_EQ(Description(path), L"Deutsches Beispiel");
  ASSERT_TRUE(CopyFileW((test::ThisFolder() + L"basekit.dll").c_str(), path.c_str(), FALSE));
  EXPECT_EQ(Description(path), L"Startup Manager general services");
  ASSERT_TRUE(DeleteFileW(path.c_str()));
  EXPECT_EQ(Description(path), L"");
}

TEST_F(VersionFileTest, MoreFilesThanTheCacheHoldsAndManyThreads) {
  const test::TemporaryFolder folder;
  std::vector<std::wstring> programs;
  for (int i = 0; i < 8; ++i) {
    programs.push_back(folder.File(std::to_wstring(i) + L".exe"));
    const std::wstring source = i % 2 == 0 ? sample_ : test::ThisFolder() + L"basekit.dll";
    ASSERT_TRUE(CopyFileW(source.c_str(), programs.back().c_str(), FALSE));
  }
  std::atomic<int> wrong{0};
  std::vector<std::jthread> threads;
  for (std::size_t thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&, thread] {
      for (std::size_t i = 0; i < 64; ++i) {
        const std::size_t file = (i + thread) % programs.size();
        const bool isSample = Description(programs[file]) == L"Deutsches Beispiel";
        if (isSample != (file % 2 == 0)) ++wrong;
      }
    });
  }
  threads.clear();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace smh
