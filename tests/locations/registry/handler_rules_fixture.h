// Handlers as trees of keys, in both ways of changing them.
#pragma once

#include "model/change_refused.h"
#include "tests/locations/registry/handler_fixture.h"

#include <string>
#include <utility>
#include <vector>

namespace smh::test {

inline const HKEY kMachine = HKEY_LOCAL_MACHINE;

class HandlerRules : public BothWays<HandlerTest> {
 protected:
  static std::wstring Menu(const std::wstring& name) { return kMenusKey + L"\\" + name; }
  static std::wstring Off(const std::wstring& name) { return kMenusKey + kAutorunsSide + L"\\" + name; }
  static ItemRef FindMenu(const std::wstring& path, const std::wstring& data = kClass) {
    return FindItem(Menus().LocationType(), BuildFullValuePath(OwnView(), kMachine, path, data));
  }
  static ItemRef LoadMenu(const std::wstring& name) {
    ClearItems();
    Menus().ReadItems();
    return FindMenu(Menu(name));
  }

  // Every key and value below a key as one text per piece: what a tree is, to the byte.
  static std::vector<std::wstring> Tree(const std::wstring& path) {
    std::vector<std::wstring> pieces;
    if (!KeyIsThere(kMachine, path, OwnView())) return pieces;
    pieces.push_back(path);
    for (const std::wstring& name : Values(kMachine, path, OwnView())) {
      const RawValue value = *GetValue(kMachine, path, name, OwnView());
      std::wstring piece = path + L'|' + name + L'|' + std::to_wstring(value.type) + L'|';
      for (const std::byte byte : value.bytes) piece += std::to_wstring(int(byte)) + L' ';
      pieces.push_back(std::move(piece));
    }
    for (const std::wstring& sub : SubKeys(kMachine, path, OwnView())) {
      for (std::wstring& piece : Tree(path + L'\\' + sub)) pieces.push_back(std::move(piece));
    }
    return pieces;
  }
  static void MakeTree(const std::wstring& path) {
    SetHandler(kMachine, path, kClass, OwnView());
    SetValue(kMachine, path, L"number", Dword(7), OwnView());
    SetValue(kMachine, path + L"\\a", L"", ExpandSz(L"%x%"), OwnView());
    SetValue(kMachine, path + L"\\a\\b", L"list", MultiSz({L"one", L"two"}), OwnView());
    SetValue(kMachine, path + L"\\z:/", L"bytes", Binary("\x01\x02"), OwnView());
  }
};

}  // namespace smh::test
