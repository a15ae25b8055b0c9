// Where the journal lies, who may touch it, and how long it keeps what.
#include "infra/files/file_facts.h"
#include "infra/runtime/text.h"
#include "siblings/common/product.h"
#include "tests/siblings/guardkit/journal_fixture.h"
#include "tests/support/file_fixture.h"
#include "tests/support/state_dump.h"

#include <shlobj.h>

namespace smh::test {
namespace {

TEST(JournalPlace, PrivilegedProcessesHaveAJournalOfTheirOwn) {
  EXPECT_EQ(JournalKindOf({}), JournalKind::kUser);
  for (const TokenFacts& token :
       {TokenFacts{.isSystem = true}, TokenFacts{.isService = true}, TokenFacts{.isAdministrator = true}}) {
    EXPECT_EQ(JournalKindOf(token), JournalKind::kMachine);
  }
  EXPECT_EQ(JournalPath(JournalKind::kUser), DataFolder() + L"Journal\\");
  EXPECT_EQ(JournalPath(JournalKind::kMachine),
            ShellFolder(CSIDL_COMMON_APPDATA) + L"\\Quillmark\\Startup Manager\\Journal\\");
}

class JournalRetention : public JournalTest {
 protected:
  std::uint32_t DeleteOneFile(const std::string& content) {
    const std::wstring file = folder_.Write(L"file", content);
    return Checkpoint([&] { guardkit_.Safeguard().DeleteRecordedFile(file.c_str()); });
  }
  std::size_t BlobCount() const {
    std::size_t count = 0;
    for (const auto& blob : std::filesystem::directory_iterator(JournalFolderPath() + L"\\Blobs")) {
      count += blob.is_regular_file() ? 1 : 0;
    }
    return count;
  }

  TemporaryFolder folder_{DataFolder()};
  const RegistryTree settings_{L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe"};
};

TEST_F(JournalRetention, OldestGoFirstWithTheirContents) {
  settings_.Set({}, L"KeptCheckpoints", Dword(3));
  for (const char* content : {"1", "2", "1", "3"}) DeleteOneFile(content);
  auto list = guardkit_.List();
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list.front().id, 2u);
  EXPECT_EQ(BlobCount(), 3u);
  // An undo lets go of nothing, and what it undoes is still complete.
  EXPECT_EQ(guardkit_.Undo(3).result, S_OK);
  EXPECT_EQ(ReadFileBytes(folder_.File(L"file")), "1");
  EXPECT_EQ(guardkit_.List().size(), 4u);
  EXPECT_EQ(DeleteOneFile("4"), 6u);
  list = guardkit_.List();
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list.front().id, 4u);
  EXPECT_EQ(BlobCount(), 2u);
}

TEST_F(JournalRetention, SizeCountsAndAnUnfinishedOneStays) {
  settings_.Set({}, L"KeptMegabytes", Dword(1));
  DeleteOneFile("x");
  std::filesystem::rename(JournalFolderPath() + L"\\00000001.journal",
                          JournalFolderPath() + L"\\00000001.open");
  for (int i = 0; i < 3; ++i) DeleteOneFile(std::string(700'000, static_cast<char>('a' + i)));
  const auto list = guardkit_.List();
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0].id, 1u);
  EXPECT_EQ(list[1].id, 4u);
  EXPECT_EQ(BlobCount(), 2u);
}

}  // namespace
}  // namespace smh::test
