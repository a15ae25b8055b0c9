#include "core/contracts/intf_safeguard.h"
#include "infra/runtime/com_ptr.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/file_fixture.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

#include <thread>

namespace smh::test {
namespace {

constexpr wchar_t kTree[] = L"Software\\SmhGuardTest";

class SafeguardTest : public testing::Test {
 protected:
  SafeguardTest() { EXPECT_EQ((CallSlot<HRESULT>(safeguard_, 1, access_.Put())), S_OK); }

  // Slots of the registry access, and of the service itself, by position.
  template <typename... Arguments>
  LSTATUS Reg(std::size_t slot, Arguments... arguments) {
    return CallSlot<LSTATUS>(static_cast<IUnknown*>(access_.Get()), slot, arguments...);
  }
  template <typename... Arguments>
  LSTATUS Own(std::size_t slot, Arguments... arguments) {
    return CallSlot<LSTATUS>(safeguard_, slot, arguments...);
  }
  LSTATUS Create(const std::wstring& key, HKEY* out, DWORD* disposition) {
    return Reg(1, HKEY_CURRENT_USER, key.c_str(), disposition, out, DWORD{0}, REGSAM{KEY_ALL_ACCESS},
               DWORD{0}, DWORD{0}, DWORD{0});
  }
  LSTATUS Open(const std::wstring& key, HKEY* out, REGSAM access) {
    return Reg(2, HKEY_CURRENT_USER, key.c_str(), out, access, DWORD{0});
  }
  LSTATUS Set(HKEY key, const wchar_t* name, const RawValue& value) {
    return Reg(5, key, name, static_cast<DWORD>(value.bytes.size()),
               static_cast<const void*>(value.bytes.data()), value.type, DWORD{0});
  }

  const RegistryTree tree_{kTree};
  SiblingLibrary guardkit_{L"guardkit.dll"};
  ISafeguard* safeguard_ = guardkit_.Service<ISafeguard>();
  ComPtr<IRegAccess> access_;
};

TEST_F(SafeguardTest, KeysAndValuesAreChangedForRealAndFailuresAnswerTheSystemsStatus) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  ASSERT_EQ(Create(tree_.PathOf(L"a\\b"), &key, &disposition), ERROR_SUCCESS);
  EXPECT_EQ(disposition, DWORD{REG_CREATED_NEW_KEY});
  const RawValue text = ExpandSz(L"%windir%\\a.exe");
  EXPECT_EQ(Set(key, L"name", text), ERROR_SUCCESS);
  EXPECT_EQ(tree_.Get(L"a\\b", L"name"), text);
  EXPECT_EQ(Set(key, nullptr, Binary("")), ERROR_SUCCESS);
  EXPECT_EQ(tree_.Get(L"a\\b", L""), Binary(""));
  EXPECT_EQ(Reg(6, key, L"name"), ERROR_SUCCESS);
  EXPECT_EQ(Reg(6, key, L"name"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Reg(12, key), ERROR_SUCCESS);

  EXPECT_EQ(Reg(4, HKEY_CURRENT_USER, tree_.PathOf(L"a").c_str(), REGSAM{0}, DWORD{0}), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Open(tree_.PathOf(L"missing"), &key, KEY_ALL_ACCESS), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key, nullptr);
  ASSERT_EQ(Open(tree_.PathOf(L"a"), &key, KEY_READ), ERROR_SUCCESS);
  EXPECT_EQ(Set(key, L"x", text), ERROR_ACCESS_DENIED);
  Reg(12, key);
  ASSERT_EQ(Create(tree_.PathOf(L"a"), &key, &disposition), ERROR_SUCCESS);
  EXPECT_EQ(disposition, DWORD{REG_OPENED_EXISTING_KEY});
  EXPECT_EQ(Reg(4, key, L"b", REGSAM{0}, DWORD{0}), ERROR_SUCCESS);
  EXPECT_FALSE(tree_.Has(L"a\\b"));
  Reg(12, key);
}

TEST_F(SafeguardTest, NullArgumentsAreRefusedAndNothingIsDeleted) {
  EXPECT_EQ(Open(L"Software", nullptr, KEY_READ), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Create(L"Software", nullptr, nullptr), ERROR_INVALID_PARAMETER);
  const ScopedKey key = tree_.Key();
  for (const wchar_t* none : {static_cast<const wchar_t*>(nullptr), L""}) {
    EXPECT_EQ(access_->DeleteKey(key.Get(), none, 0, 0), ERROR_INVALID_PARAMETER);
  }
  EXPECT_TRUE(tree_.Has({}));
  EXPECT_EQ(access_->SetValue(key.Get(), L"x", 4, nullptr, REG_DWORD, 0), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(access_->CloseKey(nullptr), ERROR_INVALID_HANDLE);
  EXPECT_EQ(safeguard_->GetRegAccess(nullptr), E_POINTER);
  EXPECT_EQ(safeguard_->BeginCheckpoint(nullptr), ERROR_SUCCESS);
  EXPECT_EQ(safeguard_->EndCheckpoint(), ERROR_SUCCESS);
  EXPECT_EQ(safeguard_->MoveRecordedFile(nullptr, L"C:\\x"), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(safeguard_->DeleteRecordedFile(nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(safeguard_->CopyRecordedFile(L"C:\\x", nullptr, TRUE), ERROR_INVALID_PARAMETER);
}

TEST_F(SafeguardTest, FilesAreMovedCopiedAndDeletedButNeverReplaced) {
  const TemporaryFolder folder;
  const std::wstring a = folder.Write(L"a", "first");
  const std::wstring b = folder.Write(L"b", "second");
  const std::wstring c = folder.File(L"c");
  EXPECT_EQ(Own(4, a.c_str(), b.c_str()), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(ReadFileBytes(b), "second");
  EXPECT_EQ(Own(4, a.c_str(), c.c_str()), ERROR_SUCCESS);
  EXPECT_EQ(Own(4, a.c_str(), folder.File(L"d").c_str()), ERROR_FILE_NOT_FOUND);
  // Only the low byte of a boolean counts.
  EXPECT_EQ(Own(6, c.c_str(), b.c_str(), BOOL{0x7F00}), ERROR_FILE_EXISTS);
  EXPECT_EQ(ReadFileBytes(b), "second");
  EXPECT_EQ(Own(6, c.c_str(), b.c_str(), TRUE), ERROR_SUCCESS);
  EXPECT_EQ(ReadFileBytes(b), "first");
  EXPECT_EQ(ReadFileBytes(c), "first");
  EXPECT_EQ(Own(5, b.c_str()), ERROR_SUCCESS);
  EXPECT_EQ(Own(5, b.c_str()), ERROR_FILE_NOT_FOUND);
}

}  // namespace
}  // namespace smh::test
