#include "core/boundary_fixture.h"

#include "support/child_process.h"

#include <array>
#include <cwctype>

namespace smh::test {
namespace {

class ManagerTest : public BoundaryTest {};

std::wstring LowerCase(std::wstring text) {
  for (wchar_t& unit : text) unit = static_cast<wchar_t>(std::towlower(unit));
  return text;
}

TEST_F(ManagerTest, ExportAnswersItsOneIdentifierInAnyCase) {
  void* const object = Library().GetInstance(kManagerId);
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object, manager.Address());
  EXPECT_EQ(Library().GetInstance(LowerCase(kManagerId).c_str()), object);
  EXPECT_EQ(Library().GetInstance(L"{e8c7F189-6EBA-407b-A55E-97C824EC0201}"), object);
}

TEST_F(ManagerTest, ExportAnswersNothingElse) {
  EXPECT_EQ(Library().GetInstance(nullptr), nullptr);
  const std::wstring id = kManagerId;
  for (const std::wstring& other : {std::wstring(), id.substr(1, 36), L" " + id, id + L" ", id + L"0",
                                    id.substr(0, 37), std::wstring(L"{E8C7F189-6EBA-407B-A55E-97C824EC0202}"),
                                    std::wstring(L"{6F4C2018-3E75-411A-B50D-7BB961CC0203}"),
                                    std::wstring(L"{00000000-0000-0000-C000-000000000046}")}) {
    EXPECT_EQ(Library().GetInstance(other.c_str()), nullptr) << std::string(other.begin(), other.end());
  }
}

TEST_F(ManagerTest, ExportDoesNotCountItsAnswer) {
  const std::uint32_t count = manager.AddRef();
  for (int i = 0; i < 3; ++i) Library().GetInstance(kManagerId);
  EXPECT_EQ(manager.AddRef(), count + 1);
  manager.Release();
  EXPECT_EQ(manager.Release(), count - 1);
  // The library's own and this client's.
  EXPECT_EQ(count - 1, 2u);
}

TEST_F(ManagerTest, CollectionIsOneObjectAndStringsAreMany) {
  const RawCollection again = manager.Items();
  EXPECT_EQ(again.Address(), items.Address());
  const std::uint32_t count = items.AddRef();
  EXPECT_EQ(items.Release(), count - 1);
  { const RawCollection third = manager.Items(); }
  EXPECT_EQ(items.AddRef(), count);
  items.Release();

  const RawStrings one = manager.Strings();
  const RawStrings other = manager.Strings();
  EXPECT_NE(one.Address(), other.Address());
  EXPECT_EQ(one.AddRef(), 2u);
  EXPECT_EQ(one.Release(), 1u);
}

TEST_F(ManagerTest, FavoritesAreNotAvailable) {
  void* favorites = &favorites;
  EXPECT_TRUE(IsExplained(manager.GetFavoriteItems(&favorites), E_NOTIMPL));
  EXPECT_EQ(favorites, nullptr);
}

TEST_F(ManagerTest, EveryObjectAnswersIUnknownAndItsOwnIdentifier) {
  const RawStrings strings = manager.Strings();
  const RawItem item = NoItem();
  const std::array<std::pair<const RawObject*, const GUID*>, 4> objects = {{{&manager, &kManagerGuid},
                                                                            {&strings, &kStringsGuid},
                                                                            {&items, &kCollectionGuid},
                                                                            {&item, &kItemGuid}}};
  for (const auto& [object, own] : objects) {
    for (const GUID& id :
         {kManagerGuid, kStringsGuid, kCollectionGuid, kItemGuid, IID_IUnknown, IID_IDispatch}) {
      const bool expected = IsEqualGUID(id, *own) || IsEqualGUID(id, IID_IUnknown);
      void* out = this;
      EXPECT_EQ(object->QueryInterface(&id, &out), expected ? S_OK : E_NOINTERFACE)
          << id.Data1 << id.Data4[7];
      EXPECT_EQ(out, expected ? object->Address() : nullptr);
      if (expected) object->Release();
    }
    EXPECT_EQ(object->QueryInterface(own, nullptr), E_POINTER);
  }
}

TEST_F(ManagerTest, StringsBeginWithTheTitlesOfCheckpoints) {
  const RawStrings strings = manager.Strings();
  constexpr const wchar_t* kVerbs[RawStrings::kTexts] = {L"Adding",   L"Moving",    L"Deleting",
                                                         L"Enabling", L"Disabling", L"Changing"};
  for (int i = 0; i < RawStrings::kTexts; ++i) {
    OutText text;
    ASSERT_EQ(strings.Get(i, text.Put()), S_OK);
    EXPECT_TRUE(text.IsWellFormed());
    EXPECT_EQ(text.Text(), L"Startup Manager: " + std::wstring(kVerbs[i]) + L" %s");
  }
}

TEST_F(ManagerTest, StringsAreSharedAndEachHasItsOwnPlace) {
  const RawStrings strings = manager.Strings();
  std::array<std::wstring, RawStrings::kTexts> defaults;
  for (int i = 0; i < RawStrings::kTexts; ++i) {
    defaults[i] = strings.Text(i);
    EXPECT_EQ(strings.Set(i, (L"text %s \xD800 " + std::to_wstring(i)).c_str()), S_OK);
  }
  const RawStrings other = manager.Strings();
  for (int i = 0; i < RawStrings::kTexts; ++i) {
    OutText text;
    ASSERT_EQ(other.Get(i, text.Put()), S_OK);
    EXPECT_TRUE(text.IsWellFormed());
    EXPECT_EQ(text.Text(), L"text %s \xD800 " + std::to_wstring(i));
    for (const wchar_t* empty : {static_cast<const wchar_t*>(nullptr), L""}) {
      EXPECT_EQ(other.Set(i, empty), S_OK);
      OutText none;
      ASSERT_EQ(strings.Get(i, none.Put()), S_OK);
      EXPECT_EQ(none.Get(), nullptr);
    }
    strings.Set(i, defaults[i].c_str());
  }
}

TEST_F(ManagerTest, OutTextsAreOverwrittenWithoutRelease) {
  struct {
    std::int32_t references = 1;
    std::uint32_t length = 4;
    wchar_t text[5] = L"held";
  } held;
  const wchar_t* out = held.text;
  ASSERT_EQ(manager.Strings().Get(0, &out), S_OK);
  EXPECT_EQ(held.references, 1);
  ASSERT_NE(out, held.text);
  OutText owner;
  *owner.Put() = out;
  // Two answers are two texts or one counted twice; either way each is released for itself.
  OutText second;
  ASSERT_EQ(manager.Strings().Get(0, second.Put()), S_OK);
  EXPECT_TRUE(owner.IsWellFormed());
  EXPECT_TRUE(second.IsWellFormed());
}

TEST_F(ManagerTest, ResolvesCommandsToFiles) {
  const SampleProgram sample;
  const std::wstring blank = sample.Folder().MakeFolder(L"two words") + L"\\the program.exe";
  ASSERT_TRUE(CopyFileW(sample.Path().c_str(), blank.c_str(), TRUE));
  const std::wstring quotedBlank = L'"' + blank + L'"';
  wchar_t buffer[MAX_PATH];
  const std::wstring system(buffer, GetSystemDirectoryW(buffer, MAX_PATH));
  const struct {
    std::wstring command;
    std::wstring file;
  } cases[] = {
      {sample.Path(), sample.Path()},
      {sample.Path() + L" /x \"y z\"", sample.Path()},
      {sample.Quoted(), sample.Path()},
      {quotedBlank, blank},
      {blank + L" -a", blank},
      // The outer quotes belong to two pairs.
      {quotedBlank + L" " + sample.Quoted(), blank},
      {quotedBlank + L" \"-option\"", blank},
      {L"rundll32.exe /e", system + L"\\rundll32.exe"},
      {L"\"rundll32.exe\"", system + L"\\rundll32.exe"},
      {L"C:\\no such folder\\gone.exe -a", L"C:\\no such folder\\gone.exe"},
      {L"", L""},
  };
  for (const auto& row : cases) {
    OutText file;
    ASSERT_EQ(manager.ResolveCommandFile(row.command.c_str(), file.Put()), S_OK);
    EXPECT_TRUE(file.IsWellFormed());
    EXPECT_EQ(LowerCase(file.Text()), LowerCase(row.file))
        << std::string(row.command.begin(), row.command.end());
  }
  OutText none;
  EXPECT_EQ(manager.ResolveCommandFile(nullptr, none.Put()), S_OK);
  EXPECT_EQ(none.Get(), nullptr);
}

TEST_F(ManagerTest, ResolvingSurvivesHostileCommands) {
  for (const std::wstring& command :
       {std::wstring(L"\""), std::wstring(L"\"\""), std::wstring(L"\"\"\""), std::wstring(32'000, L'a'),
        std::wstring(32'000, L'"'), std::wstring(L"\\\\?\\"), std::wstring(L"\\\\nohost\\share\\a.exe"),
        std::wstring(L"\xD800\xDFFF.exe"), std::wstring(L"%"), std::wstring(L"%PATH%"),
        std::wstring(L"Q:\\x.exe")}) {
    OutText file;
    EXPECT_EQ(manager.ResolveCommandFile(command.c_str(), file.Put()), S_OK);
    EXPECT_TRUE(file.IsWellFormed());
    EXPECT_EQ(file.Text().find(L'"'), std::wstring::npos);
  }
}

}  // namespace
}  // namespace smh::test
