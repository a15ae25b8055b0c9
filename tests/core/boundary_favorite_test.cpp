#include "samples/link_builder.h"
#include "tests/core/boundary_favorite_fixture.h"

#include <commctrl.h>

#include <algorithm>

namespace smh::test {
namespace {

constexpr wchar_t kMissingFile[] = L"C:\\no such folder\\gone.exe";

std::string ShortcutBytes(const std::wstring& target, const std::wstring& iconFile) {
  LinkBuilder link;
  link.info = LinkInfoSpec{.basePath = std::string(target.begin(), target.end())};
  link.iconIndex = 1;
  link.strings = {{LinkString::kIconLocation, std::u16string(iconFile.begin(), iconFile.end())}};
  return link.Build().Text();
}

TEST_F(FavoriteTest, NamesComeFromTheFirstSourceThatYieldsText) {
  struct Row {
    std::wstring key, localized, application, plain, name;
  };
  const std::wstring texts = L"@" + TextsLibrary();
  const Row rows[] = {
      {L"1 all", texts + L",-101", L"application", L"plain", L"Tidewater Mail"},
      {L"2 no such string", texts + L",-999", texts + L",-102", L"plain", L"Harbour Card Mail"},
      {L"3 no such file", L"@C:\\gone.dll,-1", L" application\t", L"plain", L"application"},
      {L"4 blanks", L" \t", L"", L"  plain ", L"plain"},
      {L"5 key's own/name", L"", L"", L"", L"5 key's own/name"},
  };
  for (const Row& row : rows) {
    const std::wstring key = keys.Add(1, row.key, sample.Path());
    keys.Set(key, L"LocalizedString", row.localized);
    keys.Set(key + L"\\Capabilities", L"ApplicationName", row.application);
    keys.Set(key, L"", row.plain);
  }
  // Only texts count.
  const std::wstring number = keys.Add(1, L"6 number", sample.Path());
  SetValue(HKEY_LOCAL_MACHINE, number, L"LocalizedString", Dword(7), OwnView());
  // In the native folder of programs, which has another name for 32-bit ones on a 64-bit Windows.
  const std::wstring native = L"C:\\Program Files\\boundary texts.dll";
  WriteFileBytes(native, ReadFileBytes(TextsLibrary()));
  const std::wstring redirected = keys.Add(1, L"7 redirected", sample.Path());
  keys.Set(redirected, L"LocalizedString", L"@%ProgramFiles%\\boundary texts.dll,-101");
  const RawFavorites favorites = ReadFavorites();
  DeleteFileW(native.c_str());
  ASSERT_EQ(favorites.GetCount(), 7);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(favorites.Item(i).Name(), rows[i].name);
  EXPECT_EQ(favorites.Item(5).Name(), L"6 number");
  EXPECT_EQ(favorites.Item(6).Name(), L"Tidewater Mail");
}

TEST_F(FavoriteTest, ListsEveryKindOnceFromBothViewsAndOnlyWithACommand) {
  std::vector<std::wstring> expected;
  for (int kind = 1; kind <= 7; ++kind) {
    keys.Add(kind, L"Both " + std::to_wstring(kind), L" %ComSpec% /" + std::to_wstring(kind) + L' ');
    keys.Add(kind, L"Mute", L"");
    expected.push_back(L"Both " + std::to_wstring(kind));
    if (!HasTwoViews()) continue;
    keys.Add(kind, L"BOTH " + std::to_wstring(kind), L"other.exe", KEY_WOW64_32KEY);
    keys.Add(kind, L"Own " + std::to_wstring(kind), sample.Path(), KEY_WOW64_32KEY);
    expected.push_back(L"Own " + std::to_wstring(kind));
  }
  // Of no kind.
  keys.Add(0, L"Stray", sample.Path());
  const RawFavorites favorites = ReadFavorites();
  EXPECT_EQ(Names(favorites), expected);
  const int step = HasTwoViews() ? 2 : 1;
  wchar_t interpreter[MAX_PATH];
  GetEnvironmentVariableW(L"ComSpec", interpreter, MAX_PATH);
  for (int kind = 1; kind <= 7; ++kind) {
    const RawFavorite item = favorites.Item((kind - 1) * step);
    EXPECT_EQ(item.GetIndex(), (kind - 1) * step);
    EXPECT_EQ(item.GetKind(), kind);
    EXPECT_EQ(OutVariant(item, 0)->lVal, kind);
    EXPECT_EQ(item.PropertyText(4), std::wstring(interpreter) + L" /" + std::to_wstring(kind));
    EXPECT_EQ(item.PropertyText(27), kClientsKey + L'\\' + kKinds[kind] + L"\\Both " + std::to_wstring(kind));
  }
}

TEST_F(FavoriteTest, PropertiesMirrorThoseOfStartupItems) {
  keys.Add(2, L"Player", sample.Quoted() + L" /play");
  SetUserRun(L"Player", sample.Quoted() + L" /play");
  Read();
  const RawItem startup = FindUserRun(L"Player");
  const RawFavorites favorites = ReadFavorites();
  const RawFavorite item = favorites.Item(0);
  EXPECT_EQ(item.ReadChanged(), 1u);
  EXPECT_EQ(item.ReadChanged(), 0u);
  EXPECT_EQ(item.PropertyText(5), L"Boundary sample program");
  for (std::int32_t index = 1; index <= 26; ++index) {
    const OutVariant value(item, index);
    if (index == 1 || index == 7 || index == 26) {
      EXPECT_EQ(value.Type(), VT_NULL) << index;
      continue;
    }
    const OutVariant other(startup, index);
    EXPECT_EQ(value.Type(), other.Type()) << index;
    EXPECT_EQ(value.Text(), other.Text()) << index;
  }
  EXPECT_EQ(OutVariant(item, 2)->boolVal, VARIANT_TRUE);
  EXPECT_EQ(OutVariant(item, 21)->llVal, OutVariant(startup, 21)->llVal);
  EXPECT_EQ(OutVariant(item, 24)->date, OutVariant(startup, 24)->date);
  for (const std::int32_t index : {-1, 28}) EXPECT_EQ(OutVariant(item, index).Type(), VT_NULL);
}

TEST_F(FavoriteTest, IconsComeFromTheRegisteredPlaceOrTheShortcut) {
  const std::wstring texts = TextsLibrary();
  const TemporaryFolder folder;
  const std::wstring link = folder.Write(L"with blanks.lnk", ShortcutBytes(sample.Path(), texts));
  SetEnvironmentVariableW(L"FavoriteTexts", texts.c_str());
  const struct {
    std::wstring command, icon;
    int image;
  } rows[] = {
      {sample.Path(), L"", 0},
      {sample.Path(), texts, 1},
      {sample.Path(), texts + L",1", 2},
      {sample.Path(), L'"' + texts + L"\", 1", 2},
      {sample.Path(), L"%FavoriteTexts%,99", 1},
      {sample.Path(), std::wstring(kMissingFile) + L",0", 0},
      {sample.Path(), sample.Path() + L",0", 0},
      {L'"' + link + L'"', std::wstring(kMissingFile) + L",0", 2},
      {kMissingFile, texts + L",0", 1},
  };
  for (int i = 0; i < 9; ++i) {
    const std::wstring key = keys.Add(3, std::to_wstring(i), rows[i].command);
    if (!rows[i].icon.empty()) keys.Set(key + L"\\DefaultIcon", L"", rows[i].icon);
  }
  const RawFavorites favorites = ReadFavorites();
  ASSERT_EQ(favorites.GetCount(), 9);
  for (int i = 0; i < 9; ++i) EXPECT_EQ(favorites.Item(i).GetImageIndex(), rows[i].image) << i;
  const auto side = [](void* list) {
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(static_cast<HIMAGELIST>(list), &width, &height);
    return width;
  };
  for (void* list : {favorites.GetSmallImageList(), items.GetSmallImageList()}) EXPECT_EQ(side(list), 16);
  for (void* list : {favorites.GetLargeImageList(), items.GetLargeImageList()}) EXPECT_EQ(side(list), 32);
  EXPECT_EQ(ImageList_GetImageCount(static_cast<HIMAGELIST>(favorites.GetLargeImageList())), 3);
  // The shortcut stands for its target.
  EXPECT_EQ(favorites.Item(7).PropertyText(18), L"Quillmark");
  EXPECT_EQ(favorites.Item(7).PropertyText(4), L'"' + link + L'"');
  EXPECT_EQ(OutVariant(favorites.Item(8), 2)->boolVal, VARIANT_FALSE);

  // A path that is added needs no quotes.
  EXPECT_EQ(favorites.AddPath(link.c_str()), S_OK);
  const RawFavorite added = favorites.Item(9);
  EXPECT_TRUE(WaitUntil([&] { return added.ReadChanged() == 1; }));
  EXPECT_EQ(added.GetKind(), 0);
  EXPECT_EQ(added.Name(), L"with blanks");
  EXPECT_EQ(added.PropertyText(4), link);
  EXPECT_EQ(added.PropertyText(27), L"");
  EXPECT_EQ(added.PropertyText(18), L"Quillmark");
  EXPECT_EQ(added.GetImageIndex(), 2);
}

TEST_F(FavoriteTest, CollectionsAreManyAndKeepTheContract) {
  keys.Add(1, L"Mailer", sample.Path());
  const RawFavorites favorites = ReadFavorites();
  const RawFavorites other = manager.Favorites();
  EXPECT_NE(favorites.Address(), other.Address());
  const RawFavorite item = favorites.Item(0);
  for (const std::int32_t index : {-1, 1}) {
    PlantErrorInfo();
    void* untouched = this;
    EXPECT_EQ(favorites.GetItem(index, &untouched), S_FALSE);
    EXPECT_EQ(untouched, this);
    EXPECT_FALSE(TakeErrorInfo().has_value());
  }
  EXPECT_TRUE(IsExplained(favorites.GetItem(0, nullptr), E_POINTER));
  EXPECT_TRUE(IsExplained(item.GetName(nullptr), E_POINTER));
  EXPECT_TRUE(IsExplained(item.GetProperty(3, nullptr), E_POINTER));
  for (const wchar_t* path : {static_cast<const wchar_t*>(nullptr), L"", L" \t"}) {
    EXPECT_TRUE(IsAssertion(favorites.AddPath(path), L"uFavoriteItemCollection"));
  }
  EXPECT_TRUE(IsAssertion(favorites.Unlock(), L"uFavoriteItemCollection"));
  EXPECT_EQ(favorites.GetCount(), 1);
}

TEST_F(FavoriteTest, EntriesOutliveTheHostsReferenceToTheirCollection) {
  keys.Add(1, L"Mailer", sample.Path());
  RawFavorites favorites = ReadFavorites();
  const RawFavorite item = favorites.Item(0);
  favorites.Reset();
  EXPECT_EQ(item.Name(), L"Mailer");
  EXPECT_EQ(item.PropertyText(18), L"Quillmark");
}

TEST_F(FavoriteTest, AFaultyKeyDoesNotKeepTheOthersFromTheList) {
  const LimitedKey unreadable(HKEY_LOCAL_MACHINE, keys.Add(1, L"B", sample.Path()), LimitedKey::Rights::kNone,
                              OwnView());
  keys.Add(1, L"A", sample.Path());
  keys.Add(1, L"C", std::wstring(30'000, L'x') + L".exe");
  keys.Add(7, L"D", L"\xD800\"\"\" %");
  const std::vector<std::wstring> names = Names(ReadFavorites());
  for (const wchar_t* name : {L"A", L"C", L"D"}) EXPECT_EQ(std::ranges::count(names, name), 1);
}

}  // namespace
}  // namespace smh::test
