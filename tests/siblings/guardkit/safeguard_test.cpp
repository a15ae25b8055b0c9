#include "core/contracts/intf_safeguard.h"
#include "infra/runtime/com_ptr.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

#include <thread>

namespace smh {
namespace {

using test::CallSlot;

constexpr wchar_t kTree[] = L"Software\\SmhGuardTest";

class SafeguardTest : public testing::Test {
 protected:
  SafeguardTest() { EXPECT_EQ((CallSlot<HRESULT>(safeguard_, 1, access_.Put())), S_OK); }

  LSTATUS Create(HKEY parent, const std::wstring& key, HKEY* out, DWORD* disposition = nullptr) {
    return CallSlot<LSTATUS>(Access(), 1, parent, key.c_str(), disposition, out, DWORD{0},
                             REGSAM{KEY_ALL_ACCESS}, DWORD{0}, DWORD{0}, DWORD{0});
  }
  LSTATUS Open(HKEY parent, const std::wstring& key, HKEY* out, REGSAM access = KEY_ALL_ACCESS) {
    return CallSlot<LSTATUS>(Access(), 2, parent, key.c_str(), out, access, DWORD{0});
  }
  LSTATUS Delete(HKEY parent, const wchar_t* key, REGSAM view = 0) {
    return CallSlot<LSTATUS>(Access(), 4, parent, key, view, DWORD{0});
  }
  LSTATUS Set(HKEY key, const wchar_t* name, const test::RawValue& value) {
    return CallSlot<LSTATUS>(Access(), 5, key, name, static_cast<DWORD>(value.bytes.size()),
                             static_cast<const void*>(value.bytes.data()), value.type, DWORD{0});
  }
  LSTATUS DeleteValue(HKEY key, const wchar_t* name) { return CallSlot<LSTATUS>(Access(), 6, key, name); }
  LSTATUS Close(HKEY key) { return CallSlot<LSTATUS>(Access(), 12, key); }
  LSTATUS MoveRecorded(const std::wstring& from, const std::wstring& to) {
    return CallSlot<LSTATUS>(safeguard_, 4, from.c_str(), to.c_str());
  }
  LSTATUS CopyRecorded(const std::wstring& from, const std::wstring& to, BOOL overwrite) {
    return CallSlot<LSTATUS>(safeguard_, 6, from.c_str(), to.c_str(), overwrite);
  }
  IUnknown* Access() { return access_.Get(); }

  const test::RegistryTree tree_{kTree};
  test::SiblingLibrary guardkit_{L"guardkit.dll"};
  ISafeguard* safeguard_ = guardkit_.Service<ISafeguard>();
  ComPtr<IRegAccess> access_;
};

TEST_F(SafeguardTest, KeysAndValuesAreChangedForReal) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  ASSERT_EQ(Create(HKEY_CURRENT_USER, tree_.PathOf(L"a\\b"), &key, &disposition), ERROR_SUCCESS);
  EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
  const test::RawValue text = test::ExpandSz(L"%windir%\\a.exe");
  EXPECT_EQ(Set(key, L"name", text), ERROR_SUCCESS);
  EXPECT_EQ(tree_.Get(L"a\\b", L"name"), text);
  EXPECT_EQ(Set(key, nullptr, test::Binary("")), ERROR_SUCCESS);
  EXPECT_EQ(tree_.Get(L"a\\b", L""), test::Binary(""));
  EXPECT_EQ(DeleteValue(key, L"name"), ERROR_SUCCESS);
  EXPECT_EQ(DeleteValue(key, L"name"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Close(key), ERROR_SUCCESS);

  ASSERT_EQ(Create(HKEY_CURRENT_USER, tree_.PathOf(L"a"), &key, &disposition), ERROR_SUCCESS);
  EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
  EXPECT_EQ(Delete(key, L"b"), ERROR_SUCCESS);
  EXPECT_FALSE(tree_.Has(L"a\\b"));
  Close(key);
}

TEST_F(SafeguardTest, FailuresAnswerTheSystemsStatus) {
  HKEY key = reinterpret_cast<HKEY>(1);
  EXPECT_EQ(Open(HKEY_CURRENT_USER, tree_.PathOf(L"missing"), &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key, nullptr);
  tree_.Key(L"a\\b");
  EXPECT_EQ(Delete(HKEY_CURRENT_USER, tree_.PathOf(L"a").c_str()), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(tree_.Has(L"a\\b"));
  ASSERT_EQ(Open(HKEY_CURRENT_USER, tree_.PathOf(L"a"), &key, KEY_READ), ERROR_SUCCESS);
  EXPECT_EQ(Set(key, L"x", test::Sz(L"")), ERROR_ACCESS_DENIED);
  Close(key);
}

TEST_F(SafeguardTest, NullArgumentsAreRefusedAndNothingIsDeleted) {
  EXPECT_EQ(Open(HKEY_CURRENT_USER, L"Software", nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Create(HKEY_CURRENT_USER, L"Software", nullptr), ERROR_INVALID_PARAMETER);
  const ScopedKey key = tree_.Key();
  EXPECT_EQ(Delete(key.Get(), nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Delete(key.Get(), L""), ERROR_INVALID_PARAMETER);
  EXPECT_TRUE(tree_.Has({}));
  EXPECT_EQ(access_->SetValue(key.Get(), L"x", 4, nullptr, REG_DWORD, 0), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Close(nullptr), ERROR_INVALID_HANDLE);
  EXPECT_EQ(safeguard_->GetRegAccess(nullptr), E_POINTER);
  EXPECT_EQ(safeguard_->BeginCheckpoint(nullptr), ERROR_SUCCESS);
  EXPECT_EQ(safeguard_->EndCheckpoint(), ERROR_SUCCESS);
  EXPECT_EQ(safeguard_->MoveRecordedFile(nullptr, L"C:\\x"), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(safeguard_->DeleteRecordedFile(nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(safeguard_->CopyRecordedFile(L"C:\\x", nullptr, TRUE), ERROR_INVALID_PARAMETER);
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
  const std::wstring c = folder.File(L"c");
  EXPECT_EQ(MoveRecorded(a, b), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(test::ReadFileBytes(b), "second");
  EXPECT_EQ(MoveRecorded(a, c), ERROR_SUCCESS);
  EXPECT_EQ(MoveRecorded(a, folder.File(L"d")), ERROR_FILE_NOT_FOUND);
  // Only the low byte of a boolean counts.
  EXPECT_EQ(CopyRecorded(c, b, 0x7F00), ERROR_FILE_EXISTS);
  EXPECT_EQ(test::ReadFileBytes(b), "second");
  EXPECT_EQ(CopyRecorded(c, b, 1), ERROR_SUCCESS);
  EXPECT_EQ(test::ReadFileBytes(b), "first");
  EXPECT_EQ(test::ReadFileBytes(c), "first");
  EXPECT_EQ((CallSlot<LSTATUS>(safeguard_, 5, b.c_str())), ERROR_SUCCESS);
  EXPECT_EQ((CallSlot<LSTATUS>(safeguard_, 5, b.c_str())), ERROR_FILE_NOT_FOUND);
}

TEST_F(SafeguardTest, CheckpointsNestWithinTheirThread) {
  const auto begin = [&] { return CallSlot<LSTATUS>(safeguard_, 2, L"title"); };
  const auto end = [&] { return CallSlot<LSTATUS>(safeguard_, 3); };
  EXPECT_EQ(end(), ERROR_INVALID_FUNCTION);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(begin(), ERROR_SUCCESS);
  std::jthread([&] { EXPECT_EQ(end(), ERROR_INVALID_FUNCTION); }).join();
  for (int i = 0; i < 2; ++i) EXPECT_EQ(end(), ERROR_SUCCESS);
  EXPECT_EQ(end(), ERROR_INVALID_FUNCTION);
}

}  // namespace
}  // namespace smh
