#include "infra/intf_general.h"

#include "infra/exceptions.h"
#include "infra/text.h"
#include "siblings/sibling_library.h"
#include "support/child_process.h"
#include "support/file_fixture.h"

#include <gtest/gtest.h>
#include <shlobj.h>

namespace smh {
namespace {

using test::CallSlot;

// Every slot is called by its position.
class HelperTest : public testing::Test {
 protected:
  template <typename... Arguments>
  std::wstring Text(IUnknown* service, std::size_t slot, Arguments... arguments) {
    BoundaryString text;
    EXPECT_EQ((CallSlot<HRESULT>(service, slot, arguments..., text.Put())), S_OK);
    return text.Text();
  }

  test::SiblingLibrary basekit_{L"basekit.dll"};
  IHelper* helper_ = basekit_.Service<IHelper>();
  IGlobals* globals_ = basekit_.Service<IGlobals>();
  IShellHelper* shell_ = basekit_.Service<IShellHelper>();
  IShellDialogsHelper* dialogs_ = basekit_.Service<IShellDialogsHelper>();
};

TEST_F(HelperTest, FoldersHaveNoTrailingBackslash) {
  EXPECT_TRUE(SameText(Text(helper_, 1), L"C:\\windows"));
  EXPECT_TRUE(SameText(Text(helper_, 2), L"C:\\windows\\system32"));
  wchar_t data[MAX_PATH];
  ASSERT_EQ(SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, data), S_OK);
  EXPECT_EQ(Text(helper_, 6), data);
  EXPECT_EQ(Text(shell_, 1, std::int32_t{CSIDL_APPDATA}, 0u), data);
  EXPECT_EQ(Text(shell_, 1, std::int32_t{CSIDL_CONTROLS}, 0u), L"");
  EXPECT_EQ(Text(shell_, 1, std::int32_t{0xFF}, 0u), L"");
}

TEST_F(HelperTest, NamesAndTextsAreTakenApart) {
  EXPECT_EQ(Text(helper_, 3, L"C:\\x.y\\my.app.exe"), L"my.app");
  EXPECT_EQ(Text(helper_, 3, L"app"), L"app");
  EXPECT_EQ(Text(helper_, 4, L"C:\\a\\..\\b"), L"C:\\b");
  const std::wstring extensions = L";" + Text(helper_, 5) + L";";
  for (const wchar_t* const extension : {L";.com;", L";.exe;", L";.bat;", L";.cmd;"}) {
    EXPECT_NE(extensions.find(extension), std::wstring::npos) << extension;
  }
  BoundaryString file;
  std::int32_t number = 1;
  EXPECT_EQ((CallSlot<HRESULT>(helper_, 10, L"%windir%\\a.dll,-7", file.Put(), &number)), S_OK);
  EXPECT_TRUE(SameText(file.View(), L"C:\\windows\\a.dll"));
  EXPECT_EQ(number, -7);
  EXPECT_TRUE(SameText(Text(helper_, 11, L"%windir%"), L"C:\\windows"));
  EXPECT_TRUE(SameText(Text(shell_, 3, L" %windir% "), L" C:\\windows "));
  EXPECT_TRUE(SameText(Text(shell_, 4, L" \"%windir%\\a.exe\" -x "), L"\"C:\\windows\\a.exe\" -x"));
  EXPECT_EQ(Text(shell_, 2, L"\"C:\\a b.exe\" -x"), L"C:\\a b.exe");
}

TEST_F(HelperTest, VersionsTimesAndUser) {
  const std::wstring sample = test::ThisFolder() + L"version_sample.exe";
  EXPECT_EQ(Text(helper_, 7, sample.c_str(), L"CompanyName"), L"Sample Works Ltd.");
  EXPECT_EQ(Text(helper_, 8, sample.c_str()), L"3.14.159.26535");
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
}

TEST_F(HelperTest, GlobalsNameTheProduct) {
  EXPECT_EQ(CallSlot<HRESULT>(globals_, 1), E_NOTIMPL);
  EXPECT_EQ(Text(globals_, 2), L"Quillmark");
  EXPECT_EQ(Text(globals_, 3), L"Startup Manager");
  EXPECT_EQ(Text(globals_, 4), Text(helper_, 8, (test::ThisFolder() + L"basekit.dll").c_str()));
  EXPECT_NE(Text(globals_, 4), L"");
}

TEST_F(HelperTest, FileDetailsNeedAFile) {
  EXPECT_EQ(CallSlot<HRESULT>(dialogs_, 1), S_OK);
  const test::TemporaryFolder folder;
  const std::wstring missing = folder.File(L"missing.exe");
  EXPECT_EQ((CallSlot<HRESULT>(dialogs_, 2, HWND{}, missing.c_str(), L"", std::int32_t{0})),
            HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  EXPECT_TRUE(FAILED(
      (CallSlot<HRESULT>(dialogs_, 2, HWND{}, static_cast<const wchar_t*>(nullptr), L"", std::int32_t{0}))));
}

TEST_F(HelperTest, NullArgumentsAreEmptyTextsOrRefused) {
  const wchar_t* const none = nullptr;
  EXPECT_EQ(Text(helper_, 3, none), L"");
  EXPECT_EQ(Text(helper_, 4, none), L"");
  EXPECT_EQ(Text(helper_, 7, none, none), L"");
  EXPECT_EQ(Text(helper_, 8, none), L"");
  EXPECT_EQ(Text(helper_, 11, none), L"");
  EXPECT_EQ(Text(shell_, 2, none), L"");
  EXPECT_EQ(Text(shell_, 4, none), L"");

  EXPECT_EQ(helper_->GetWindowsFolder(nullptr), E_POINTER);
  EXPECT_EQ(helper_->GetVersionString(L"", L"", nullptr), E_POINTER);
  EXPECT_EQ(helper_->GetCurrentUserText(nullptr), E_POINTER);
  double date = 0;
  const FILETIME time = {};
  EXPECT_EQ(helper_->FileTimeToDateTime(nullptr, &date), E_POINTER);
  EXPECT_EQ(helper_->FileTimeToDateTime(&time, nullptr), E_POINTER);
  BoundaryString file;
  std::int32_t number = 0;
  EXPECT_EQ(helper_->SplitIndirectString(L"a,1", nullptr, &number), E_POINTER);
  EXPECT_EQ(helper_->SplitIndirectString(L"a,1", file.Put(), nullptr), E_POINTER);
  EXPECT_EQ(globals_->GetVendorName(nullptr), E_POINTER);
  EXPECT_EQ(shell_->GetProgramPart(L"a", nullptr), E_POINTER);
  EXPECT_EQ(shell_->GetSpecialFolder(CSIDL_APPDATA, 0, nullptr), E_POINTER);
}

TEST_F(HelperTest, LongTextsCrossTheBoundaryWhole) {
  const std::wstring text(40'000, L't');
  EXPECT_EQ(Text(shell_, 3, text.c_str()), text);
  EXPECT_EQ(Text(shell_, 2, text.c_str()), text);
  EXPECT_EQ(Text(helper_, 3, text.c_str()), text);
}

}  // namespace
}  // namespace smh
