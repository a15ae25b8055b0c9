// The plain registry class, the value reader and the deletion of key trees.
#include "infra/registry/registry.h"
#include "infra/registry/registry_tree.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/exceptions.h"
#include "tests/support/import_patch.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

#include <map>

namespace smh::test {
namespace {

constexpr wchar_t kTree[] = L"Software\\Quillmark Tests\\Registry";

std::map<std::wstring, RawValue> ReadAll(HKEY key) {
  std::map<std::wstring, RawValue> found;
  RegistryValueReader reader(key);
  while (reader.Next()) {
    found[std::wstring(reader.Name())] = {reader.Type(), Bytes(reader.Data().begin(), reader.Data().end())};
  }
  return found;
}

TEST(RegistryValueReaderTest, HostileValuesComeBackAsStored) {
  const RegistryTree tree(kTree);
  std::map<std::wstring, RawValue> stored = {
      {L"", Sz(L"default")},
      {L"a\\b", ExpandSz(L"%windir%")},
      {L"\"quoted\"", Dword(7)},
      {L"\xD800 lone", {REG_SZ, UnitBytes(L"no end")}},
      {L"odd", {REG_SZ, {std::byte{65}, std::byte{0}, std::byte{66}}}},
      {L"empty", {REG_SZ, {}}},
      {L"strange type", {0xCAFE, {std::byte{1}}}},
      {L"large", {REG_BINARY, Bytes(1'048'576, std::byte{0x5A})}},
      {std::wstring(16'383, L'n'), Sz(L"long name")},
      {std::wstring(L"zero\0in name", 12), Sz(L"counted")},
  };
  const ScopedKey key = tree.Key();
  for (const auto& [name, value] : stored) SetCountedValue(key.Get(), name, value);
  EXPECT_EQ(ReadAll(key.Get()), stored);
  RemoveCountedValue(key.Get(), std::wstring(L"zero\0in name", 12));
}

int g_enumerations = 0;

LSTATUS WINAPI CountedEnumValue(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* reserved,
                                DWORD* type, BYTE* data, DWORD* size) {
  ++g_enumerations;
  static const auto real = RealFunction<decltype(RegEnumValueW)>(L"advapi32.dll", "RegEnumValueW");
  return real(key, index, name, length, reserved, type, data, size);
}

TEST(RegistryValueReaderTest, OneCallPerValueAndFewToGrow) {
  const RegistryTree tree(kTree);
  for (int i = 0; i < 50; ++i) tree.Set(L"", std::to_wstring(i), Sz(L"text"));
  tree.Set(L"", L"large", {REG_BINARY, Bytes(1'048'576)});
  const ScopedKey key = tree.Key();
  const ImportPatch patch("RegEnumValueW", &CountedEnumValue);
  g_enumerations = 0;
  EXPECT_EQ(ReadAll(key.Get()).size(), 51u);
  EXPECT_EQ(g_enumerations, 53);
}

TEST(RegistryValueReaderTest, DeletedKeyEndsItQuietlyAndOtherFailuresRaise) {
  const RegistryTree tree(kTree);
  for (const wchar_t* const name : {L"a", L"b", L"c"}) tree.Set(L"gone", name, Sz(name));
  const ScopedKey key = tree.Key(L"gone");
  RegistryValueReader reader(key.Get());
  ASSERT_TRUE(reader.Next());
  DeleteKeyTree(HKEY_CURRENT_USER, tree.PathOf(L"gone"));
  EXPECT_FALSE(reader.Next());
  EXPECT_EQ(QueryRegistryValue(key.Get(), L"b"), std::nullopt);
  EXPECT_TRUE(SubKeyNames(key.Get()).empty());

  ScopedKey blind;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kTree, 0, KEY_SET_VALUE, blind.Put()), ERROR_SUCCESS);
  EXPECT_THROW(RegistryValueReader(blind.Get()).Next(), EOSError);
  EXPECT_THROW(SubKeyNames(blind.Get()), EOSError);
  EXPECT_THROW(QueryRegistryValue(blind.Get(), L"x"), EOSError);
}

TEST(RegistryDataTest, TextEndsAtTheFirstZeroOrTheData) {
  using namespace std::string_view_literals;
  const auto text = [](DWORD type, std::wstring_view units) {
    return RegistryData{type, UnitBytes(units)}.Text();
  };
  EXPECT_EQ(text(REG_SZ, L"ab\0cd\0"sv), L"ab");
  EXPECT_EQ(text(REG_EXPAND_SZ, L"ab"sv), L"ab");
  EXPECT_EQ((RegistryData{REG_SZ, {std::byte{65}}}.Text()), L"");
  EXPECT_EQ(text(REG_BINARY, L"ab\0"sv), L"");
  EXPECT_EQ(JoinTextList(UnitBytes(L"a\0open"sv), L";"), L"a;open;");
  EXPECT_EQ(JoinTextList(UnitBytes(L"a\0\0b\0\0"sv), L";"), L"a;");
  EXPECT_EQ(JoinTextList({}, L";"), L"");
}

class TRegistryTest : public testing::Test {
 protected:
  RegistryTree tree_{kTree};
  TRegistry registry_;
};

TEST_F(TRegistryTest, FailedOpenKeepsTheOldKey) {
  ASSERT_TRUE(registry_.OpenKey(kTree, false));
  const HKEY key = registry_.CurrentKey();
  EXPECT_FALSE(registry_.OpenKey(L"missing", false));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
  EXPECT_EQ(registry_.CurrentKey(), key);
  EXPECT_EQ(registry_.CurrentPath(), kTree);
  EXPECT_TRUE(registry_.OpenKey(L"sub", true));
  EXPECT_EQ(registry_.CurrentPath(), std::wstring(kTree) + L"\\sub");
  EXPECT_TRUE(registry_.OpenKey(std::wstring(L"\\") + kTree, false));
  EXPECT_EQ(registry_.CurrentPath(), kTree);
  EXPECT_FALSE(registry_.OpenKey(std::wstring(L"sub\0x", 5), false));
  registry_.SetRootKey(HKEY_LOCAL_MACHINE);
  EXPECT_EQ(registry_.CurrentKey(), nullptr);
  EXPECT_TRUE(registry_.ValueNames().empty());
}

TEST_F(TRegistryTest, ReadsByKindAndNamesTheValueInErrors) {
  tree_.Set(L"", L"sz", Sz(L"text"));
  tree_.Set(L"", L"cut", {REG_EXPAND_SZ, UnitBytes(std::wstring_view(L"%a%\0x", 5))});
  tree_.Set(L"", L"dword", Dword(0xFFFFFFFF));
  tree_.Set(L"", L"short", {REG_DWORD, {std::byte{1}}});
  ASSERT_TRUE(registry_.OpenKeyReadOnly(kTree));
  EXPECT_EQ(registry_.ReadString(L"sz"), L"text");
  EXPECT_EQ(registry_.ReadString(L"cut"), L"%a%");
  EXPECT_EQ(registry_.ReadString(L"missing"), L"");
  EXPECT_EQ(registry_.ReadInteger(L"dword"), 0xFFFFFFFF);
  EXPECT_EQ(registry_.ReadString(std::wstring(L"sz\0x", 4)), L"");
  EXPECT_FALSE(registry_.ValueExists(std::wstring(L"sz\0x", 4)));
  const auto message = [](auto&& read) -> std::wstring {
    try {
      read();
    } catch (const ERegistryException& exception) {
      return exception.Message();
    }
    return L"nothing raised";
  };
  EXPECT_EQ(message([&] { registry_.ReadString(L"dword"); }), L"Invalid data type for 'dword'");
  EXPECT_EQ(message([&] { registry_.ReadInteger(L"sz"); }), L"Invalid data type for 'sz'");
  EXPECT_EQ(message([&] { registry_.ReadInteger(L"missing"); }), L"Failed to get data for 'missing'");
  EXPECT_EQ(message([&] { registry_.ReadInteger(L"short"); }), L"Failed to get data for 'short'");
  EXPECT_THROW(registry_.WriteString(L"new", L"x"), EOSError);
}

TEST_F(TRegistryTest, WritesAndDeletes) {
  ASSERT_TRUE(registry_.OpenKey(kTree, false));
  registry_.WriteString(L"text", L"x");
  registry_.WriteInteger(L"number", 5);
  EXPECT_EQ(tree_.Get(L"", L"text"), Sz(L"x"));
  EXPECT_EQ(tree_.Get(L"", L"number"), Dword(5));
  EXPECT_THROW(registry_.WriteString(std::wstring(L"text\0y", 6), L"z"), EOSError);
  EXPECT_FALSE(registry_.DeleteValue(std::wstring(L"text\0y", 6)));
  EXPECT_TRUE(registry_.DeleteValue(L"number"));
  EXPECT_FALSE(registry_.DeleteValue(L"number"));
  EXPECT_EQ(registry_.ValueNames(), std::vector<std::wstring>{L"text"});
  tree_.Key(L"one");
  tree_.Key(L"two\\deep");
  EXPECT_TRUE(registry_.DeleteKey(L"two"));
  for (const wchar_t* const none : {L"two", L"", L"\\"}) EXPECT_FALSE(registry_.DeleteKey(none));
  EXPECT_EQ(registry_.KeyNames(), std::vector<std::wstring>{L"one"});
}

TEST(KeyTreeTest, LinksAreNotEnteredAndUnreadableKeysStopTheDeletion) {
  const RegistryTree tree(kTree);
  tree.Set(L"precious\\deep", L"v", Dword(1));
  tree.Key(L"k\\plain");
  MakeLink(HKEY_CURRENT_USER, tree.PathOf(L"k\\link"), tree.Key(L"precious").Get());
  ASSERT_TRUE(tree.Has(L"k\\link\\deep"));
  EXPECT_EQ(CheckKeyTree(HKEY_CURRENT_USER, tree.PathOf(L"k"), 0), ERROR_NOT_SUPPORTED);
  EXPECT_EQ(CheckKeyTree(HKEY_CURRENT_USER, tree.PathOf(L"precious"), 0), ERROR_SUCCESS);
  EXPECT_EQ(CheckKeyTree(HKEY_CURRENT_USER, tree.PathOf(L"missing"), 0), ERROR_SUCCESS);
  EXPECT_EQ(smh::DeleteKeyTree(HKEY_CURRENT_USER, tree.PathOf(L"k"), 0), ERROR_SUCCESS);
  EXPECT_FALSE(tree.Has(L"k"));
  EXPECT_EQ(tree.Get(L"precious\\deep", L"v"), Dword(1));

  // All or nothing: what could be deleted before the closed key is reached stays too.
  tree.Set(L"k\\a", L"v", Dword(1));
  tree.Key(L"k\\closed\\below");
  tree.Set(L"k\\z", L"v", Dword(1));
  const LimitedKey closed(HKEY_CURRENT_USER, tree.PathOf(L"k\\closed"), LimitedKey::Rights::kNone);
  EXPECT_EQ(smh::DeleteKeyTree(HKEY_CURRENT_USER, tree.PathOf(L"k"), 0), ERROR_ACCESS_DENIED);
  EXPECT_EQ(CheckKeyTree(HKEY_CURRENT_USER, tree.PathOf(L"k"), 0), ERROR_ACCESS_DENIED);
  EXPECT_TRUE(tree.Has(L"k\\closed\\below"));
  EXPECT_EQ(tree.Get(L"k\\a", L"v"), Dword(1));
  EXPECT_EQ(tree.Get(L"k\\z", L"v"), Dword(1));
}

}  // namespace
}  // namespace smh::test
