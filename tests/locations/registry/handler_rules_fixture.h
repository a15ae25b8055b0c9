// Handlers as trees of keys, in both ways of changing them.
#pragma once

#include "model/change_refused.h"
#include "tests/locations/registry/handler_fixture.h"
#include "tests/support/state_dump.h"

#include <sddl.h>

#include <string>

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

  // All that a key is and holds, to the byte; empty for a missing one.
  static std::string Tree(const std::wstring& path) { return DumpKey(kMachine, path, OwnView()); }
  static void GiveRights(const std::wstring& path, const wchar_t* text) {
    ScopedKey key;
    EXPECT_EQ(RegOpenKeyExW(kMachine, path.c_str(), 0, WRITE_DAC | OwnView(), key.Put()), ERROR_SUCCESS);
    PSECURITY_DESCRIPTOR rights = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &rights, nullptr);
    EXPECT_EQ(RegSetKeySecurity(key.Get(), DACL_SECURITY_INFORMATION, rights), ERROR_SUCCESS);
    LocalFree(rights);
  }
  static void MakeTree(const std::wstring& path) {
    SetHandler(kMachine, path, kClass, OwnView());
    SetValue(kMachine, path, L"number", Dword(7), OwnView());
    SetValue(kMachine, path + L"\\a", L"", ExpandSz(L"%x%"), OwnView());
    SetValue(kMachine, path + L"\\a\\b", L"list", MultiSz({L"one", L"two"}), OwnView());
    SetValue(kMachine, path + L"\\z:/", L"bytes", Binary("\x01\x02"), OwnView());
    for (const wchar_t* text : {L"unended", L"ends", L"not"}) {
      SetCountedValue(MakeKey(kMachine, path + L"\\a\\b", OwnView()).Get(), text, {REG_SZ, UnitBytes(text)});
    }
    for (const wchar_t* sub : {L"", L"\\a", L"\\a\\b", L"\\z:/"})
      GiveRights(path + sub, L"D:P(A;;KA;;;WD)(A;;KR;;;SY)");
  }
};

}  // namespace smh::test
