#include "tests/core/boundary_fixture.h"

#include <cwctype>

namespace smh::test {
namespace {

class ManagerTest : public BoundaryTest {};

std::wstring LowerCase(std::wstring text) {
  for (wchar_t& unit : text) unit = static_cast<wchar_t>(std::towlower(unit));
  return text;
}

TEST_F(ManagerTest, ExportAnswersItsOneIdentifierInAnyCaseUncounted) {
  const std::wstring id = kManagerId;
  for (const std::wstring& same : {id, LowerCase(id)}) {
    EXPECT_EQ(Library().GetInstance(same.c_str()), manager.Address());
  }
  // The library's own reference and this client's.
  EXPECT_EQ(manager.AddRef(), 3u);
  EXPECT_EQ(manager.Release(), 2u);
  EXPECT_EQ(Library().GetInstance(nullptr), nullptr);
  for (const std::wstring& other : {std::wstring(), id.substr(1, 36), L" " + id, id + L"0", id.substr(0, 37),
                                    std::wstring(L"{E8C7F189-6EBA-407B-A55E-97C824EC0202}"),
                                    std::wstring(L"{00000000-0000-0000-C000-000000000046}")}) {
    EXPECT_EQ(Library().GetInstance(other.c_str()), nullptr) << other;
  }
}

TEST_F(ManagerTest, CollectionIsOneObjectAndStringsAreMany) {
  EXPECT_EQ(manager.Items().Address(), items.Address());
  const std::uint32_t count = items.AddRef();
  EXPECT_EQ(items.Release(), count - 1);
  const RawStrings one = manager.Strings();
  const RawStrings other = manager.Strings();
  EXPECT_NE(one.Address(), other.Address());
  EXPECT_EQ(one.AddRef(), 2u);
  EXPECT_EQ(one.Release(), 1u);
}

TEST_F(ManagerTest, EveryObjectAnswersIUnknownAndItsOwnIdentifier) {
  const RawStrings strings = manager.Strings();
  const RawItem item = NoItem();
  const RawFavorites favorites = manager.Favorites();
  favorites.AddPath(L"C:\\gone.exe");
  const RawFavorite favorite = favorites.Item(favorites.GetCount() - 1);
  const std::pair<const RawObject*, const GUID*> objects[] = {
      {&manager, &kManagerGuid}, {&strings, &kStringsGuid},     {&items, &kCollectionGuid},
      {&item, &kItemGuid},       {&favorites, &kFavoritesGuid}, {&favorite, &kFavoriteGuid}};
  for (const auto& [object, own] : objects) {
    for (const GUID& id : {kManagerGuid, kStringsGuid, kCollectionGuid, kItemGuid, kFavoritesGuid,
                           kFavoriteGuid, IID_IUnknown, IID_IDispatch}) {
      const bool expected = IsEqualGUID(id, *own) || IsEqualGUID(id, IID_IUnknown);
      void* out = this;
      EXPECT_EQ(object->QueryInterface(&id, &out), expected ? S_OK : E_NOINTERFACE)
          << id.Data1 << id.Data4[7];
      EXPECT_EQ(out, expected ? object->Address() : nullptr);
      if (out == object->Address()) object->Release();
    }
    EXPECT_EQ(object->QueryInterface(own, nullptr), E_POINTER);
  }
}

TEST_F(ManagerTest, StringsAreSharedAndEachHasItsOwnPlace) {
  constexpr const wchar_t* kVerbs[RawStrings::kTexts] = {L"Adding",   L"Moving",    L"Deleting",
                                                         L"Enabling", L"Disabling", L"Changing"};
  const RawStrings strings = manager.Strings();
  const auto expectText = [](const RawStrings& from, int i, const std::wstring& expected) {
    OutText text;
    EXPECT_EQ(from.Get(i, text.Put()), S_OK);
    EXPECT_TRUE(text.IsWellFormed());
    EXPECT_EQ(text.Text(), expected);
  };
  const auto title = [&](int i) { return L"Startup Manager: " + std::wstring(kVerbs[i]) + L" %s"; };
  const auto own = [](int i) { return L"text %s \xD800 " + std::to_wstring(i); };
  for (int i = 0; i < RawStrings::kTexts; ++i) {
    expectText(strings, i, title(i));
    EXPECT_EQ(strings.Set(i, own(i).c_str()), S_OK);
  }
  const RawStrings other = manager.Strings();
  for (int i = 0; i < RawStrings::kTexts; ++i) {
    expectText(other, i, own(i));
    for (const wchar_t* empty : {static_cast<const wchar_t*>(nullptr), L""}) {
      EXPECT_EQ(other.Set(i, empty), S_OK);
      expectText(strings, i, L"");
    }
    strings.Set(i, title(i).c_str());
  }
}

// The rules are FileUtils's; here what no host may get wrong or crash.
TEST_F(ManagerTest, ResolvesCommandsToFiles) {
  const SampleProgram sample;
  const auto resolve = [&](const wchar_t* command) {
    OutText file;
    EXPECT_EQ(manager.ResolveCommandFile(command, file.Put()), S_OK);
    EXPECT_TRUE(file.IsWellFormed());
    return file.Text();
  };
  EXPECT_EQ(resolve((sample.Quoted() + L" /x \"y z\"").c_str()), sample.Path());
  EXPECT_EQ(resolve(nullptr), L"");
  for (const std::wstring& command : {std::wstring(L"\"\"\""), std::wstring(32'000, L'"'),
                                      std::wstring(32'000, L'a'), std::wstring(L"\xD800\xDFFF.exe")}) {
    EXPECT_EQ(resolve(command.c_str()).find(L'"'), std::wstring::npos);
  }
}

}  // namespace
}  // namespace smh::test
