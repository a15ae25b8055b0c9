#include "infra/uRegistryUtils.h"

#include "infra/exceptions.h"
#include "support/registry_fixture.h"

#include <gtest/gtest.h>

namespace smh {
namespace {

using test::RegistryTree;

constexpr wchar_t kTree[] = L"Software\\Quillmark Tests\\Utils";
const auto kForeignRoot = reinterpret_cast<HKEY>(0x1234);

TEST(FullValuePathTest, RootNames) {
  EXPECT_EQ(RootKeyName(HKEY_CLASSES_ROOT), L"HKEY_CLASSES_ROOT");
  EXPECT_EQ(RootKeyName(HKEY_LOCAL_MACHINE), L"HKEY_LOCAL_MACHINE");
  EXPECT_EQ(RootKeyName(HKEY_DYN_DATA), L"HKEY_DYN_DATA");
  EXPECT_EQ(RootKeyName(kForeignRoot), L"");
  EXPECT_EQ(RootKeyName(nullptr), L"");
}

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
      {0, HKEY_USERS, L"\\S-1\\", L"", L"(x32)HKEY_USERS\\S-1\\"},
      {0, HKEY_CURRENT_CONFIG, L"\\", L"top", L"(x32)HKEY_CURRENT_CONFIG\\top"},
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
  const RegistryValueAddress address{KEY_WOW64_64KEY, HKEY_CURRENT_USER, L"K", L"v"};
  EXPECT_EQ(address.FullPath(), L"(x64)HKEY_CURRENT_USER\\K\\v");
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
  ParseFullValuePath(L"(X32)hkey_local_machine\\Key\\Val", view, value, key, root);
  EXPECT_EQ(view, 0u);
  EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
  EXPECT_EQ(key, L"\\Key\\");
  ParseFullValuePath(L"no separator", view, value, key, root);
  EXPECT_EQ(key, L"");
  EXPECT_EQ(value, L"no separator");
}

TEST(TRegistryExTest, ReadsTextLists) {
  using namespace std::string_view_literals;
  const RegistryTree tree(kTree);
  tree.Set(L"", L"list", test::MultiSz({L"one", L"two"}));
  tree.Set(L"", L"open", {REG_MULTI_SZ, test::UnitBytes(L"one\0two"sv)});
  tree.Set(L"", L"empty", {REG_MULTI_SZ, {}});
  tree.Set(L"", L"none", {REG_NONE, test::UnitBytes(L"x\0\0"sv)});
  tree.Set(L"", L"text", test::Sz(L"x"));
  tree.Set(L"", L"empty text", {REG_SZ, {}});
  TRegistryEx registry(KEY_READ);
  ASSERT_TRUE(registry.OpenKey(kTree, false));
  EXPECT_EQ(registry.FullValuePath(L"v"), std::wstring(L"(x32)HKEY_CURRENT_USER\\") + kTree + L"\\v");
  EXPECT_EQ(registry.ReadMultiSz(L"list", L", "), L"one, two, ");
  EXPECT_EQ(registry.ReadMultiSz(L"open", L";"), L"one;two;");
  EXPECT_EQ(registry.ReadMultiSz(L"none", L";"), L"x;");
  for (const wchar_t* const name : {L"empty", L"empty text", L"missing"}) {
    EXPECT_EQ(registry.ReadMultiSz(name, L";"), L"");
  }
  EXPECT_THROW(registry.ReadMultiSz(L"text", L";"), ERegistryException);
  EXPECT_TRUE(registry.IsMultiSz(L"empty"));
  EXPECT_FALSE(registry.IsMultiSz(L"none"));
  EXPECT_FALSE(registry.IsMultiSz(L"missing"));
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
  static void SetIn(REGSAM view, const test::RawValue& value) {
    test::SetValue(HKEY_LOCAL_MACHINE, kTree, L"v", value, view);
  }

  RegistryTree plain_{kTree, HKEY_LOCAL_MACHINE, 0};
  RegistryTree other_{kTree, HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY};
  TRegistryEx registry_;
};

TEST_F(TwoViewLookupTest, First64ThenPlain) {
  SetIn(KEY_WOW64_64KEY, test::Sz(L"64"));
  SetIn(0, test::ExpandSz(L"plain"));
  EXPECT_TRUE(registry_.ValueExistsEx(true, true));
  EXPECT_EQ(registry_.ReadStringEx(true, true), test::HasTwoViews() ? L"64" : L"plain");
  EXPECT_EQ(registry_.ReadStringEx(false, true), L"plain");
  test::DeleteKeyTree(HKEY_LOCAL_MACHINE, kTree, KEY_WOW64_64KEY);
  EXPECT_EQ(registry_.ValueExistsEx(true, true), test::HasTwoViews());
  EXPECT_FALSE(registry_.ValueExistsEx(true, false));
  EXPECT_EQ(registry_.Access(), static_cast<REGSAM>(KEY_READ));
  EXPECT_EQ(registry_.CurrentKey(), nullptr);
}

TEST_F(TwoViewLookupTest, OnlyAcceptedKindsCount) {
  SetIn(0, test::Dword(1));
  EXPECT_FALSE(registry_.ValueExistsEx(false, true));
  registry_.AcceptedTypes = {RegistryDataKind::kInteger};
  EXPECT_TRUE(registry_.ValueExistsEx(false, true));
  EXPECT_THROW(registry_.ReadStringEx(false, true), ERegistryException);
  EXPECT_EQ(registry_.CurrentKey(), nullptr);
}

TEST_F(TwoViewLookupTest, NothingFoundRaises) {
  registry_.KeyPath = L"Software\\Quillmark Tests\\Nowhere";
  EXPECT_FALSE(registry_.ValueExistsEx(true, true));
  try {
    registry_.ReadStringEx(true, true);
    FAIL();
  } catch (const ERegistryException& exception) {
    EXPECT_EQ(exception.Message(), L"Failed to get data for 'v'");
  }
  EXPECT_EQ(registry_.Access(), static_cast<REGSAM>(KEY_READ));
  EXPECT_THROW(registry_.ReadStringEx(false, false), ERegistryException);
}

}  // namespace
}  // namespace smh
