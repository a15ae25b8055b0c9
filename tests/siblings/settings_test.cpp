#include "infra/intf_settings.h"

#include "infra/com_ptr.h"
#include "siblings/sibling_library.h"
#include "support/registry_fixture.h"

#include <gtest/gtest.h>

namespace smh {
namespace {

using test::CallSlot;

constexpr wchar_t kHost[] = L"settingstest.exe";
constexpr wchar_t kKey[] = L"Software\\Quillmark\\Startup Manager\\Settings\\settingstest.exe";
constexpr wchar_t kValue[] = L"UseCheckpoints";

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() { EXPECT_EQ((CallSlot<HRESULT>(settings_, 4, application_.Put())), S_OK); }
  BOOL UseCheckpoints(const wchar_t* host = kHost) {
    return CallSlot<BOOL>(static_cast<IUnknown*>(application_.Get()), 1, host);
  }

  test::SiblingLibrary prefkit_{L"prefkit.dll"};
  ISettings* settings_ = prefkit_.Service<ISettings>();
  ComPtr<IApplicationSettings> application_;
  test::RegistryTree tree_{kKey};
};

TEST_F(SettingsTest, CheckpointsAreUsedUntilTheUserSaysNo) {
  EXPECT_EQ(UseCheckpoints(), TRUE);
  tree_.Set({}, kValue, test::Dword(0));
  EXPECT_EQ(UseCheckpoints(), FALSE);
  EXPECT_EQ(UseCheckpoints(L"SettingsTest.EXE"), FALSE);
  EXPECT_EQ(UseCheckpoints(L"C:\\Tools\\settingstest.exe"), FALSE);
  EXPECT_EQ(UseCheckpoints(L"other host.exe"), TRUE);
  tree_.Set({}, kValue, test::Dword(256));
  EXPECT_EQ(UseCheckpoints(), TRUE);
}

TEST_F(SettingsTest, UnusableValuesAndHostsMeanYes) {
  tree_.Set({}, kValue, test::Sz(L"0"));
  EXPECT_EQ(UseCheckpoints(), TRUE);
  tree_.Set({}, kValue, {REG_DWORD, test::Bytes(2)});
  EXPECT_EQ(UseCheckpoints(), TRUE);
  EXPECT_EQ(UseCheckpoints(L""), TRUE);
  EXPECT_EQ(UseCheckpoints(nullptr), TRUE);
}

TEST_F(SettingsTest, SlotsAndReferences) {
  for (const std::size_t slot : {1u, 2u, 3u}) EXPECT_EQ(CallSlot<HRESULT>(settings_, slot), E_NOTIMPL);
  EXPECT_EQ(settings_->GetApplicationSettings(nullptr), E_POINTER);
  application_.Reset();
  EXPECT_EQ(settings_->GetApplicationSettings(application_.Put()), S_OK);
  void* object = nullptr;
  EXPECT_EQ(application_->QueryInterface(IApplicationSettings::iid, &object), S_OK);
  EXPECT_EQ(application_->QueryInterface(ISettings::iid, &object), E_NOINTERFACE);
}

}  // namespace
}  // namespace smh
