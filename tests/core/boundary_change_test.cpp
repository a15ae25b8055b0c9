#include "core/boundary_fixture.h"

#include <algorithm>

namespace smh::test {
namespace {

class ChangeTest : public BoundaryTest {
 protected:
  inline static const std::wstring kName = L"Boundary entry";
};

// What changes do to the registry is tested with the locations and with startupctl.
TEST_F(ChangeTest, ChangesShowInTheListAtOnce) {
  const SampleProgram sample;
  Read();
  const std::int32_t index = items.AddItem(kUserRun, kName.c_str(), sample.Path().c_str());
  ASSERT_GE(index, 0);
  EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kRunKey, kName), Sz(sample.Path()));
  RawItem item = FindUserRun(kName);
  EXPECT_EQ(item.GetIndex(), index);
  ASSERT_EQ(item.Disable(), S_OK);
  EXPECT_EQ(OutVariant(item, 1)->boolVal, VARIANT_FALSE);
  EXPECT_EQ(item.Name(), OwnViewPrefix() + L"HKEY_CURRENT_USER\\" + kRunSide + L"\\" + kName);
  ASSERT_EQ(item.Enable(), S_OK);
  EXPECT_EQ(OutVariant(item, 1)->boolVal, VARIANT_TRUE);
  ASSERT_EQ(item.ChangeCommand(sample.Quoted().c_str()), S_OK);
  item = FindUserRun(kName);
  EXPECT_EQ(item.PropertyText(4), sample.Quoted());
  ASSERT_EQ(item.MoveTo(kCommonRun), S_OK);
  EXPECT_FALSE(FindUserRun(kName));
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
  EXPECT_EQ(std::ranges::count(ReadUtf16Lines(LogFile()),
                               L"Error disable item \"" + name + L"\" in location \"sulRegistryCommonRun\"."),
            1);
}

}  // namespace
}  // namespace smh::test
