// Tests on the real handler lists, approved extensions and URL search hooks, which are put back afterwards.
#pragma once

#include "model/uLocationStartup.h"
#include "support/module_fixture.h"
#include "support/registry_fixture.h"

#include <memory>
#include <string>
#include <vector>

namespace smh::test {

inline const std::wstring kMenus = L"Software\\Classes\\*\\shellex\\ContextMenuHandlers";
inline const std::wstring kObjects =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects";
inline const std::wstring kApproved =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved";
inline const std::wstring kHooks = L"Software\\Microsoft\\Internet Explorer\\URLSearchHooks";
inline const std::wstring kSide = L"\\AutorunsDisabled";

// A class with a server in every view, one with another server, and one without.
inline const std::wstring kClass = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A01}";
inline const std::wstring kOther = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A02}";
inline const std::wstring kUnserved = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A03}";
inline const std::wstring kServer = L"C:\\Samples\\class.dll";
inline const std::wstring kOtherServer = L"C:\\Samples\\other.dll";

class HandlerTest : public ModuleTest {
 protected:
  HandlerTest();

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
  // The location's items in the order of the list.
  static std::vector<ItemRef> Listed(const TLocationStartup& location);
  static std::vector<std::wstring> Captions(const TLocationStartup& location);
  // Loads, and finds by full value path; null when there is none.
  static ItemRef LoadAndFind(TLocationStartup& location, REGSAM view, HKEY root, const std::wstring& key,
                             const std::wstring& name);
  static std::wstring Command(const ItemRef& item) { return item->Details().Command; }
  static REGSAM OwnView() { return HasTwoViews() ? KEY_WOW64_64KEY : 0; }

 private:
  EmptiedKeys keys_;
};

}  // namespace smh::test
