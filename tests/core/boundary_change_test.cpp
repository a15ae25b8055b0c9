#include "core/boundary_fixture.h"

namespace smh::test {
namespace {

class ChangeTest : public BoundaryTest {
 protected:
  // Both views of a current user's key are one.
  static std::optional<RawValue> User(const std::wstring& key) {
    return GetValue(HKEY_CURRENT_USER, key, kName);
  }

  inline static const std::wstring kName = L"Boundary entry";
};

TEST_F(ChangeTest, AnEntryGoesThroughItsWholeLife) {
  const SampleProgram sample;
  const std::wstring first = sample.Quoted() + L" /one";
  const std::wstring second = sample.Quoted() + L" /two";
  Read();
  const std::int32_t index = items.AddItem(kUserRun, kName.c_str(), first.c_str());
  ASSERT_GE(index, 0);
  EXPECT_EQ(User(kRunKey), Sz(first));
  RawItem item = FindUserRun(kName);
  EXPECT_EQ(item.GetIndex(), index);
  // A known name answers its position and overwrites nothing.
  EXPECT_EQ(items.AddItem(kUserRun, L"BOUNDARY entry", second.c_str()), index);
  EXPECT_EQ(User(kRunKey), Sz(first));

  ASSERT_EQ(item.Disable(), S_OK);
  EXPECT_EQ(User(kRunKey), std::nullopt);
  EXPECT_EQ(User(kDisabledKey), Sz(first));
  EXPECT_EQ(OutVariant(item, 1)->boolVal, VARIANT_FALSE);
  EXPECT_EQ(item.Name(), OwnViewPrefix() + L"HKEY_CURRENT_USER\\" + kDisabledKey + L"\\" + kName);
  ASSERT_EQ(item.Enable(), S_OK);
  EXPECT_EQ(User(kRunKey), Sz(first));
  EXPECT_EQ(User(kDisabledKey), std::nullopt);
  EXPECT_EQ(OutVariant(item, 1)->boolVal, VARIANT_TRUE);

  ASSERT_EQ(item.ChangeCommand(second.c_str()), S_OK);
  EXPECT_EQ(User(kRunKey), Sz(second));
  item = FindUserRun(kName);
  EXPECT_EQ(item.PropertyText(4), second);

  ASSERT_EQ(item.CanMoveTo(kCommonRun), 1u);
  ASSERT_EQ(item.MoveTo(kCommonRun), S_OK);
  EXPECT_EQ(User(kRunKey), std::nullopt);
  EXPECT_FALSE(FindUserRun(kName));
  const std::vector<std::wstring> moved = Values(HKEY_LOCAL_MACHINE, kRunKey, OwnView());
  ASSERT_EQ(moved.size(), 1u);
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, moved[0], OwnView()), Sz(second));

  item = Find(kCommonRun, moved[0]);
  ASSERT_EQ(item.Delete(), S_OK);
  EXPECT_EQ(Values(HKEY_LOCAL_MACHINE, kRunKey, OwnView()), std::vector<std::wstring>{});
  EXPECT_EQ(item.GetIndex(), -1);
  EXPECT_FALSE(TakeErrorInfo().has_value());
}

TEST_F(ChangeTest, AFailedChangeIsExplainedAndLogged) {
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, kName, Sz(L"C:\\first.exe"), OwnView());
  Read();
  const RawItem item = Find(kCommonRun, kName);
  // Vanishes before the reader can see it.
  ASSERT_EQ(items.Stop(), S_OK);
  RemoveValue(HKEY_LOCAL_MACHINE, kRunKey, kName, OwnView());
  const std::wstring name = item.Name();
  const HRESULT result = item.Disable();
  EXPECT_TRUE(FAILED(result));
  EXPECT_TRUE(IsExplained(result, result));
  Read();
  ASSERT_EQ(items.Stop(), S_OK);
  EXPECT_TRUE(LogHasLine(L"Error disable item \"" + name + L"\" in location \"sulRegistryCommonRun\"."));
}

}  // namespace
}  // namespace smh::test
