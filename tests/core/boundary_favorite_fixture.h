// Tests of the default programs on the real keys of the clients: emptied before every test, put back after
// it.
#pragma once

#include "tests/core/boundary_fixture.h"

namespace smh::test {

inline const std::wstring kClientsKey = L"Software\\Clients";

// The kinds' keys below it, by kind; kind 0 has none.
inline const std::wstring kKinds[] = {L"",         L"Mail",     L"Media",         L"StartMenuInternet",
                                      L"Contacts", L"Calendar", L"Internet Call", L"IM"};

// A library with the strings 101 to 103 and two icons.
inline std::wstring TextsLibrary() {
  const std::wstring file = ThisFolder() + L"..\\samples\\drive_c\\Samples\\Texts\\clienttexts.dll";
  wchar_t path[MAX_PATH];
  return std::wstring(path, GetFullPathNameW(file.c_str(), MAX_PATH, path, nullptr));
}

class ClientKeys {
 public:
  // The key of a client; its open command is set unless that is empty.
  static std::wstring Add(int kind, const std::wstring& name, const std::wstring& command,
                          REGSAM view = OwnView()) {
    const std::wstring key = kClientsKey + L'\\' + kKinds[kind] + L'\\' + name;
    MakeKey(HKEY_LOCAL_MACHINE, key, view);
    if (!command.empty()) Set(key + L"\\shell\\open\\command", L"", command, view);
    return key;
  }
  static void Set(const std::wstring& key, const std::wstring& value, const std::wstring& text,
                  REGSAM view = OwnView()) {
    SetValue(HKEY_LOCAL_MACHINE, key, value, Sz(text), view);
  }
  // So many clients of every kind.
  static void AddMany(int count, const std::wstring& command) {
    for (int kind = 1; kind <= 7; ++kind) {
      for (int i = 0; i < count; ++i) Add(kind, L"Client " + std::to_wstring(i), command);
    }
  }

 private:
  const EmptiedKeys emptied_{{kClientsKey}};
};

inline bool WaitUntilComplete(const RawFavorites& favorites) {
  return WaitUntil([&] { return favorites.GetReadState() == 2; });
}

class FavoriteTest : public BoundaryTest {
 protected:
  // A new collection, read to its end.
  RawFavorites ReadFavorites() const {
    RawFavorites favorites = manager.Favorites();
    EXPECT_TRUE(WaitUntilComplete(favorites));
    return favorites;
  }
  static std::vector<std::wstring> Names(const RawFavorites& favorites) {
    std::vector<std::wstring> names;
    for (int i = 0; i < favorites.GetCount(); ++i) names.push_back(favorites.Item(i).Name());
    return names;
  }

  const ClientKeys keys;
  const SampleProgram sample;
};

}  // namespace smh::test
