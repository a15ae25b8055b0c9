#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"
#include "sysutil/uRegEditUtils.h"
#include "sysutil/windows/uWindowTopHelper.h"
#include "tests/display/display_support.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/test_main.h"
#include "tests/support/waiting.h"

#include <aclapi.h>
#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <stdexcept>
#include <thread>

namespace smh::test {

namespace {

constexpr DWORD kPlain = WS_OVERLAPPEDWINDOW;
constexpr DWORD kShown = kPlain | WS_VISIBLE;

const TWindowTopItem* FindItem(const TWindowTopCollection& windows, std::wstring_view caption) {
  for (const TWindowTopItem& item : windows.Items()) {
    if (item.Caption == caption) return &item;
  }
  return nullptr;
}

// Shows a window of the caption, style and extended style until it is ended.
SMH_CHILD(ShowWindowUntilEnded) {
  const TestWindow window(arguments.at(0), std::stoul(arguments.at(1)), std::stoul(arguments.at(2)));
  if (arguments.size() > 3) {
    // Nobody may open this process any more.
    ACL none = {};
    InitializeAcl(&none, sizeof(none), ACL_REVISION);
    SetSecurityInfo(GetCurrentProcess(), SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &none,
                    nullptr);
    SetWindowTextW(window.Get(), arguments.at(3).c_str());
  }
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) DispatchMessageW(&message);
  return 0;
}

// This program under another name, with a window.
class OtherProgram {
 public:
  OtherProgram(const std::wstring& file, const std::wstring& caption, DWORD style, DWORD exStyle = 0,
               const std::wstring& lockedCaption = {}) {
    CopyFileW(ThisProgram().c_str(), folder_.File(file).c_str(), TRUE);
    std::vector<std::wstring> arguments = {L"--child=ShowWindowUntilEnded", caption, std::to_wstring(style),
                                           std::to_wstring(exStyle)};
    if (!lockedCaption.empty()) arguments.push_back(lockedCaption);
    process_.emplace(folder_.File(file), arguments);
    const std::wstring& last = lockedCaption.empty() ? caption : lockedCaption;
    if (!WaitUntil([&] { return FindWindowW(L"STATIC", last.c_str()) != nullptr; })) {
      throw std::runtime_error("the window does not come");
    }
  }
  DWORD Id() const noexcept { return process_->Id(); }

 private:
  TemporaryFolder folder_;
  std::optional<ChildProcess> process_;
};

TEST(WindowTopCollection, KindsOfWindows) {
  const TestWindow owner(L"T owner", kShown);
  const struct {
    const wchar_t* caption;
    DWORD style, exStyle;
    bool owned, icon, listed;
  } rows[] = {
      {L"T plain", kShown, 0, false, false, true},
      {L"T icon", kShown, 0, false, true, true},
      {L"T hidden", kPlain, 0, false, false, false},
      {L"T hidden icon", kPlain, 0, false, true, true},
      {L"T owned", kShown, 0, true, true, false},
      {L"T no menu", WS_POPUP | WS_VISIBLE, 0, false, true, false},
      {L"T tool", kShown, WS_EX_TOOLWINDOW, false, true, false},
  };
  std::deque<TestWindow> windows;
  for (const auto& row : rows) {
    windows.emplace_back(row.caption, row.style, row.exStyle, row.owned ? owner.Get() : nullptr);
    if (row.icon) windows.back().SetIcon(LoadIconW(nullptr, IDI_APPLICATION));
  }
  const TestWindow untitled(L"", kShown);
  const TWindowTopCollection collection(nullptr);
  int images = 0;
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const TWindowTopItem* const item = FindItem(collection, rows[i].caption);
    ASSERT_EQ(item != nullptr, rows[i].listed) << rows[i].caption;
    if (item == nullptr) continue;
    EXPECT_EQ(item->Handle, windows[i].Get());
    EXPECT_EQ(item->ProcessId, GetCurrentProcessId());
    EXPECT_TRUE(SameText(item->FileName, FileNamePart(ThisProgram())));
    EXPECT_EQ(item->ImageIndex >= 0, rows[i].icon) << rows[i].caption;
    images += rows[i].icon;
  }
  EXPECT_EQ(ImageList_GetImageCount(collection.Images()), images);
  for (const TWindowTopItem& item : collection.Items()) EXPECT_NE(item.Handle, untitled.Get());
}

TEST(WindowTopCollection, FilterToolWindowsAndPlaceholders) {
  const TestWindow own(L"T own", kShown);
  const OtherProgram talk(L"SKYPE.EXE", L"T talk", kShown, WS_EX_TOOLWINDOW);
  const OtherProgram tool(L"toolbox.exe", L"T toolbox", kShown, WS_EX_TOOLWINDOW);
  const OtherProgram plain(L"Plain.exe", L"T other", kShown);
  const OtherProgram windowless(L"nowindow.exe", L"T hidden", kPlain);
  const std::vector<std::wstring> filter{L"nowindow.exe", L"not running.exe", L"skype.exe", L"toolbox.exe",
                                         L"plain.exe"};
  const TWindowTopCollection collection(&filter);
  ASSERT_EQ(collection.Items().size(), 4u);
  const TWindowTopItem* const talking = FindItem(collection, L"T talk");
  ASSERT_NE(talking, nullptr);
  EXPECT_EQ(talking->ProcessId, talk.Id());
  EXPECT_EQ(talking->FileName, L"SKYPE.EXE");
  EXPECT_NE(FindItem(collection, L"T other"), nullptr);
  // Windows first, then placeholders in the filter's order.
  const wchar_t* const names[] = {L"nowindow.exe", L"toolbox.exe"};
  for (std::size_t i = 0; i < 2; ++i) {
    const TWindowTopItem& item = collection.Items()[2 + i];
    EXPECT_EQ(item.FileName, names[i]);
    EXPECT_EQ(item.Caption, names[i]);
    EXPECT_EQ(item.Handle, nullptr);
    EXPECT_EQ(item.ImageIndex, -1);
    EXPECT_EQ(item.ProcessId, 0u);
  }
}

// Shows a window that hangs as soon as it is asked for its icon.
class HangingWindow {
 public:
  HangingWindow() {
    g_end = end_.Get();
    WaitForSingleObject(made_.Get(), INFINITE);
  }
  ~HangingWindow() {
    SetEvent(end_.Get());
    thread_.join();
  }

 private:
  static LRESULT CALLBACK HangOnIcon(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_GETICON) WaitForSingleObject(g_end, 30'000);
    return DefWindowProcW(window, message, wParam, lParam);
  }
  void Run() {
    const TestWindow window(L"T hung", kShown);
    SetWindowLongW(window.Get(), GWL_WNDPROC, reinterpret_cast<LONG>(&HangOnIcon));
    SetEvent(made_.Get());
    while (WaitForSingleObject(end_.Get(), 10) == WAIT_TIMEOUT) {
      for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&message);
    }
  }

  inline static HANDLE g_end;
  const ScopedHandle made_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  const ScopedHandle end_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  std::thread thread_{[this] { Run(); }};
};

TEST(WindowTopCollection, HungWindowIsListedInTime) {
  const HangingWindow window;
  const DWORD start = GetTickCount();
  const TWindowTopCollection collection(nullptr);
  EXPECT_LT(GetTickCount() - start, 5'000u);
  const TWindowTopItem* const item = FindItem(collection, L"T hung");
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->ImageIndex, -1);
}

TEST(WindowTopCollection, ProcessThatCannotBeOpened) {
  const OtherProgram locked(L"locked.exe", L"T open", kShown, 0, L"T locked");
  ASSERT_EQ(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, locked.Id()), nullptr);
  try {
    const TWindowTopCollection collection(nullptr);
    FAIL() << "nothing was raised";
  } catch (const EOSError& error) {
    EXPECT_EQ(error.Code(), DWORD{ERROR_ACCESS_DENIED});
  }
  EXPECT_EQ(RegEditUtils::FindRegEditWindow(), nullptr);
}

}  // namespace
}  // namespace smh::test
