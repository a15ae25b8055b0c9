#include "infra/intf_safeguard.h"

#include "guardkit/checkpoints.h"
#include "infra/com_ptr.h"
#include "siblings/sibling_library.h"
#include "support/file_fixture.h"
#include "support/registry_fixture.h"

#include <gtest/gtest.h>

#include <thread>

namespace smh {
namespace {

using test::CallSlot;

constexpr wchar_t kTree[] = L"Software\\SmhGuardTest";

class SafeguardTest : public testing::Test {
 protected:
  SafeguardTest() { EXPECT_EQ((CallSlot<HRESULT>(safeguard_, 1, access_.Put())), S_OK); }

  LSTATUS Open(HKEY parent, const std::wstring& key, HKEY* out, REGSAM access = KEY_ALL_ACCESS) {
    return CallSlot<LSTATUS>(Access(), 2, parent, key.c_str(), out, access, DWORD{0});
  }
  LSTATUS Create(HKEY parent, const std::wstring& key, HKEY* out, REGSAM access = KEY_ALL_ACCESS,
                 DWORD* disposition = nullptr) {
    return CallSlot<LSTATUS>(Access(), 1, parent, key.c_str(), disposition, out, DWORD{0}, access, DWORD{0},
                             DWORD{0}, DWORD{0});
  }
  LSTATUS Delete(HKEY parent, const wchar_t* key, REGSAM view = 0) {
    return CallSlot<LSTATUS>(Access(), 4, parent, key, view, DWORD{0});
  }
  LSTATUS Close(HKEY key) { return CallSlot<LSTATUS>(Access(), 12, key); }
  LSTATUS Move(const std::wstring& from, const std::wstring& to) {
    return CallSlot<LSTATUS>(safeguard_, 4, from.c_str(), to.c_str());
  }
  LSTATUS Copy(const std::wstring& from, const std::wstring& to, BOOL overwrite) {
    return CallSlot<LSTATUS>(safeguard_, 6, from.c_str(), to.c_str(), overwrite);
  }
  IUnknown* Access() { return access_.Get(); }

  test::SiblingLibrary guardkit_{L"guardkit.dll"};
  ISafeguard* safeguard_ = guardkit_.Service<ISafeguard>();
  ComPtr<IRegAccess> access_;
};

TEST_F(SafeguardTest, KeysAndValuesAreChangedForReal) {
  const test::RegistryTree tree(kTree);
  HKEY key = nullptr;
  DWORD disposition = 0;
  ASSERT_EQ(Create(HKEY_CURRENT_USER, tree.PathOf(L"a\\b"), &key, KEY_ALL_ACCESS, &disposition),
            ERROR_SUCCESS);
  EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
  const test::RawValue text = test::ExpandSz(L"%windir%\\a.exe");
  EXPECT_EQ((CallSlot<LSTATUS>(Access(), 5, key, L"name", static_cast<DWORD>(text.bytes.size()),
                               static_cast<const void*>(text.bytes.data()), text.type, DWORD{0})),
            ERROR_SUCCESS);
  EXPECT_EQ(tree.Get(L"a\\b", L"name"), text);
  EXPECT_EQ((CallSlot<LSTATUS>(Access(), 5, key, static_cast<const wchar_t*>(nullptr), DWORD{0},
                               static_cast<const void*>(nullptr), DWORD{REG_BINARY}, DWORD{0})),
            ERROR_SUCCESS);
  EXPECT_EQ(tree.Get(L"a\\b", L""), test::Binary(""));
  EXPECT_EQ((CallSlot<LSTATUS>(Access(), 6, key, L"name")), ERROR_SUCCESS);
  EXPECT_EQ(tree.Get(L"a\\b", L"name"), std::nullopt);
  EXPECT_EQ((CallSlot<LSTATUS>(Access(), 6, key, L"name")), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Close(key), ERROR_SUCCESS);

  ASSERT_EQ(Create(HKEY_CURRENT_USER, tree.PathOf(L"a"), &key, KEY_ALL_ACCESS, &disposition), ERROR_SUCCESS);
  EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
  EXPECT_EQ(Delete(key, L"b"), ERROR_SUCCESS);
  EXPECT_FALSE(tree.Has(L"a\\b"));
  Close(key);
}

TEST_F(SafeguardTest, FailuresAnswerTheSystemsStatus) {
  const test::RegistryTree tree(kTree);
  HKEY key = reinterpret_cast<HKEY>(1);
  EXPECT_EQ(Open(HKEY_CURRENT_USER, tree.PathOf(L"missing"), &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key, nullptr);
  tree.Key(L"a\\b");
  EXPECT_EQ(Delete(HKEY_CURRENT_USER, tree.PathOf(L"a").c_str()), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(tree.Has(L"a\\b"));
  EXPECT_EQ(Delete(HKEY_CURRENT_USER, tree.PathOf(L"missing").c_str()), ERROR_FILE_NOT_FOUND);

  ASSERT_EQ(Open(HKEY_CURRENT_USER, tree.PathOf(L"a"), &key, KEY_READ), ERROR_SUCCESS);
  EXPECT_EQ((CallSlot<LSTATUS>(Access(), 5, key, L"x", DWORD{2}, static_cast<const void*>(L""), DWORD{REG_SZ},
                               DWORD{0})),
            ERROR_ACCESS_DENIED);
  Close(key);
  const test::LimitedKey limited(HKEY_CURRENT_USER, tree.PathOf(L"a"), test::LimitedKey::Rights::kReadOnly);
  EXPECT_EQ(Open(HKEY_CURRENT_USER, tree.PathOf(L"a"), &key), ERROR_ACCESS_DENIED);
}

TEST_F(SafeguardTest, NullArgumentsAreRefusedAndNothingIsDeleted) {
  const test::RegistryTree tree(kTree);
  EXPECT_EQ(Open(HKEY_CURRENT_USER, L"Software", nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Create(HKEY_CURRENT_USER, L"Software", nullptr), ERROR_INVALID_PARAMETER);
  const ScopedKey key = tree.Key();
  EXPECT_EQ(Delete(key.Get(), nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Delete(key.Get(), L""), ERROR_INVALID_PARAMETER);
  EXPECT_TRUE(tree.Has({}));
  EXPECT_EQ(access_->SetValue(key.Get(), L"x", 4, nullptr, REG_DWORD, 0), ERROR_INVALID_PARAMETER);
  HKEY same = nullptr;
  EXPECT_EQ(access_->OpenKey(key.Get(), nullptr, &same, KEY_READ, 0), ERROR_SUCCESS);
  EXPECT_EQ(Close(same), ERROR_SUCCESS);
  EXPECT_EQ(Close(nullptr), ERROR_INVALID_HANDLE);
  EXPECT_EQ(safeguard_->GetRegAccess(nullptr), E_POINTER);
  EXPECT_EQ(safeguard_->MoveRecordedFile(nullptr, L"C:\\x"), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(safeguard_->DeleteRecordedFile(nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(safeguard_->CopyRecordedFile(L"C:\\x", nullptr, TRUE), ERROR_INVALID_PARAMETER);
  for (const std::size_t slot : {3u, 7u, 8u, 9u, 10u, 11u})
    EXPECT_EQ(CallSlot<HRESULT>(Access(), slot), E_NOTIMPL);
}

TEST_F(SafeguardTest, DeletingKeepsToItsView) {
  const REGSAM native = test::HasTwoViews() ? KEY_WOW64_64KEY : 0;
  const test::RegistryTree plain(kTree, HKEY_LOCAL_MACHINE);
  const test::RegistryTree other(kTree, HKEY_LOCAL_MACHINE, native);
  plain.Key(L"k");
  other.Key(L"k");
  EXPECT_EQ(Delete(HKEY_LOCAL_MACHINE, other.PathOf(L"k").c_str(), native), ERROR_SUCCESS);
  EXPECT_FALSE(other.Has(L"k"));
  EXPECT_EQ(plain.Has(L"k"), test::HasTwoViews());
}

TEST_F(SafeguardTest, FilesAreMovedCopiedAndDeletedButNeverReplaced) {
  const test::TemporaryFolder folder;
  const std::wstring a = folder.Write(L"a", "first");
  const std::wstring b = folder.Write(L"b", "second");
  EXPECT_EQ(Move(a, b), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(test::ReadFileBytes(b), "second");
  EXPECT_EQ(Move(a, folder.File(L"c")), ERROR_SUCCESS);
  EXPECT_EQ(test::ReadFileBytes(folder.File(L"c")), "first");
  EXPECT_EQ(Move(a, folder.File(L"d")), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Move(b, folder.File(L"no folder\\b")), ERROR_PATH_NOT_FOUND);

  // Only the low byte of a boolean counts.
  EXPECT_EQ(Copy(folder.File(L"c"), b, 0x7F00), ERROR_FILE_EXISTS);
  EXPECT_EQ(test::ReadFileBytes(b), "second");
  EXPECT_EQ(Copy(folder.File(L"c"), b, 1), ERROR_SUCCESS);
  EXPECT_EQ(test::ReadFileBytes(b), "first");
  EXPECT_EQ(test::ReadFileBytes(folder.File(L"c")), "first");

  EXPECT_EQ((CallSlot<LSTATUS>(safeguard_, 5, b.c_str())), ERROR_SUCCESS);
  EXPECT_EQ((CallSlot<LSTATUS>(safeguard_, 5, b.c_str())), ERROR_FILE_NOT_FOUND);
}

TEST_F(SafeguardTest, CheckpointsNestAcrossThreads) {
  const auto begin = [&] { return CallSlot<LSTATUS>(safeguard_, 2, L"title"); };
  const auto end = [&] { return CallSlot<LSTATUS>(safeguard_, 3); };
  EXPECT_EQ(end(), ERROR_INVALID_FUNCTION);
  EXPECT_EQ(begin(), ERROR_SUCCESS);
  std::jthread([&] { EXPECT_EQ(begin(), ERROR_SUCCESS); }).join();
  EXPECT_EQ(safeguard_->BeginCheckpoint(nullptr), ERROR_SUCCESS);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(end(), ERROR_SUCCESS);
  EXPECT_EQ(end(), ERROR_INVALID_FUNCTION);
}

TEST(CheckpointsTest, OutermostNamesTheCheckpoint) {
  Checkpoints checkpoints;
  checkpoints.Begin(L"outer");
  checkpoints.Begin(L"inner");
  EXPECT_TRUE(checkpoints.End());
  EXPECT_EQ(checkpoints.Title(), L"outer");
  EXPECT_EQ(checkpoints.Depth(), 1u);
  EXPECT_TRUE(checkpoints.End());
  EXPECT_EQ(checkpoints.Title(), L"");
  EXPECT_FALSE(checkpoints.End());
  checkpoints.Begin(L"next");
  EXPECT_EQ(checkpoints.Title(), L"next");
}

}  // namespace
}  // namespace smh
