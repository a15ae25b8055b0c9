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
  const std::pair<const RawObject*, const wchar_t*> objects[] = {
      {&manager, kManagerId},
      {&strings, L"{E8C7F189-6EBA-407B-A55E-97C824EC0202}"},
      {&items, L"{6F4C2018-3E75-411A-B50D-7BB961CC0203}"},
      {&favorites, L"{6F4C2018-3E75-411A-B50D-7BB961CC0204}"},
      {&item, L"{9AE83B93-CF58-474B-9D7A-DEBC2F000205}"},
      {&favorite, L"{9AE83B93-CF58-474B-9D7A-DEBC2F000206}"}};
  std::vector<GUID> ids = {IID_IUnknown, IID_IDispatch};
  for (const auto& [object, id] : objects) ASSERT_EQ(IIDFromString(id, &ids.emplace_back()), S_OK);
  for (std::size_t i = 0; i < std::size(objects); ++i) {
    const RawObject& object = *objects[i].first;
    SCOPED_TRACE(i);
    for (const GUID& id : ids) {
      const bool expected = &id == &ids[0] || &id == &ids[2 + i];
      void* out = this;
      EXPECT_EQ(object.QueryInterface(&id, &out), expected ? S_OK : E_NOINTERFACE);
      EXPECT_EQ(out, expected ? object.Address() : nullptr);
      if (out == object.Address()) object.Release();
    }
    EXPECT_EQ(object.QueryInterface(&ids[2 + i], nullptr), E_POINTER);
  }
}

TEST_F(ManagerTest, FactsAreOfTheSameObjectAsTheirEntry) {
  const RawFavorites favorites = manager.Favorites();
  favorites.AddPath(L"C:\\gone.exe");
  const RawItem item = NoItem();
  const RawFavorite favorite = favorites.Item(favorites.GetCount() - 1);
  for (const RawObject* object :
       {static_cast<const RawObject*>(&item), static_cast<const RawObject*>(&favorite)}) {
    const RawFacts facts(*object);
    RawObject identity;
    EXPECT_EQ(facts.QueryInterface(&IID_IUnknown, identity.Put()), S_OK);
    EXPECT_EQ(identity.Address(), object->Address());
    EXPECT_TRUE(IsExplained(facts.GetFact(0, nullptr), E_POINTER));
  }
  EXPECT_THROW(RawFacts{manager}, std::runtime_error);
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
  const std::wstring self = ThisProgram();
  const TemporaryFolder folder;
  const std::wstring whole = folder.Write(L"a b.exe", "x");
  const std::wstring part = folder.Write(L"a.exe", "x");
  const std::pair<std::wstring, std::wstring> rows[] = {{L'"' + self + L"\" /x \"y z\"", self},
                                                        {L'"' + whole + L'"', whole},
                                                        {whole, part},
                                                        {std::wstring(32'000, L'"'), L""}};
  OutText none;
  EXPECT_EQ(manager.ResolveCommandFile(nullptr, none.Put()), S_OK);
  EXPECT_EQ(none.Get(), nullptr);
  for (const auto& [command, expected] : rows) {
    OutText file;
    EXPECT_EQ(manager.ResolveCommandFile(command.c_str(), file.Put()), S_OK);
    EXPECT_TRUE(file.IsWellFormed());
    EXPECT_EQ(file.Text(), expected);
  }
}

}  // namespace
}  // namespace smh::test
