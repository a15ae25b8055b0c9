// Tests of the default programs on the real keys of the clients: emptied before every test, put back after
// it.
#pragma once

#include "core/boundary_fixture.h"

namespace smh::test {

inline const std::wstring kClientsKey = L"Software\\Clients";

// The kinds' keys below it, by kind; kind 0 has none.
inline const std::wstring kKinds[] = {L"",         L"Mail",     L"Media",         L"StartMenuInternet",
                                      L"Contacts", L"Calendar", L"Internet Call", L"IM"};

// A library with the strings 101 to 103 and two icons.
std::wstring TextsLibrary();

class ClientKeys {
 public:
  // The key of a client; its open command is set unless that is empty.
  static std::wstring Add(int kind, const std::wstring& name, const std::wstring& command,
                          REGSAM view = OwnView());
  static void Set(const std::wstring& key, const std::wstring& value, const std::wstring& text,
                  REGSAM view = OwnView()) {
    SetValue(HKEY_LOCAL_MACHINE, key, value, Sz(text), view);
  }
  // So many clients of every kind.
  static void AddMany(int count, const std::wstring& command);

 private:
  const EmptiedKeys emptied_{{kClientsKey}};
};

bool WaitUntilComplete(const RawFavorites& favorites);

class FavoriteTest : public BoundaryTest {
 protected:
  // A new collection, read to its end.
  RawFavorites ReadFavorites() const;
  static std::vector<std::wstring> Names(const RawFavorites& favorites);

  const ClientKeys keys;
  const SampleProgram sample;
};

}  // namespace smh::test
