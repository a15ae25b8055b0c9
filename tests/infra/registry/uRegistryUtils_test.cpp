#include "infra/registry/uRegistryUtils.h"
#include "infra/runtime/exceptions.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

constexpr wchar_t kTree[] = L"Software\\Quillmark Tests\\Utils";
const auto kForeignRoot = reinterpret_cast<HKEY>(0x1234);

TEST(FullValuePathTest, BuildAndParseAreInverse) {
  const struct {
    REGSAM view;
    HKEY root;
    const wchar_t* key;
    const wchar_t* value;
    const wchar_t* path;
  } rows[] = {
      {0, HKEY_LOCAL_MACHINE, L"\\Software\\Run\\", L"Name", L"(x32)HKEY_LOCAL_MACHINE\\Software\\Run\\Name"},
      {KEY_WOW64_64KEY, HKEY_CURRENT_USER, L"\\Software\\X\\", L"Val",
       L"(x64)HKEY_CURRENT_USER\\Software\\X\\Val"},
      {0, HKEY_USERS, L"\\", L"", L"(x32)HKEY_USERS\\"},
      {0, HKEY_CURRENT_USER, L"\\K\\", L"\"a\xD800", L"(x32)HKEY_CURRENT_USER\\K\\\"a\xD800"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(BuildFullValuePath(row.view, row.root, row.key, row.value), row.path);
    REGSAM view = KEY_WOW64_32KEY;
    std::wstring value;
    std::wstring key;
    HKEY root = kForeignRoot;
    ParseFullValuePath(row.path, view, value, key, root);
    EXPECT_EQ(view, row.view);
    EXPECT_EQ(root, row.root);
    EXPECT_EQ(key, row.key);
    EXPECT_EQ(value, row.value);
  }
  EXPECT_EQ(BuildFullValuePath(KEY_ALL_ACCESS, HKEY_CURRENT_USER, L"K", L"v"),
            L"(x32)HKEY_CURRENT_USER\\K\\v");
  EXPECT_EQ(BuildFullValuePath(KEY_READ | KEY_WOW64_64KEY, kForeignRoot, L"", L"v"), L"(x64)\\v");
}

TEST(FullValuePathTest, WhatThePathDoesNotTellStays) {
  REGSAM view = KEY_WOW64_64KEY;
  std::wstring value;
  std::wstring key;
  HKEY root = kForeignRoot;
  ParseFullValuePath(L"HKEY_NOBODY\\Key\\Val", view, value, key, root);
  EXPECT_EQ(view, static_cast<REGSAM>(KEY_WOW64_64KEY));
  EXPECT_EQ(root, kForeignRoot);
  EXPECT_EQ(key, L"HKEY_NOBODY\\Key\\");
  EXPECT_EQ(value, L"Val");
  ParseFullValuePath(L"no separator", view, value, key, root);
  EXPECT_EQ(key, L"");
  EXPECT_EQ(value, L"no separator");
}

class TwoViewLookupTest : public testing::Test {
 protected:
  TwoViewLookupTest() : registry_(KEY_READ) {
    registry_.SetRootKey(HKEY_LOCAL_MACHINE);
    registry_.KeyPath = kTree;
    registry_.ValueName = L"v";
    registry_.AcceptedTypes = {RegistryDataKind::kString, RegistryDataKind::kExpandString};
  }
  // On a Windows with one view both are the same key.
  static void SetIn(REGSAM view, const RawValue& value) {
    SetValue(HKEY_LOCAL_MACHINE, kTree, L"v", value, view);
  }

  RegistryTree plain_{kTree, HKEY_LOCAL_MACHINE, 0};
  RegistryTree other_{kTree, HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY};
  TRegistryEx registry_;
};

TEST_F(TwoViewLookupTest, First64ThenPlain) {
  SetIn(KEY_WOW64_64KEY, Sz(L"64"));
  SetIn(0, ExpandSz(L"plain"));
  EXPECT_TRUE(registry_.ValueExistsEx(true, true));
  EXPECT_EQ(registry_.ReadStringEx(true, true), HasTwoViews() ? L"64" : L"plain");
  EXPECT_EQ(registry_.ReadStringEx(false, true), L"plain");
  DeleteKeyTree(HKEY_LOCAL_MACHINE, kTree, KEY_WOW64_64KEY);
  EXPECT_EQ(registry_.ValueExistsEx(true, true), HasTwoViews());
  EXPECT_FALSE(registry_.ValueExistsEx(true, false));
  EXPECT_EQ(registry_.Access(), static_cast<REGSAM>(KEY_READ));
  EXPECT_EQ(registry_.CurrentKey(), nullptr);
}

TEST_F(TwoViewLookupTest, OnlyAcceptedKindsCountAndNothingFoundRaises) {
  SetIn(0, Dword(1));
  EXPECT_FALSE(registry_.ValueExistsEx(false, true));
  registry_.AcceptedTypes = {RegistryDataKind::kInteger};
  EXPECT_TRUE(registry_.ValueExistsEx(false, true));
  EXPECT_THROW(registry_.ReadStringEx(false, true), ERegistryException);
  registry_.KeyPath = L"Software\\Quillmark Tests\\Nowhere";
  EXPECT_FALSE(registry_.ValueExistsEx(true, true));
  EXPECT_THROW(registry_.ReadStringEx(true, true), ERegistryException);
  EXPECT_EQ(registry_.CurrentKey(), nullptr);
  EXPECT_EQ(registry_.Access(), static_cast<REGSAM>(KEY_READ));
}

}  // namespace
}  // namespace smh::test
