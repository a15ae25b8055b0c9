#include "hosts/cli/item_selector.h"
#include "hosts/common/host_error.h"
#include "tests/hosts/common/test_items.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

const std::wstring kUser = L"(x64)HKEY_CURRENT_USER\\Run";
const std::wstring kCommon = L"(x64)HKEY_LOCAL_MACHINE\\Run";

const std::vector<ItemRecord> kItems = {
    MakeItem(sulRegistryUserRun, kUser, L"Mixer"),
    MakeItem(sulRegistryCommonRun, kCommon, L"mixer"),
    MakeItem(sulRegistryUserRun, kUser, L"Alone"),
    MakeItem(sulRegistryUserRun, kUser, std::wstring(L"odd") + static_cast<wchar_t>(0xD800)),
    MakeItem(sulRegistryUserRun, kUser, L"\\u0041"),
    MakeItem(sulRegistryUserRun, kUser, L"A"),
    // Its caption is the full name of another entry.
    MakeItem(sulRegistryCommonRun, kCommon, kUser + L"\\Alone"),
};

std::wstring Refusal(std::wstring_view text, std::optional<std::int32_t> location = {}) {
  try {
    return L"selected " + SelectItem(kItems, text, location).name;
  } catch (const HostError& error) {
    EXPECT_EQ(error.Code(), ExitCode::kFailed);
    return error.Message();
  }
}

TEST(ItemSelector, FullNameBeatsCaption) {
  EXPECT_EQ(&SelectItem(kItems, kUser + L"\\Alone", {}), &kItems[2]);
  EXPECT_EQ(&SelectItem(kItems, L"(x64)hkey_current_user\\run\\mixer", {}), &kItems[0]);
  EXPECT_EQ(&SelectItem(kItems, L"alone", {}), &kItems[2]);
}

TEST(ItemSelector, AmbiguousCaptionIsRefusedWithItsCandidates) {
  const std::wstring refusal = Refusal(L"Mixer");
  EXPECT_NE(refusal.find(kItems[0].name), std::wstring::npos) << "first candidate";
  EXPECT_NE(refusal.find(kItems[1].name), std::wstring::npos) << "second candidate";
  EXPECT_NE(refusal.find(L"sulRegistryCommonRun"), std::wstring::npos);
  EXPECT_EQ(refusal.find(L"Alone"), std::wstring::npos);
}

TEST(ItemSelector, LocationNarrowsNamesAndCaptions) {
  EXPECT_EQ(&SelectItem(kItems, L"MIXER", sulRegistryCommonRun), &kItems[1]);
  EXPECT_NE(Refusal(kItems[2].name, sulRegistryUserRunOnce).find(L"No entry"), std::wstring::npos);
  EXPECT_NE(Refusal(L"nothing").find(L"No entry"), std::wstring::npos);
  EXPECT_NE(Refusal(L"").find(L"No entry"), std::wstring::npos);
}

TEST(ItemSelector, EscapesAreTriedAfterTheTextItself) {
  EXPECT_EQ(&SelectItem(kItems, L"odd\\ud800", {}), &kItems[3]);
  EXPECT_EQ(&SelectItem(kItems, L"odd\\u{d800}", {}), &kItems[3]);
  EXPECT_EQ(&SelectItem(kItems, kUser + L"\\odd\\ud800", {}), &kItems[3]);
  EXPECT_EQ(&SelectItem(kItems, L"\\u0041", {}), &kItems[4]);
}

}  // namespace
}  // namespace smh::test
