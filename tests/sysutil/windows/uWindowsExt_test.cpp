#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/text.h"
#include "sysutil/windows/uWindowsExt.h"
#include "tests/support/child_process.h"
#include "tests/support/import_patch.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

class WindowsExtTest : public testing::Test {
 protected:
  ~WindowsExtTest() override { ForgetWindowsExt(); }
};

DWORD g_now;
DWORD WINAPI FixedTickCount() {
  return g_now;
}

TEST_F(WindowsExtTest, TicksAreOneShortAfterTheWrap) {
  const ImportPatch patch("GetTickCount", &FixedTickCount);
  const struct {
    DWORD start, now, difference;
  } rows[] = {
      {5, 5, 0}, {5, 2005, 2000}, {0, 0xFFFFFFFF, 0xFFFFFFFF}, {0xFFFFFFFF, 0, 0}, {0xFFFFFFF0, 0x10, 0x1F},
  };
  for (const auto& row : rows) {
    g_now = row.now;
    EXPECT_EQ(WindowsExt::TickDiff(row.start), row.difference) << row.start;
  }
}

TEST_F(WindowsExtTest, ProgramsOfProcesses) {
  const std::wstring_view own = FileNamePart(ThisProgram());
  const HANDLE process = GetCurrentProcess();
  EXPECT_TRUE(SameText(WindowsExt::GetModuleFileNameEx(process, nullptr), ThisProgram()));
  const std::wstring device = WindowsExt::GetProcessImageFileName(process);
  EXPECT_TRUE(SameText(FileNamePart(device), own));
  EXPECT_TRUE(device.starts_with(L"\\")) << device;
  // A handle that lets nobody ask.
  const ScopedHandle mute(OpenProcess(SYNCHRONIZE, FALSE, GetCurrentProcessId()));
  EXPECT_THROW(WindowsExt::GetModuleFileNameEx(mute.Get(), nullptr), EOSError);
  EXPECT_THROW(WindowsExt::GetProcessImageFileName(mute.Get()), EOSError);
}

}  // namespace
}  // namespace smh::test
