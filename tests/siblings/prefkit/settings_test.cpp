#include "core/contracts/intf_settings.h"
#include "infra/runtime/com_ptr.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/registry_fixture.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() { EXPECT_EQ((CallSlot<HRESULT>(settings_, 4, application_.Put())), S_OK); }

  template <typename Answer>
  Answer Ask(std::size_t slot, const wchar_t* host) const {
    return CallSlot<Answer>(static_cast<IUnknown*>(application_.Get()), slot, host);
  }

  const SiblingLibrary prefkit_{L"prefkit.dll"};
  ISettings* const settings_ = prefkit_.Service<ISettings>();
  ComPtr<IApplicationSettings> application_;
  const RegistryTree tree_{L"Software\\Quillmark\\Startup Manager\\Settings\\settingstest.exe"};
};

TEST_F(SettingsTest, CheckpointsAreUsedUntilTheUserSaysNo) {
  EXPECT_EQ(settings_->GetApplicationSettings(nullptr), E_POINTER);
  EXPECT_EQ(Ask<BOOL>(1, L"settingstest.exe"), TRUE);
  tree_.Set({}, L"UseCheckpoints", Dword(0));
  for (const wchar_t* const host : {L"SettingsTest.EXE", L"C:\\Tools\\settingstest.exe"}) {
    EXPECT_EQ(Ask<BOOL>(1, host), FALSE) << host;
  }
  for (const wchar_t* const host : {L"other host.exe", L"", static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_EQ(Ask<BOOL>(1, host), TRUE);
  }
  for (const RawValue& unusable : {Dword(256), Sz(L"0"), RawValue{REG_DWORD, Bytes(2)}}) {
    tree_.Set({}, L"UseCheckpoints", unusable);
    EXPECT_EQ(Ask<BOOL>(1, L"settingstest.exe"), TRUE);
  }
}

TEST_F(SettingsTest, LimitsOfTheJournalAreAtLeastOne) {
  const struct {
    std::size_t slot;
    const wchar_t* name;
    DWORD unset;
  } rows[] = {{2, L"KeptDays", 180}, {3, L"KeptMegabytes", 256}};
  for (const auto& row : rows) {
    EXPECT_EQ(Ask<DWORD>(row.slot, L"settingstest.exe"), row.unset);
    tree_.Set({}, row.name, Dword(7));
    EXPECT_EQ(Ask<DWORD>(row.slot, L"SettingsTest.exe"), 7u);
    EXPECT_EQ(Ask<DWORD>(row.slot, nullptr), row.unset);
    tree_.Set({}, row.name, Dword(0));
    EXPECT_EQ(Ask<DWORD>(row.slot, L"settingstest.exe"), 1u);
  }
}

}  // namespace
}  // namespace smh::test
