#include "core/boundary_fixture.h"

#include <thread>

namespace smh::test {
namespace {

class ExecuteTest : public BoundaryTest {
 protected:
  const SampleProgram sample;
};

// Empty while the file cannot be read.
std::string FileText(const std::wstring& file) {
  if (GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES) return {};
  return ReadFileBytes(file);
}

// Waits for this process's message box and closes it as its user would; keeps what it said.
class BoxCloser {
 public:
  BoxCloser() : thread_([this] { Run(); }) {}
  ~BoxCloser() {
    if (thread_.joinable()) thread_.join();
  }

  bool SawBox() {
    thread_.join();
    return seen_;
  }
  const std::wstring& Caption() const noexcept { return caption_; }

 private:
  void Run() {
    seen_ = WaitUntil([this] {
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

  bool seen_ = false;
  std::wstring caption_;
  std::thread thread_;
};

TEST_F(ExecuteTest, StartsTheProgramWithItsArguments) {
  const std::wstring marker = sample.Folder().File(L"marker.txt");
  SetUserRun(L"Sample", sample.Quoted() + L" " + marker + L" \"two words\" last");
  Read();
  const RawItem item = FindUserRun(L"Sample");
  ASSERT_TRUE(item);
  EXPECT_EQ(item.Execute(nullptr), S_OK);
  EXPECT_TRUE(WaitUntil([&] { return FileText(marker) == "two words\nlast\n"; }));
}

TEST_F(ExecuteTest, FailureIsShownLoggedAndReturned) {
  const std::wstring command = L"\"C:\\no such folder\\gone.exe\" /x";
  SetUserRun(L"Missing", command);
  Read();
  const RawItem item = FindUserRun(L"Missing");
  ASSERT_TRUE(item);
  BoxCloser closer;
  const HRESULT result = item.Execute(nullptr);
  const std::optional<ErrorInfo> info = TakeErrorInfo();
  ASSERT_TRUE(closer.SawBox());
  EXPECT_EQ(closer.Caption(), L"Quillmark Startup Manager");
  EXPECT_TRUE(result == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND) ||
              result == HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND))
      << std::hex << result;
  ASSERT_TRUE(info.has_value());
  EXPECT_EQ(info->source, L"EOSError");

  // The reader saves the log when it ends.
  const std::wstring name = item.Name();
  ASSERT_EQ(items.Stop(), S_OK);
  const std::wstring begin =
      L"Error execute command for item \"" + name + L"\". Command: \"" + command + L"\". Error: \"";
  bool logged = false;
  for (const std::wstring& line : LogLines()) {
    if (!line.starts_with(begin)) continue;
    logged = true;
    EXPECT_GT(line.size(), begin.size() + 2);
    EXPECT_TRUE(line.ends_with(L"\"."));
  }
  EXPECT_TRUE(logged);
}

}  // namespace
}  // namespace smh::test
