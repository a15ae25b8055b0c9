#include "core/boundary_favorite_fixture.h"

#include "support/child_process.h"

namespace smh::test {

std::wstring TextsLibrary() {
  const std::wstring file = ThisFolder() + L"..\\samples\\drive_c\\Samples\\Texts\\clienttexts.dll";
  wchar_t path[MAX_PATH];
  return std::wstring(path, GetFullPathNameW(file.c_str(), MAX_PATH, path, nullptr));
}

std::wstring ClientKeys::Add(int kind, const std::wstring& name, const std::wstring& command, REGSAM view) {
  const std::wstring key = kClientsKey + L'\\' + kKinds[kind] + L'\\' + name;
  MakeKey(HKEY_LOCAL_MACHINE, key, view);
  if (!command.empty()) Set(key + L"\\shell\\open\\command", L"", command, view);
  return key;
}

void ClientKeys::AddMany(int count, const std::wstring& command) {
  for (int kind = 1; kind <= 7; ++kind) {
    for (int i = 0; i < count; ++i) Add(kind, L"Client " + std::to_wstring(i), command);
  }
}

bool WaitUntilComplete(const RawFavorites& favorites) {
  return WaitUntil([&] { return favorites.GetReadState() == 2; });
}

RawFavorites FavoriteTest::ReadFavorites() const {
  RawFavorites favorites = manager.Favorites();
  EXPECT_TRUE(WaitUntilComplete(favorites));
  return favorites;
}

std::vector<std::wstring> FavoriteTest::Names(const RawFavorites& favorites) {
  std::vector<std::wstring> names;
  for (int i = 0; i < favorites.GetCount(); ++i) names.push_back(favorites.Item(i).Name());
  return names;
}

}  // namespace smh::test
