// Tests on the real handler lists, approved extensions and URL search hooks, which are put back afterwards.
#pragma once

#include "infra/registry/uRegistryUtils.h"
#include "tests/support/module_fixture.h"
#include "tests/support/registry_fixture.h"

namespace smh::test {

inline const std::wstring kClasses = L"Software\\Classes\\CLSID\\";
// A class with a server in every view, one with another server, and one without.
inline const std::wstring kClass = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A01}";
inline const std::wstring kOther = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A02}";
inline const std::wstring kUnserved = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A03}";
inline const std::wstring kServer = L"C:\\Samples\\class.dll";
inline const std::wstring kOtherServer = L"C:\\Samples\\other.dll";

class HandlerTest : public ModuleTest {
 protected:
  HandlerTest() {
    for (const REGSAM view : {REGSAM(0), OwnView()}) {
      SetHandler(HKEY_LOCAL_MACHINE, kClasses + kClass + L"\\InprocServer32", kServer, view);
      SetHandler(HKEY_LOCAL_MACHINE, kClasses + kOther + L"\\InprocServer32", kOtherServer, view);
      SetHandler(HKEY_LOCAL_MACHINE, kClasses + kUnserved + L"\\LocalServer32", kServer, view);
    }
  }

  static TLocationStartup& Menus() { return *FindLocation(sulRegistryAllRegContextMenuHandlers); }
  static TLocationStartup& Objects() { return *FindLocation(sulRegistryIEBrowserObjects); }
  static TLocationStartup& Approved() { return *FindLocation(sulRegistryShellExtApproved); }
  static TLocationStartup& UserHooks() { return *FindLocation(sulRegistryUserIEURLSearchHooks); }

  static void SetHandler(HKEY root, const std::wstring& path, const std::wstring& text, REGSAM view) {
    SetValue(root, path, L"", Sz(text), view);
  }
  // The default value of a key; none without the key.
  static std::optional<RawValue> Handler(HKEY root, const std::wstring& path, REGSAM view) {
    return GetValue(root, path, L"", view);
  }
  // Loads, and finds by full value path; null when there is none.
  static ItemRef LoadAndFind(TLocationStartup& location, REGSAM view, HKEY root, const std::wstring& key,
                             const std::wstring& name) {
    location.ReadItems();
    return FindItem(location.LocationType(), BuildFullValuePath(view, root, key, name));
  }
  static std::wstring Command(const ItemRef& item) { return std::wstring(item->State().details.Command); }

 private:
  const EmptiedKeys keys_{{kMenusKey, kObjectsKey, kApprovedKey, kHooksKey, kClasses + kClass,
                           kClasses + kOther, kClasses + kUnserved}};
};

}  // namespace smh::test
