#include "infra/registry/registry.h"
#include "locations/registry/uSafeguardRegistry.h"
#include "tests/support/recording_safeguard.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

using Lines = std::vector<std::wstring>;

constexpr wchar_t kTree[] = L"Software\\Quillmark Tests\\Safeguard";

class TSgRegistryTest : public testing::Test {
 protected:
  TSgRegistryTest() : registry_(safeguard_.Get()) { safeguard_->Clear(); }
  ~TSgRegistryTest() override { registry_.CloseKey(); }

  Lines Recorded() const { return safeguard_->Lines(); }

  const ComPtr<RecordingSafeguard> safeguard_ = MakeComObject<RecordingSafeguard>();
  RegistryTree tree_{kTree};
  TSgRegistryEx registry_;
};

TEST(TSgRegistryCreateTest, WithoutServiceNothingOpensAndNothingChanges) {
  const RegistryTree tree(kTree);
  tree.Set(L"k", L"v", Dword(1));
  const auto mute = MakeComObject<RecordingSafeguard>();
  mute->Answer(L"GetRegAccess", ERROR_NOT_SUPPORTED, 9);
  for (ISafeguard* const safeguard :
       {static_cast<ISafeguard*>(nullptr), static_cast<ISafeguard*>(mute.Get())}) {
    TSgRegistryEx registry(safeguard);
    EXPECT_FALSE(registry.OpenKey(kTree, false));
    EXPECT_FALSE(registry.OpenKey(tree.PathOf(L"new"), true));
    EXPECT_FALSE(registry.KeyExists(kTree));
    EXPECT_FALSE(registry.WriteString(L"v", L"x"));
    EXPECT_FALSE(registry.DeleteValue(L"v"));
    EXPECT_NE(registry.DeleteKey(tree.PathOf(L"k")), ERROR_SUCCESS);
  }
  EXPECT_EQ(mute->Lines(), Lines{L"GetRegAccess"});
  EXPECT_FALSE(tree.Has(L"new"));
  EXPECT_EQ(tree.Get(L"k", L"v"), Dword(1));
}

TEST_F(TSgRegistryTest, WriteSequence) {
  ASSERT_TRUE(registry_.OpenKey(tree_.PathOf(L"sub"), true));
  EXPECT_EQ(registry_.CurrentPath(), tree_.PathOf(L"sub"));
  EXPECT_TRUE(registry_.WriteString(L"name", L"text"));
  ASSERT_TRUE(registry_.OpenKey(L"deep", true));
  EXPECT_EQ(registry_.CurrentPath(), tree_.PathOf(L"sub\\deep"));
  ASSERT_TRUE(registry_.OpenKey(std::wstring(L"\\") + kTree, false));
  registry_.CloseKey();
  EXPECT_EQ(registry_.CurrentPath(), L"");
  EXPECT_EQ(Recorded(), (Lines{L"CreateKey \"" + tree_.PathOf(L"sub") + L"\"", L"SetValue \"name\"",
                               L"CreateKey \"deep\"", L"CloseKey", L"OpenKey \"" + tree_.Path() + L"\"",
                               L"CloseKey", L"CloseKey"}));
  EXPECT_EQ(tree_.Get(L"sub", L"name"), Sz(L"text"));
}

TEST_F(TSgRegistryTest, FailedOpenLeavesNoKeyOpen) {
  ASSERT_TRUE(registry_.OpenKey(kTree, false));
  EXPECT_FALSE(registry_.OpenKey(L"missing", false));
  EXPECT_EQ(registry_.CurrentKey(), nullptr);
  EXPECT_FALSE(registry_.OpenKey(std::wstring(kTree) + L'\0' + L"x", true));
  EXPECT_EQ(Recorded(), (Lines{L"OpenKey \"" + tree_.Path() + L"\"", L"OpenKey \"missing\"", L"CloseKey"}));
}

TEST_F(TSgRegistryTest, ValuesKeepTheirTypesAndRefusedWritesAnswerFalse) {
  ASSERT_TRUE(registry_.OpenKey(kTree, false));
  const struct {
    SgDataKind kind;
    DWORD type;
  } rows[] = {
      {SgDataKind::kUnknown, REG_NONE},     {SgDataKind::kString, REG_SZ},
      {SgDataKind::kMultiString, REG_NONE}, {SgDataKind::kExpandString, REG_EXPAND_SZ},
      {SgDataKind::kInteger, REG_DWORD},    {SgDataKind::kBinary, REG_BINARY},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(registry_.PutData(L"v", L"a", row.kind, 4));
    EXPECT_EQ(tree_.Get(L"", L"v"), (RawValue{row.type, Sz(L"a").bytes}));
  }
  safeguard_->Answer(L"SetValue", ERROR_ACCESS_DENIED);
  EXPECT_FALSE(registry_.WriteString(L"new", L"x"));
  EXPECT_FALSE(registry_.ValueExists(L"new"));
  EXPECT_FALSE(registry_.DeleteValue(L"new"));
  EXPECT_FALSE(registry_.DeleteValue(std::wstring(L"v\0x", 3)));
  EXPECT_TRUE(registry_.ValueExists(L"v"));
}

TEST_F(TSgRegistryTest, DeletesTreesDeepestFirstAndBackwards) {
  tree_.Set(L"k\\a\\deep", L"v", Dword(1));
  tree_.Key(L"k\\b");
  tree_.Set(L"k", L"first", Dword(1));
  tree_.Set(L"k", L"second", Dword(2));
  ASSERT_TRUE(registry_.OpenKey(kTree, false));
  const HKEY current = registry_.CurrentKey();
  safeguard_->Clear();
  EXPECT_EQ(registry_.DeleteKey(L"\\" + tree_.PathOf(L"k")), ERROR_SUCCESS);
  EXPECT_EQ(registry_.CurrentKey(), current);
  EXPECT_FALSE(tree_.Has(L"k"));
  const std::wstring path = L"\"" + tree_.PathOf(L"k") + L"\"";
  EXPECT_EQ(Recorded(),
            (Lines{L"OpenKey " + path, L"OpenKey \"b\"", L"CloseKey", L"DeleteKey \"b\"", L"OpenKey \"a\"",
                   L"OpenKey \"deep\"", L"DeleteValue \"v\"", L"CloseKey", L"DeleteKey \"deep\"", L"CloseKey",
                   L"DeleteKey \"a\"", L"DeleteValue \"first\"", L"DeleteValue \"second\"", L"CloseKey",
                   L"DeleteKey " + path}));
}

}  // namespace
}  // namespace smh::test
