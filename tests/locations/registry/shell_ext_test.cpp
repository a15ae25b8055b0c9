#include "handler_fixture.h"
#include "infra/uRegistryUtils.h"

#include <gmock/gmock.h>

namespace smh::test {

using ::testing::UnorderedElementsAre;

using ShellExtChange = BothWays<HandlerTest>;
INSTANTIATE_TEST_SUITE_P(Checkpoints, ShellExtChange, ::testing::Bool());

TEST_F(HandlerTest, ApprovedExtensionsNeedAServerAndADescription) {
  const REGSAM view = OwnView();
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, Sz(L"Described"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kOther, Sz(L""), view);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kUnserved, Sz(L"No server"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, L"No class", Sz(L"text"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey + kAutorunsSide, kOther, ExpandSz(L"%Off%"), view);
  SetValue(HKEY_CURRENT_USER, kApprovedKey, kClass, Sz(L"Not read"), view);
  Approved().ReadItems();
  EXPECT_THAT(Captions(Approved()), UnorderedElementsAre(L"Described", L"%Off%"));
  const ItemRef item = LoadAndFind(Approved(), view, HKEY_LOCAL_MACHINE, kApprovedKey, kClass);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(Command(item), kServer);
}

TEST_P(ShellExtChange, TheDescriptionReadIsWrittenBackAndNeverTheCaption) {
  SetValue(HKEY_CURRENT_USER, kHooksKey, kClass, Sz(L""), OwnView());
  SetValue(HKEY_CURRENT_USER, kHooksKey, kOther, Dword(5), OwnView());
  for (const std::wstring& name : {kClass, kOther}) {
    const ItemRef item = LoadAndFind(UserHooks(), OwnView(), HKEY_CURRENT_USER, kHooksKey, name);
    ASSERT_NE(item, nullptr);
    EXPECT_FALSE(item->Details().Caption.empty());
    UserHooks().DisableItem(item);
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooksKey + kAutorunsSide, name, OwnView()), Sz(L""));
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooksKey, name, OwnView()), std::nullopt);
    EXPECT_EQ(item->Name(),
              BuildFullValuePath(OwnView(), HKEY_CURRENT_USER, kHooksKey + kAutorunsSide, name));
    UserHooks().EnableItem(item);
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooksKey, name, OwnView()), Sz(L""));
  }
}

TEST_P(ShellExtChange, ApprovedValuesMoveAndGoInBothViews) {
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, Sz(L"Text"), view);
  }
  const ItemRef item = LoadAndFind(Approved(), OwnView(), HKEY_LOCAL_MACHINE, kApprovedKey, kClass);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(Listed(Approved()).size(), 1u);
  Approved().DisableItem(item);
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, view), std::nullopt);
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApprovedKey + kAutorunsSide, kClass, view), Sz(L"Text"));
  }
  // The own key has the value again: enabling drops the disabled one.
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, Sz(L"New"), OwnView());
  Approved().ReadItems();
  Approved().EnableItem(item);
  EXPECT_FALSE(item->IsListed());
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, OwnView()), Sz(L"New"));
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApprovedKey + kAutorunsSide, kClass, OwnView()), std::nullopt);
  const ItemRef left = Listed(Approved()).at(0);
  EXPECT_EQ(left->GivenText(), L"New");
  Approved().DeleteItem(left);
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, OwnView()), std::nullopt);
}

TEST_F(HandlerTest, AFailedSwitchOfAValueLeavesBothKeysAsTheyWere) {
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, ExpandSz(L"Text"), OwnView());
  const ItemRef item = LoadAndFind(Approved(), OwnView(), HKEY_LOCAL_MACHINE, kApprovedKey, kClass);
  SetValue(HKEY_LOCAL_MACHINE, kApprovedKey + kAutorunsSide, kClass, Dword(7), OwnView());
  for (const wchar_t* call : {L"SetValue", L"DeleteValue"}) {
    module.Safeguard().Answer(call, ERROR_SUCCESS, 1);
    Approved().DisableItem(item);
    module.Safeguard().Clear();
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApprovedKey, kClass, OwnView()), ExpandSz(L"Text"));
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApprovedKey + kAutorunsSide, kClass, OwnView()), Dword(7));
    EXPECT_TRUE(item->IsListed() && item->IsEnabled());
  }
  EXPECT_TRUE(LogHas(L"\" in location \"sulRegistryShellExtApproved\"."));
}

}  // namespace smh::test
