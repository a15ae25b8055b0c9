#include "sysutil/uWinVersionInfo.h"

#include "support/child_process.h"
#include "support/file_fixture.h"
#include "support/registry_fixture.h"
#include "support/test_main.h"
#include "sysutil/import_hook.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

namespace smh {
namespace {

using test::ImportHook;

class WinVersionInfoTest : public testing::Test {
 protected:
  WinVersionInfoTest() { StartWinVersionInfo(); }
  ~WinVersionInfoTest() override { StopWinVersionInfo(); }
};

TEST_F(WinVersionInfoTest, ArchitectureFollowsTheSystem) {
  EXPECT_EQ(WinVersionInfo::IsWow64(), test::HasTwoViews());
  EXPECT_EQ(WinVersionInfo::ArchitectureCode(), test::HasTwoViews() ? 2 : 1);
  EXPECT_EQ(WinVersionInfo::ArchitectureName(), test::HasTwoViews() ? L"x64" : L"x32");
  SYSTEM_INFO own = {};
  SYSTEM_INFO native = {};
  GetSystemInfo(&own);
  WinVersionInfo::GetNativeSystemInfo(native);
  EXPECT_EQ(own.wProcessorArchitecture, PROCESSOR_ARCHITECTURE_INTEL);
  EXPECT_EQ(native.wProcessorArchitecture,
            test::HasTwoViews() ? PROCESSOR_ARCHITECTURE_AMD64 : PROCESSOR_ARCHITECTURE_INTEL);
}

TEST_F(WinVersionInfoTest, DllVersion) {
  DWORD major = 99;
  DWORD minor = 99;
  EXPECT_FALSE(WinVersionInfo::DllVersion(L"no such library.dll", major, minor));
  EXPECT_FALSE(WinVersionInfo::DllVersion(L"kernel32.dll", major, minor));
  EXPECT_EQ(major, 99u);
  for (const wchar_t* const file : {L"shell32.dll", L"shlwapi.dll", L"comctl32.dll"}) {
    ASSERT_TRUE(WinVersionInfo::DllVersion(file, major, minor)) << file;
    EXPECT_GE(major, 5u);
    EXPECT_LT(major, 99u);
  }
}

TEST_F(WinVersionInfoTest, WorksAfterARestartAndFromManyThreads) {
  const int edition = WinVersionInfo::EditionCode();
  for (int round = 0; round < 20; ++round) {
    StopWinVersionInfo();
    StartWinVersionInfo();
    std::vector<std::thread> threads;
    std::atomic<int> right{0};
    for (int i = 0; i < 8; ++i) {
      threads.emplace_back([&] {
        if (WinVersionInfo::EditionCode() == edition && WinVersionInfo::IsWow64() == test::HasTwoViews()) {
          ++right;
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    ASSERT_EQ(right, 8);
  }
}

// The system says no to a version before 6.0, and does not say why.
TEST_F(WinVersionInfoTest, ProductInfoWithoutReasonIsNoError) {
  DWORD product = 77;
  // An older call's reason is not this one's.
  SetLastError(ERROR_ACCESS_DENIED);
  EXPECT_NO_THROW(WinVersionInfo::GetProductInfo(5, 0, 0, 0, product));
  EXPECT_EQ(product, 0u);
}

BOOL WINAPI FailingProductInfo(DWORD, DWORD, DWORD, DWORD, DWORD*) {
  SetLastError(ERROR_INVALID_PARAMETER);
  return FALSE;
}

TEST_F(WinVersionInfoTest, FailedProductInfoIsRaised) {
  const ImportHook hook("GetProductInfo", &FailingProductInfo);
  DWORD product = 0;
  try {
    WinVersionInfo::GetProductInfo(6, 1, 0, 0, product);
    FAIL() << "nothing was raised";
  } catch (const TWinVersionInfoException& exception) {
    EXPECT_EQ(exception.Message(),
              L"WinVersionInfo.GetProductInfo() (Error code: 87). " + SystemErrorText(87));
    EXPECT_STREQ(exception.ClassName(), L"TWinVersionInfoException");
  }
}

TEST_F(WinVersionInfoTest, MissingEntryPointIsAnErrorOfTheSystem) {
  const ImportHook hook("GetProductInfo", nullptr);
  DWORD product = 0;
  try {
    WinVersionInfo::GetProductInfo(6, 1, 0, 0, product);
    FAIL() << "nothing was raised";
  } catch (const EOSError& error) {
    EXPECT_EQ(error.Code(), DWORD{ERROR_PROC_NOT_FOUND});
  }
}

BOOL WINAPI FailingIsWow64Process(HANDLE, BOOL* answer) {
  *answer = TRUE;
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

BOOL WINAPI OnlyWow64(DWORD value) {
  return value == 30 ? TRUE : FALSE;
}

BOOL WINAPI AllButWow64(DWORD value) {
  return value == 30 ? FALSE : TRUE;
}

TEST_F(WinVersionInfoTest, IsOsAnswersWhenIsWow64ProcessCannot) {
  using Function = BOOL(WINAPI*)(HANDLE, BOOL*);
  for (const Function function : {&FailingIsWow64Process, Function(nullptr)}) {
    const ImportHook noAnswer("IsWow64Process", function);
    for (const bool expected : {true, false}) {
      const ImportHook isOs(MAKEINTRESOURCEA(437), expected ? &OnlyWow64 : &AllButWow64);
      StopWinVersionInfo();
      StartWinVersionInfo();
      EXPECT_EQ(WinVersionInfo::IsWow64(), expected);
    }
  }
}

TEST_F(WinVersionInfoTest, AnswersAreWorkedOutOnce) {
  const bool wow64 = WinVersionInfo::IsWow64();
  const int edition = WinVersionInfo::EditionCode();
  StopWinVersionInfo();
  const ImportHook noProcess("IsWow64Process", nullptr);
  const ImportHook noIsOs(MAKEINTRESOURCEA(437), nullptr);
  const ImportHook noProduct("GetProductInfo", nullptr);
  EXPECT_EQ(WinVersionInfo::IsWow64(), wow64);
  EXPECT_EQ(WinVersionInfo::EditionCode(), edition);
  StartWinVersionInfo();
  EXPECT_THROW(WinVersionInfo::IsWow64(), EOSError);
}

SMH_CHILD(PrintVersion) {
  StartWinVersionInfo();
  std::printf("%ls|%ls|%ls", WinVersionInfo::OSName().data(), WinVersionInfo::ServicePackName().data(),
              WinVersionInfo::EditionName().data());
  StopWinVersionInfo();
  return 0;
}

// Runs a copy of this program for which the prefix pretends to be another Windows.
std::string VersionSeenAs(const std::wstring& version) {
  const std::wstring program = L"smh_version_probe.exe";
  const test::RegistryTree pretended(L"Software\\Wine\\AppDefaults\\" + program);
  pretended.Set(L"", L"Version", test::Sz(version));
  const test::TemporaryFolder folder;
  if (!CopyFileW(test::ThisProgram().c_str(), folder.File(program).c_str(), TRUE)) return "no copy";
  return test::RunProgram(folder.File(program), {L"--child=PrintVersion"}).output;
}

TEST_F(WinVersionInfoTest, OtherVersionsOfWindows) {
  const std::pair<const wchar_t*, const char*> rows[] = {
      {L"win98", "Windows 98 SE||Unknown Edition"},
      {L"winme", "Windows Millennium||Unknown Edition"},
      // Its service pack is the sixth.
      {L"nt40", "Windows NT|Service Pack 5|Professional Edition"},
      {L"win2k", "Windows 2000|Service Pack 4|Professional Edition"},
      {L"winxp", "Windows XP|Service Pack 3|Professional Edition"},
      {L"win2003", "Windows Server 2003|Service Pack 2|Professional Edition"},
      {L"vista", "Windows Vista|Service Pack 2|Ultimate Edition"},
      {L"win2008", "Windows Server 2008|Service Pack 2|Standard Edition"},
      // Wine's record under this name says that it is a server.
      {L"win7", "Windows Server 2008 R2|Service Pack 1|Standard Edition"},
      {L"win8", "Windows 7||Ultimate Edition"},
      {L"win10", "Windows 7||Ultimate Edition"},
  };
  for (const auto& [version, seen] : rows) EXPECT_EQ(VersionSeenAs(version), seen) << version;
}

}  // namespace
}  // namespace smh
