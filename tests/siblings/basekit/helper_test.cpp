#include "core/contracts/intf_general.h"
#include "infra/runtime/text.h"
#include "tests/siblings/common/sibling_library.h"

#include <gtest/gtest.h>
#include <shlobj.h>

namespace smh::test {
namespace {

// Every slot is called by its position.
class HelperTest : public testing::Test {
 protected:
  template <typename... Arguments>
  std::wstring Text(IUnknown* service, std::size_t slot, Arguments... arguments) {
    BoundaryString text;
    EXPECT_EQ((CallSlot<HRESULT>(service, slot, arguments..., text.Put())), S_OK);
    return text.Text();
  }

  SiblingLibrary basekit_{L"basekit.dll"};
  IHelper* helper_ = basekit_.Service<IHelper>();
  IGlobals* globals_ = basekit_.Service<IGlobals>();
  IShellHelper* shell_ = basekit_.Service<IShellHelper>();
  IShellDialogsHelper* dialogs_ = basekit_.Service<IShellDialogsHelper>();
};

TEST_F(HelperTest, FoldersNamesAndTexts) {
  wchar_t data[MAX_PATH];
  ASSERT_EQ(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, data), S_OK);
  EXPECT_TRUE(SameText(Text(helper_, 1), L"C:\\windows"));
  EXPECT_TRUE(SameText(Text(helper_, 2), L"C:\\windows\\system32"));
  EXPECT_EQ(Text(helper_, 3, L"C:\\x.y\\my.app.exe"), L"my.app");
  EXPECT_EQ(Text(helper_, 4, L"C:\\a\\..\\b"), L"C:\\b");
  EXPECT_TRUE(StartsText(L".com;.exe;.bat;.cmd", Text(helper_, 5))) << Text(helper_, 5);
  EXPECT_EQ(Text(helper_, 6), data);
  BoundaryString file;
  std::int32_t number = 1;
  EXPECT_EQ((CallSlot<HRESULT>(helper_, 10, L"%windir%\\a.dll,-7", file.Put(), &number)), S_OK);
  EXPECT_TRUE(SameText(file.View(), L"C:\\windows\\a.dll"));
  EXPECT_EQ(number, -7);
  EXPECT_TRUE(SameText(Text(helper_, 11, L"%windir%"), L"C:\\windows"));

  EXPECT_EQ(Text(shell_, 1, std::int32_t{CSIDL_APPDATA}, 0u), data);
  EXPECT_EQ(Text(shell_, 1, std::int32_t{CSIDL_CONTROLS}, 0u), L"");
  EXPECT_EQ(Text(shell_, 2, L"\"C:\\a b.exe\" -x"), L"C:\\a b.exe");
  EXPECT_TRUE(SameText(Text(shell_, 3, L" %windir% "), L" C:\\windows "));
  EXPECT_TRUE(SameText(Text(shell_, 4, L" \"%windir%\\a.exe\" -x "), L"\"C:\\windows\\a.exe\" -x"));
}

TEST_F(HelperTest, VersionsTimesUserAndProduct) {
  const std::wstring sample = ThisFolder() + L"version_sample.exe";
  EXPECT_EQ(Text(helper_, 7, sample.c_str(), L"CompanyName"), L"Sample Works Ltd.");
  EXPECT_EQ(Text(helper_, 8, sample.c_str()), L"3.14.159.26535");
  const wchar_t* const names[] = {L"CompanyName", nullptr, L"Nothing"};
  const wchar_t* texts[3] = {names[0], names[0], names[0]};
  ASSERT_EQ((CallSlot<HRESULT>(helper_, 14, sample.c_str(), &names[0], 3u, &texts[0])), S_OK);
  EXPECT_EQ(BoundaryTextView(texts[0]), L"Sample Works Ltd.");
  EXPECT_EQ(BoundaryTextView(texts[1]), L"3.14.159.26535");
  EXPECT_EQ(texts[2], nullptr);
  for (const wchar_t* const text : texts) ReleaseBoundaryText(text);
  const FILETIME noon2000 = {0xBAA22000, 0x01BF544F};
  double date = 0;
  EXPECT_EQ((CallSlot<HRESULT>(helper_, 9, &noon2000, &date)), S_OK);
  EXPECT_NEAR(date, 36526.5, 0.6);
  const FILETIME impossible = {0, 0x80000000};
  EXPECT_TRUE(FAILED((CallSlot<HRESULT>(helper_, 9, &impossible, &date))));
  EXPECT_EQ(date, 0);
  wchar_t user[257];
  DWORD size = 257;
  ASSERT_TRUE(GetUserNameW(user, &size));
  EXPECT_TRUE(EndsText(user, Text(helper_, 12)));
  EXPECT_EQ(CallSlot<BOOL>(helper_, 13), IsUserAnAdmin());

  EXPECT_EQ(Text(globals_, 2), L"Quillmark");
  EXPECT_EQ(Text(globals_, 3), L"Startup Manager");
  EXPECT_EQ(Text(globals_, 4), Text(helper_, 8, (ThisFolder() + L"basekit.dll").c_str()));
  EXPECT_NE(Text(globals_, 4), L"");
}

TEST_F(HelperTest, NullArgumentsAreEmptyTextsOrRefused) {
  const wchar_t* const none = nullptr;
  for (const std::size_t slot : {3u, 4u, 8u, 11u}) EXPECT_EQ(Text(helper_, slot, none), L"") << slot;
  EXPECT_EQ(Text(helper_, 7, none, none), L"");
  for (const std::size_t slot : {2u, 3u, 4u}) EXPECT_EQ(Text(shell_, slot, none), L"") << slot;
  EXPECT_EQ((CallSlot<HRESULT>(dialogs_, 2, HWND{}, L"C:\\missing.exe", L"", std::int32_t{0})),
            HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  EXPECT_TRUE(FAILED((CallSlot<HRESULT>(dialogs_, 2, HWND{}, none, L"", std::int32_t{0}))));

  double date = 0;
  std::int32_t number = 0;
  EXPECT_EQ(helper_->GetWindowsFolder(nullptr), E_POINTER);
  EXPECT_EQ(helper_->GetVersionString(L"", L"", nullptr), E_POINTER);
  EXPECT_EQ(helper_->FileTimeToDateTime(nullptr, &date), E_POINTER);
  EXPECT_EQ(helper_->SplitIndirectString(L"a,1", nullptr, &number), E_POINTER);
  EXPECT_EQ(globals_->GetVendorName(nullptr), E_POINTER);
  EXPECT_EQ(shell_->GetProgramPart(L"a", nullptr), E_POINTER);
}

}  // namespace
}  // namespace smh::test
