#include "tests/core/boundary_fixture.h"

#include <oleauto.h>

#include <functional>
#include <limits>

namespace smh::test {
namespace {

constexpr wchar_t kUnit[] = L"uStartupItemIntf";
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();

class ItemTest : public BoundaryTest {
 protected:
  const SampleProgram sample;
};

// What every query of a wrapper without item answers, and that every operation does nothing.
void ExpectNoItem(const RawItem& item) {
  EXPECT_EQ(item.GetIndex(), -1);
  EXPECT_EQ(item.GetLocation(), 0u);
  EXPECT_EQ(item.ReadChanged(), 1u);
  EXPECT_EQ(item.ReadChanged(), 1u);
  EXPECT_EQ(item.GetImageIndex(), -1);
  OutText name;
  EXPECT_EQ(item.GetName(name.Put()), S_OK);
  EXPECT_EQ(name.Get(), nullptr);
  for (const std::int32_t index : {0, 1, 3, 26, 27, -1}) {
    EXPECT_EQ(OutVariant(item, index).Type(), VT_NULL) << index;
  }
  for (std::int32_t action = -1; action <= 8; ++action) EXPECT_EQ(item.CanDo(action), 0u) << action;
  for (const std::int32_t location : {0, kUserRun, kCommonRun, -1}) EXPECT_EQ(item.CanMoveTo(location), 0u);
  const std::function<HRESULT()> operations[] = {
      [&] { return item.Delete(); },
      [&] { return item.Enable(); },
      [&] { return item.Disable(); },
      [&] { return item.MoveTo(kCommonRun); },
      [&] { return item.MoveTo(kNoLocation); },
      [&] { return item.ChangeCommand(nullptr); },
      [&] { return item.Execute(nullptr); },
      [&] { return item.ShowFileDetails(nullptr); },
      [&] { return item.ShowLocation(); },
  };
  for (const auto& operation : operations) {
    EXPECT_EQ(operation(), S_FALSE);
    EXPECT_EQ(TakeErrorInfo().value_or(ErrorInfo()).description, L"the entry has gone");
  }
}

TEST_F(ItemTest, WrapperIsNeutralWithoutItemAndOnceItsItemIsGone) {
  SetUserRun(L"Deleted", sample.Path());
  SetUserRun(L"Vanished", sample.Path());
  Read();
  ExpectNoItem(NoItem());
  const RawItem deleted = FindUserRun(L"Deleted");
  const RawItem vanished = FindUserRun(L"Vanished");
  ASSERT_EQ(FindUserRun(L"Deleted").Delete(), S_OK);
  ExpectNoItem(deleted);
  EXPECT_EQ(vanished.GetIndex(), 0);
  RemoveValue(HKEY_CURRENT_USER, kRunKey, L"Vanished");
  EXPECT_TRUE(WaitUntil([&] { return vanished.GetIndex() == -1; }));
  ExpectNoItem(vanished);
}

TEST_F(ItemTest, PropertiesHaveFixedTypes) {
  constexpr VARTYPE kTypes[] = {VT_I4,   VT_BOOL, VT_BOOL, VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR,
                                VT_I4,   VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR,
                                VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR,
                                VT_I8,   VT_DATE, VT_DATE, VT_DATE, VT_BSTR, VT_I4};
  static_assert(std::size(kTypes) == 27);
  SetUserRun(L"Sample", sample.Path());
  SetValue(HKEY_CURRENT_USER, kRunKey, L"Number", Dword(7));
  Read();
  for (const wchar_t* caption : {L"Sample", L"Number"}) {
    const RawItem item = FindUserRun(caption);
    for (std::int32_t index = 0; index < 27; ++index) {
      EXPECT_EQ(OutVariant(item, index).Type(), kTypes[index]) << index;
    }
    for (const std::int32_t index : {-1, 27, kLargest, kSmallest}) {
      EXPECT_EQ(OutVariant(item, index).Type(), VT_NULL) << index;
    }
  }
}

// A file time as the property shows it: local time as an OLE date.
double LocalDate(const FILETIME& time) {
  FILETIME local;
  SYSTEMTIME parts;
  double date = 0;
  FileTimeToLocalFileTime(&time, &local);
  FileTimeToSystemTime(&local, &parts);
  SystemTimeToVariantTime(&parts, &date);
  return date;
}

TEST_F(ItemTest, PropertiesTellTheEntryItsFileAndTheVersionRecord) {
  const SYSTEMTIME written = {2005, 7, 0, 14, 15, 16, 17, 0};
  FILETIME time;
  SystemTimeToFileTime(&written, &time);
  const ScopedHandle file(CreateFileW(sample.Path().c_str(), FILE_WRITE_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                      nullptr));
  ASSERT_TRUE(SetFileTime(file.Get(), nullptr, nullptr, &time));
  const std::wstring command = sample.Quoted() + L" /quiet";
  SetUserRun(L"Sample", command);
  Read();
  const RawItem item = FindUserRun(L"Sample");
  EXPECT_EQ(item.GetLocation(), 5u);
  OutText name;
  EXPECT_EQ(item.GetName(name.Put()), S_OK);
  EXPECT_TRUE(name.IsWellFormed());
  EXPECT_EQ(name.Text(), OwnViewPrefix() + L"HKEY_CURRENT_USER\\" + kRunKey + L"\\Sample");
  // From property 3 on; 7 is a number.
  const std::wstring texts[] = {L"Sample",
                                command,
                                L"Boundary sample program",
                                sample.Folder().Path(),
                                L"",
                                L"Boundary Suite",
                                L"Made for the tests",
                                L"7.8.9.10",
                                L"bsample",
                                L"bsample-original.exe",
                                L"2.0 product",
                                L"7.8 file",
                                L"2.0 product",
                                L"private seven",
                                L"special eight",
                                L"Quillmark",
                                L"(c) the copyright holder",
                                L"the trade marks"};
  for (std::int32_t i = 0; i < 18; ++i) EXPECT_EQ(item.PropertyText(3 + i), texts[i]) << i;
  EXPECT_NE(item.PropertyText(25), L"");

  WIN32_FIND_DATAW facts;
  const ScopedFind find(FindFirstFileW(sample.Path().c_str(), &facts));
  ASSERT_TRUE(find);
  EXPECT_EQ(OutVariant(item, 0)->lVal, kUserRun);
  EXPECT_EQ(OutVariant(item, 1)->boolVal, VARIANT_TRUE);
  EXPECT_EQ(OutVariant(item, 2)->boolVal, VARIANT_TRUE);
  EXPECT_EQ(OutVariant(item, 7)->lVal, 0);
  EXPECT_EQ(OutVariant(item, 21)->llVal, std::int64_t{facts.nFileSizeLow});
  // By the company in its version record.
  EXPECT_EQ(OutVariant(item, 26)->lVal, 0);
  constexpr double kSeconds = 10.0 / 86'400;
  EXPECT_NEAR(OutVariant(item, 22)->date, LocalDate(facts.ftCreationTime), kSeconds);
  EXPECT_NEAR(OutVariant(item, 23)->date, LocalDate(facts.ftLastAccessTime), kSeconds);
  EXPECT_NEAR(OutVariant(item, 24)->date, LocalDate(time), kSeconds);
}

// Entries in the states that the actions tell apart.
class ActionTest : public ItemTest {
 protected:
  ActionTest() {
    SetUserRun(L"Sample", sample.Quoted() + L" /x");
    SetUserRun(L"Missing", L"\"C:\\no such folder\\gone.exe\" /x");
    SetUserRun(L"Text", sample.Folder().Write(L"readme.txt", "text"));
    SetValue(HKEY_CURRENT_USER, kRunKey, L"Number", Dword(7));
    SetValue(HKEY_CURRENT_USER, kRunKey + kAutorunsSide, L"Parked", Sz(sample.Path()));
    SetValue(HKEY_LOCAL_MACHINE, kRunOnceKey, L"Locked", Sz(sample.Path()), OwnView());
    limited_.emplace(HKEY_LOCAL_MACHINE, kRunOnceKey, LimitedKey::Rights::kReadOnly, OwnView());
    Read();
  }

 private:
  std::optional<LimitedKey> limited_;
};

TEST_F(ActionTest, EachStateAllowsItsActions) {
  const struct {
    std::int32_t location;
    const wchar_t* caption;
    // By action, from 0.
    const char* can;
  } cases[] = {
      {kUserRun, L"Sample", "10111111"}, {kUserRun, L"Missing", "10111101"},
      {kUserRun, L"Text", "10111011"},   {kUserRun, L"Number", "10111001"},
      {kUserRun, L"Parked", "11011111"}, {kCommonRunOnce, L"Locked", "00000111"},
  };
  for (const auto& row : cases) {
    const RawItem item = Find(row.location, row.caption);
    std::string can;
    for (std::int32_t action = 0; action < 8; ++action) can += std::to_string(item.CanDo(action));
    EXPECT_EQ(can, row.can) << row.caption;
    for (const std::int32_t action : {-1, 8, 256, kLargest, kSmallest}) EXPECT_EQ(item.CanDo(action), 0u);
  }
  const RawItem item = FindUserRun(L"Sample");
  EXPECT_EQ(item.CanMoveTo(kUserRun), 1u);
  EXPECT_EQ(item.CanMoveTo(kCommonRun), 1u);
  // It starts the same file as the entry there.
  EXPECT_EQ(item.CanMoveTo(kCommonRunOnce), 0u);
  for (const std::int32_t location : {0, -1, 100, 256 + kCommonRun, kLargest, kSmallest}) {
    EXPECT_EQ(item.CanMoveTo(location), 0u) << location;
  }
}

TEST_F(ActionTest, ForbiddenCallsFailAndChangeNothing) {
  const auto names = [] {
    std::vector<std::vector<std::wstring>> lists;
    for (const std::wstring& key : {kRunKey, kRunOnceKey, kRunKey + kAutorunsSide, kRunSide}) {
      lists.push_back(Values(HKEY_CURRENT_USER, key));
      lists.push_back(Values(HKEY_LOCAL_MACHINE, key, OwnView()));
    }
    return lists;
  };
  const auto before = names();
  const RawItem sampleItem = FindUserRun(L"Sample");
  const RawItem locked = Find(kCommonRunOnce, L"Locked");
  EXPECT_TRUE(IsAssertion(sampleItem.Enable(), kUnit));
  EXPECT_TRUE(IsAssertion(FindUserRun(L"Parked").Disable(), kUnit));
  EXPECT_TRUE(IsAssertion(locked.Delete(), kUnit));
  EXPECT_TRUE(IsAssertion(locked.MoveTo(kUserRun), kUnit));
  EXPECT_TRUE(IsAssertion(locked.ChangeCommand(L"a.exe"), kUnit));
  EXPECT_TRUE(IsAssertion(FindUserRun(L"Number").Execute(nullptr), kUnit));
  EXPECT_TRUE(IsAssertion(FindUserRun(L"Missing").ShowFileDetails(nullptr), kUnit));
  EXPECT_TRUE(IsAssertion(sampleItem.MoveTo(kNoLocation), kUnit));
  for (const std::int32_t location : {-1, 100, 256 + kCommonRun, kLargest, kSmallest}) {
    EXPECT_TRUE(IsAssertion(sampleItem.MoveTo(location), L"uLocationStartup")) << location;
  }
  EXPECT_EQ(sampleItem.MoveTo(kUserRun), S_OK);
  EXPECT_EQ(names(), before);
  EXPECT_NE(sampleItem.GetIndex(), -1);
}

}  // namespace
}  // namespace smh::test
