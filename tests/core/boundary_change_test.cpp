#include "core/boundary_fixture.h"

namespace smh::test {
namespace {

class ChangeTest : public BoundaryTest {
 protected:
  // Both views of a current user's key are one.
  static std::optional<RawValue> User(const std::wstring& key) {
    return GetValue(HKEY_CURRENT_USER, key, kName);
  }
  static std::optional<RawValue> Common(const std::wstring& key) {
    return GetValue(HKEY_LOCAL_MACHINE, key, kName, OwnView());
  }
  static bool IsEnabled(const RawItem& item) {
    OutVariant value;
    item.GetProperty(1, value.Put());
    return value->boolVal == VARIANT_TRUE;
  }

  inline static const std::wstring kName = L"Boundary entry";
  const SampleProgram sample;
  const RawValue command = Sz(sample.Quoted() + L" /one");
};

TEST_F(ChangeTest, AnEntryGoesThroughItsWholeLife) {
  Read();
  const std::wstring first = sample.Quoted() + L" /one";
  const std::wstring second = sample.Quoted() + L" /two";

  const std::int32_t index = items.AddItem(kUserRun, kName.c_str(), first.c_str());
  ASSERT_GE(index, 0);
  EXPECT_FALSE(TakeErrorInfo().has_value());
  EXPECT_EQ(User(kRunKey), Sz(first));
  RawItem item = FindUserRun(kName);
  ASSERT_TRUE(item);
  EXPECT_EQ(item.GetIndex(), index);
  EXPECT_EQ(item.Name(), OwnViewPrefix() + L"HKEY_CURRENT_USER\\" + kRunKey + L"\\" + kName);

  ASSERT_EQ(item.Disable(), S_OK);
  EXPECT_EQ(User(kRunKey), std::nullopt);
  EXPECT_EQ(User(kDisabledKey), Sz(first));
  EXPECT_FALSE(IsEnabled(item));
  EXPECT_EQ(item.CanDo(1), 1u);
  EXPECT_EQ(item.Name(), OwnViewPrefix() + L"HKEY_CURRENT_USER\\" + kDisabledKey + L"\\" + kName);

  ASSERT_EQ(item.Enable(), S_OK);
  EXPECT_EQ(User(kRunKey), Sz(first));
  EXPECT_EQ(User(kDisabledKey), std::nullopt);
  EXPECT_TRUE(IsEnabled(item));

  ASSERT_EQ(item.ChangeCommand(second.c_str()), S_OK);
  EXPECT_EQ(User(kRunKey), Sz(second));
  item = FindUserRun(kName);
  ASSERT_TRUE(item);
  EXPECT_EQ(item.PropertyText(4), second);

  ASSERT_EQ(item.CanMoveTo(kCommonRun), 1u);
  ASSERT_EQ(item.MoveTo(kCommonRun), S_OK);
  EXPECT_EQ(User(kRunKey), std::nullopt);
  EXPECT_FALSE(FindUserRun(kName));
  ASSERT_TRUE(WaitUntil([] { return !Values(HKEY_LOCAL_MACHINE, kRunKey, OwnView()).empty(); }, 0));
  const std::wstring moved = Values(HKEY_LOCAL_MACHINE, kRunKey, OwnView()).front();
  EXPECT_EQ(GetValue(HKEY_LOCAL_MACHINE, kRunKey, moved, OwnView()), Sz(second));

  item = Find(kCommonRun, moved);
  ASSERT_TRUE(item);
  ASSERT_EQ(item.Delete(), S_OK);
  EXPECT_EQ(Values(HKEY_LOCAL_MACHINE, kRunKey, OwnView()), std::vector<std::wstring>{});
  EXPECT_EQ(item.GetIndex(), -1);
  Read();
  EXPECT_FALSE(Find(kCommonRun, moved));
  EXPECT_FALSE(FindUserRun(kName));
}

TEST_F(ChangeTest, AddingAKnownNameAnswersItsPositionAndOverwritesNothing) {
  SetUserRun(kName, L"C:\\first.exe");
  Read();
  const std::int32_t index = FindUserRun(kName).GetIndex();
  EXPECT_EQ(items.AddItem(kUserRun, kName.c_str(), L"C:\\second.exe"), index);
  EXPECT_EQ(items.AddItem(kUserRun, L"BOUNDARY entry", L"C:\\second.exe"), index);
  EXPECT_EQ(User(kRunKey), Sz(L"C:\\first.exe"));
  EXPECT_FALSE(TakeErrorInfo().has_value());
}

TEST_F(ChangeTest, AFailedChangeIsExplainedAndLogged) {
  SetValue(HKEY_LOCAL_MACHINE, kRunKey, kName, Sz(L"C:\\first.exe"), OwnView());
  Read();
  const RawItem item = Find(kCommonRun, kName);
  ASSERT_TRUE(item);
  // Vanishes before the reader can see it.
  ASSERT_EQ(items.Stop(), S_OK);
  RemoveValue(HKEY_LOCAL_MACHINE, kRunKey, kName, OwnView());
  const std::wstring name = item.Name();
  const HRESULT result = item.Disable();
  EXPECT_TRUE(FAILED(result));
  EXPECT_TRUE(IsExplained(result, result));
  EXPECT_EQ(Common(kDisabledKey), std::nullopt);
  Read();
  ASSERT_EQ(items.Stop(), S_OK);
  EXPECT_TRUE(LogHasLine(L"Error disable item \"" + name + L"\" in location \"sulRegistryCommonRun\"."));
}

}  // namespace
}  // namespace smh::test
