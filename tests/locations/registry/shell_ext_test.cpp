#include "handler_fixture.h"
#include "infra/uRegistryUtils.h"

#include <gmock/gmock.h>

namespace smh::test {

using ::testing::UnorderedElementsAre;

// Every change twice: recorded inside a checkpoint, and plain.
class ShellExtChange : public HandlerTest, public ::testing::WithParamInterface<bool> {
 protected:
  ShellExtChange() { module.Settings().useCheckpoints = GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(Checkpoints, ShellExtChange, ::testing::Bool());

TEST_F(HandlerTest, ApprovedExtensionsNeedAServerAndADescription) {
  const REGSAM view = OwnView();
  SetValue(HKEY_LOCAL_MACHINE, kApproved, kClass, Sz(L"Described"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApproved, kOther, Sz(L""), view);
  SetValue(HKEY_LOCAL_MACHINE, kApproved, kUnserved, Sz(L"No server"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApproved, L"No class", Sz(L"text"), view);
  SetValue(HKEY_LOCAL_MACHINE, kApproved + kSide, kOther, ExpandSz(L"%Off%"), view);
  SetValue(HKEY_CURRENT_USER, kApproved, kClass, Sz(L"Not read"), view);
  Approved().ReadItems();
  EXPECT_THAT(Captions(Approved()), UnorderedElementsAre(L"Described", L"%Off%"));
  const ItemRef item = LoadAndFind(Approved(), view, HKEY_LOCAL_MACHINE, kApproved, kClass);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(Command(item), kServer);
}

TEST_P(ShellExtChange, TheDescriptionReadIsWrittenBackAndNeverTheCaption) {
  SetValue(HKEY_CURRENT_USER, kHooks, kClass, Sz(L""), OwnView());
  SetValue(HKEY_CURRENT_USER, kHooks, kOther, Dword(5), OwnView());
  for (const std::wstring& name : {kClass, kOther}) {
    const ItemRef item = LoadAndFind(UserHooks(), OwnView(), HKEY_CURRENT_USER, kHooks, name);
    ASSERT_NE(item, nullptr);
    EXPECT_FALSE(item->Details().Caption.empty());
    UserHooks().DisableItem(item);
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooks + kSide, name, OwnView()), Sz(L""));
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooks, name, OwnView()), std::nullopt);
    EXPECT_EQ(item->Name(), BuildFullValuePath(OwnView(), HKEY_CURRENT_USER, kHooks + kSide, name));
    UserHooks().EnableItem(item);
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kHooks, name, OwnView()), Sz(L""));
  }
}

TEST_P(ShellExtChange, ApprovedValuesMoveAndGoInBothViews) {
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    SetValue(HKEY_LOCAL_MACHINE, kApproved, kClass, Sz(L"Text"), view);
  }
  const ItemRef item = LoadAndFind(Approved(), OwnView(), HKEY_LOCAL_MACHINE, kApproved, kClass);
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(Listed(Approved()).size(), 1u);
  Approved().DisableItem(item);
  for (const REGSAM view : {REGSAM(0), OwnView()}) {
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApproved, kClass, view), std::nullopt);
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApproved + kSide, kClass, view), Sz(L"Text"));
  }
  // The own key has the value again: enabling drops the disabled one.
  SetValue(HKEY_LOCAL_MACHINE, kApproved, kClass, Sz(L"New"), OwnView());
  Approved().ReadItems();
  Approved().EnableItem(item);
  EXPECT_FALSE(item->IsListed());
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApproved, kClass, OwnView()), Sz(L"New"));
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApproved + kSide, kClass, OwnView()), std::nullopt);
  const ItemRef left = Listed(Approved()).at(0);
  EXPECT_EQ(left->GivenText(), L"New");
  Approved().DeleteItem(left);
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApproved, kClass, OwnView()), std::nullopt);
}

TEST_F(HandlerTest, AFailedSwitchOfAValueLeavesBothKeysAsTheyWere) {
  SetValue(HKEY_LOCAL_MACHINE, kApproved, kClass, ExpandSz(L"Text"), OwnView());
  const ItemRef item = LoadAndFind(Approved(), OwnView(), HKEY_LOCAL_MACHINE, kApproved, kClass);
  SetValue(HKEY_LOCAL_MACHINE, kApproved + kSide, kClass, Dword(7), OwnView());
  for (const wchar_t* call : {L"SetValue", L"DeleteValue"}) {
    module.Safeguard().Answer(call, ERROR_SUCCESS, 1);
    Approved().DisableItem(item);
    module.Safeguard().Clear();
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApproved, kClass, OwnView()), ExpandSz(L"Text"));
    EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kApproved + kSide, kClass, OwnView()), Dword(7));
    EXPECT_TRUE(item->IsListed() && item->IsEnabled());
  }
  EXPECT_TRUE(LogHas(L"\" in location \"sulRegistryShellExtApproved\"."));
}

}  // namespace smh::test
