#include "tests/core/boundary_fixture.h"

#include <algorithm>
#include <thread>

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
  for (const wchar_t* const none : {static_cast<const wchar_t*>(nullptr), L""}) {
    EXPECT_EQ(item.ChangeCommand(none), E_INVALIDARG);
    EXPECT_EQ(TakeErrorInfo().value_or(ErrorInfo()).description, L"The command is empty.");
  }
  ASSERT_EQ(item.ChangeCommand(sample.Quoted().c_str()), S_OK);
  item = FindUserRun(kName);
  EXPECT_EQ(item.PropertyText(4), sample.Quoted());
  ASSERT_EQ(item.MoveTo(kCommonRun), S_OK);
  EXPECT_FALSE(FindUserRun(kName));
  EXPECT_FALSE(TakeErrorInfo().has_value());
}

// Waits for a message box of this process and closes it as its user would.
class BoxCloser {
 public:
  // Of the box that was closed; empty when none came.
  std::wstring Caption() {
    thread_.join();
    return caption_;
  }

 private:
  void Run() {
    WaitUntil([this] {
      HWND box = nullptr;
      EnumWindows(&TakeOwnDialog, reinterpret_cast<LPARAM>(&box));
      if (box == nullptr) return false;
      wchar_t text[256];
      caption_.assign(text, static_cast<std::size_t>(GetWindowTextW(box, text, 256)));
      return PostMessageW(box, WM_CLOSE, 0, 0) != FALSE;
    });
  }

  static BOOL CALLBACK TakeOwnDialog(HWND window, LPARAM result) {
    DWORD process = 0;
    wchar_t className[16];
    GetWindowThreadProcessId(window, &process);
    GetClassNameW(window, className, 16);
    if (process != GetCurrentProcessId() || !IsWindowVisible(window) || wcscmp(className, L"#32770") != 0)
      return TRUE;
    *reinterpret_cast<HWND*>(result) = window;
    return FALSE;
  }

  std::wstring caption_;
  std::thread thread_{[this] { Run(); }};
};

// A start that works is tested with startupctl.
TEST_F(ChangeTest, AFailedStartIsShownLoggedAndReturned) {
  const std::wstring command = L"\"C:\\no such folder\\gone.exe\" /x";
  SetUserRun(L"Missing", command);
  Read();
  const RawItem item = FindUserRun(L"Missing");
  BoxCloser closer;
  const HRESULT result = item.Execute(nullptr);
  const std::optional<ErrorInfo> info = TakeErrorInfo();
  EXPECT_EQ(closer.Caption(), L"Quillmark Startup Manager");
  EXPECT_TRUE(result == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND) ||
              result == HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND))
      << std::hex << result;
  ASSERT_TRUE(info.has_value());
  EXPECT_EQ(info->source, L"EOSError");
  // The reader saves the log when it ends.
  const std::wstring begin =
      L"Error execute command for item \"" + item.Name() + L"\". Command: \"" + command + L"\". Error: \"";
  ASSERT_EQ(items.Stop(), S_OK);
  const std::vector<std::wstring> lines = ReadUtf16Lines(LogFile());
  EXPECT_TRUE(std::ranges::any_of(lines, [&](const std::wstring& line) {
    return line.size() > begin.size() + 2 && line.starts_with(begin) && line.ends_with(L"\".");
  }));
}

// The host's current folder is no place to start from.
TEST_F(ChangeTest, AProgramThatOnlyStandsBesideTheHostIsNotStarted) {
  const std::wstring here = *FullPathOf(L"smh-here.exe");
  const std::wstring deeper = *FullPathOf(L"smh-in\\smh-here.exe");
  CreateDirectoryW(L"smh-in", nullptr);
  for (const std::wstring& file : {here, deeper}) {
    ASSERT_TRUE(CopyFileW(L"C:\\windows\\system32\\hostname.exe", file.c_str(), FALSE));
  }
  SetUserRun(L"Bare", L"smh-here.exe");
  SetUserRun(L"Deeper", L"smh-in\\smh-here.exe");
  Read();
  for (const wchar_t* const name : {L"Bare", L"Deeper"}) {
    BoxCloser closer;
    EXPECT_NE(FindUserRun(name).Execute(nullptr), S_OK) << name;
    closer.Caption();
  }
  for (const std::wstring& file : {here, deeper}) DeleteFileW(file.c_str());
  RemoveDirectoryW(L"smh-in");
}

}  // namespace
}  // namespace smh::test
