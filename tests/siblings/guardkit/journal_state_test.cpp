// Where the journal lies, who may touch it, and how long it keeps what.
#include "infra/files/file_facts.h"
#include "infra/runtime/text.h"
#include "siblings/common/product.h"
#include "siblings/guardkit/registry_place.h"
#include "tests/siblings/guardkit/journal_fixture.h"
#include "tests/support/file_fixture.h"
#include "tests/support/state_dump.h"

#include <shlobj.h>

#include <chrono>

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

  // Ten days.
  static void MakeOld(std::uint32_t id) {
    const JournalName name{.id = id, .closed = true};
    const std::filesystem::path file(JournalFolderPath() + L'\\' + name.FileName());
    std::filesystem::last_write_time(file, std::filesystem::last_write_time(file) - std::chrono::hours(240));
  }

  TemporaryFolder folder_{DataFolder()};
  const RegistryTree settings_{L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe"};
};

TEST_F(JournalRetention, OldOnesGoWithTheirContentsAndStayListed) {
  settings_.Set({}, L"KeptDays", Dword(3));
  for (const char* content : {"1", "2", "1", "3"}) DeleteOneFile(content);
  for (const std::uint32_t id : {1u, 2u, 4u}) MakeOld(id);
  // An undo lets go of nothing, and what it undoes is still complete.
  EXPECT_EQ(guardkit_.Undo(3).result, S_OK);
  EXPECT_EQ(ReadFileBytes(folder_.File(L"file")), "1");
  EXPECT_EQ(BlobCount(), 3u);
  // What is being looked at by somebody stays, and its contents with it.
  const ScopedHandle held(CreateFileW((JournalFolderPath() + L"\\00000004.journal").c_str(), GENERIC_READ,
                                      FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_EQ(DeleteOneFile("4"), 6u);
  using enum CheckpointState;
  const auto list = guardkit_.List();
  ASSERT_EQ(list.size(), 6u);
  const CheckpointState states[] = {kDropped, kDropped, kUndone, kDone, kDone, kDone};
  for (std::size_t i = 0; i < list.size(); ++i) {
    EXPECT_EQ(list[i].id, i + 1);
    EXPECT_EQ(list[i].state, states[i]) << i;
  }
  EXPECT_EQ(list[0].title, L"test");
  EXPECT_EQ(list[0].steps, 1u);
  EXPECT_EQ(BlobCount(), 3u);
  EXPECT_EQ(guardkit_.Undo(1).result, HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
}

TEST_F(JournalRetention, SizeCountsAndAnUnfinishedOneStays) {
  settings_.Set({}, L"KeptMegabytes", Dword(1));
  const RegistryTree tree(kReachedTree);
  tree.Set({}, L"stands", Dword(1));
  const std::wstring place = PlaceOf(tree.Key().Get());
  Checkpoint([] {});
  PlantJournal(1, CurrentUserSid(), ValueStep{place, L"stands", {}, {true, REG_DWORD, Dword(1).bytes}},
               false);
  for (int i = 0; i < 3; ++i) {
    const auto wouldGo = guardkit_.WouldDrop(700'000);
    DeleteOneFile(std::string(700'000, static_cast<char>('a' + i)));
    ASSERT_EQ(wouldGo.size(), i == 0 ? 0u : 1u);
    for (const ListedCheckpoint& gone : wouldGo) {
      EXPECT_EQ(guardkit_.List()[static_cast<std::size_t>(i - 1)].id, gone.id);
    }
  }
  const auto list = guardkit_.List();
  ASSERT_EQ(list.size(), 4u);
  EXPECT_EQ(list[1].state, CheckpointState::kDropped);
  EXPECT_EQ(list[2].state, CheckpointState::kInterrupted);
  EXPECT_EQ(list[3].id, 4u);
  EXPECT_EQ(BlobCount(), 1u);
}

TEST_F(JournalRetention, WhatIsForgottenIsGoneWithItsUndosAndNothingElse) {
  for (const char* content : {"1", "2", "3"}) DeleteOneFile(content);
  EXPECT_EQ(guardkit_.Undo(3).result, S_OK);
  EXPECT_EQ(guardkit_.Redo(3).result, S_OK);
  EXPECT_EQ(guardkit_.Forget({5, 9, 3, 5}),
            (std::vector<HRESULT>{IJournal::kWrongState, HRESULT_FROM_WIN32(ERROR_NOT_FOUND), S_OK, S_OK}));
  EXPECT_EQ(guardkit_.List().size(), 2u);
  EXPECT_EQ(BlobCount(), 2u);
  // Numbers are not given out again.
  EXPECT_EQ(DeleteOneFile("4"), 6u);
  EXPECT_EQ(guardkit_.Undo(2).result, S_OK);
}

}  // namespace
}  // namespace smh::test
