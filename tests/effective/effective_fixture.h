// Tests on the real switches, policies and lists of the system, on a Windows that is chosen. All keys are
// emptied for a test and put back at its end.
#pragma once

#include "effective/system_states.h"
#include "infra/runtime/text.h"
#include "tests/support/module_fixture.h"
#include "tests/support/registry_fixture.h"

namespace smh::test {

inline const std::wstring kVersion = L"Software\\Microsoft\\Windows\\CurrentVersion\\";
inline const std::wstring kSwitches = kVersion + L"Explorer\\StartupApproved\\";
inline const std::wstring kPolicies = kVersion + L"Policies\\Explorer";
inline const std::wstring kAddOnPolicies = kVersion + L"Policies\\Ext";
inline const std::wstring kBlockedKey = kVersion + L"Shell Extensions\\Blocked";
inline const std::wstring kColumnsKey = L"Software\\Classes\\Folder\\shellex\\ColumnHandlers";
inline const std::wstring kBrowserKey = L"Software\\Microsoft\\Internet Explorer\\Main";
inline const std::wstring kProgram = L"C:\\windows\\notepad.exe";

// A class, and where its servers are registered.
inline const std::wstring kClass = L"{5E1B3A60-0C5D-4F0E-9A3B-6D1C2F7E8A21}";
inline const std::wstring kServer = L"Software\\Classes\\CLSID\\" + kClass;

inline const HKEY kOwn = HKEY_CURRENT_USER;
inline const HKEY kAll = HKEY_LOCAL_MACHINE;

// A switch as Task Manager writes it: off since a second of 2022, and on.
inline const std::string kOffBytes("\x03\0\0\0\x80\x96\x98\x3a\x1d\x0f\xd8\x01", 12);
inline const std::string kOnBytes("\x02\0\0\0\0\0\0\0\0\0\0\0", 12);
inline const RawValue kOff = Binary(kOffBytes);
inline const RawValue kOn = Binary(kOnBytes);

class EffectiveTest : public ModuleTest {
 protected:
  EffectiveTest() { SetRelease(kWindows8); }

  static void SetRelease(const WindowsRelease& release) {
    release_ = release;
    g_systemStates->SetRelease([]() noexcept { return release_; });
  }
  static TLocationStartup& At(TTypeStartupLocation location) { return *FindLocation(location); }
  // Reads the system's rules and the location. The entry of that caption or file name, an enabled one first;
  // null when none is listed.
  static ItemRef Load(TTypeStartupLocation location, std::wstring_view caption) {
    g_systemStates->Read(true);
    At(location).ReadItems();
    ItemRef found;
    for (const ItemRef& item : Listed(At(location))) {
      const ItemState state = item->State();
      const bool isIt = state.givenText == caption || FileNamePart(state.name) == caption;
      if (isIt && (found == nullptr || state.isEnabled)) found = item;
    }
    return found;
  }

 private:
  static inline constinit WindowsRelease release_{};
  const EmptiedKeys keys_{{kRunKey, kRunKey + L"Once", kRunKey + L"Services", kServer,
                           kVersion + L"Explorer\\StartupApproved", kPolicies, kAddOnPolicies,
                           kVersion + L"Shell Extensions", kVersion + L"Ext\\Settings", kMenusKey,
                           kColumnsKey, kObjectsKey, kHooksKey, kBrowserKey}};
};

}  // namespace smh::test
