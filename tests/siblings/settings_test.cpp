#include "infra/intf_settings.h"

#include "infra/com_ptr.h"
#include "siblings/sibling_library.h"
#include "support/registry_fixture.h"

#include <gtest/gtest.h>

namespace smh {
namespace {

using test::CallSlot;

TEST(SettingsTest, CheckpointsAreUsedUntilTheUserSaysNo) {
  const test::SiblingLibrary prefkit(L"prefkit.dll");
  auto* const settings = prefkit.Service<ISettings>();
  ComPtr<IApplicationSettings> application;
  EXPECT_EQ((CallSlot<HRESULT>(settings, 4, application.Put())), S_OK);
  EXPECT_EQ(settings->GetApplicationSettings(nullptr), E_POINTER);
  const auto useCheckpoints = [&](const wchar_t* host) {
    return CallSlot<BOOL>(static_cast<IUnknown*>(application.Get()), 1, host);
  };

  const test::RegistryTree tree(L"Software\\Quillmark\\Startup Manager\\Settings\\settingstest.exe");
  EXPECT_EQ(useCheckpoints(L"settingstest.exe"), TRUE);
  tree.Set({}, L"UseCheckpoints", test::Dword(0));
  for (const wchar_t* const host : {L"SettingsTest.EXE", L"C:\\Tools\\settingstest.exe"}) {
    EXPECT_EQ(useCheckpoints(host), FALSE) << host;
  }
  for (const wchar_t* const host : {L"other host.exe", L"", static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_EQ(useCheckpoints(host), TRUE);
  }
  for (const test::RawValue& unusable :
       {test::Dword(256), test::Sz(L"0"), test::RawValue{REG_DWORD, test::Bytes(2)}}) {
    tree.Set({}, L"UseCheckpoints", unusable);
    EXPECT_EQ(useCheckpoints(L"settingstest.exe"), TRUE);
  }
}

TEST(SettingsTest, LimitsOfTheJournalAreAtLeastOne) {
  const test::SiblingLibrary prefkit(L"prefkit.dll");
  ComPtr<IApplicationSettings> application;
  EXPECT_EQ(prefkit.Service<ISettings>()->GetApplicationSettings(application.Put()), S_OK);
  const auto ask = [&](std::size_t slot, const wchar_t* host) {
    return CallSlot<DWORD>(static_cast<IUnknown*>(application.Get()), slot, host);
  };
  const test::RegistryTree tree(L"Software\\Quillmark\\Startup Manager\\Settings\\settingstest.exe");
  const struct {
    std::size_t slot;
    const wchar_t* name;
    DWORD unset;
  } rows[] = {{2, L"KeptCheckpoints", 200}, {3, L"KeptMegabytes", 64}};
  for (const auto& row : rows) {
    EXPECT_EQ(ask(row.slot, L"settingstest.exe"), row.unset);
    tree.Set({}, row.name, test::Dword(7));
    EXPECT_EQ(ask(row.slot, L"SettingsTest.exe"), 7u);
    EXPECT_EQ(ask(row.slot, nullptr), row.unset);
    tree.Set({}, row.name, test::Dword(0));
    EXPECT_EQ(ask(row.slot, L"settingstest.exe"), 1u);
  }
}

}  // namespace
}  // namespace smh
