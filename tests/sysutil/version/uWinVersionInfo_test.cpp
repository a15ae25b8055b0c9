#include "sysutil/version/uWinVersionInfo.h"
#include "tests/support/child_process.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/test_main.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <map>

namespace smh::test {
namespace {

const auto g_getProcAddress = &GetProcAddress;

// Entry points, by name or by an ordinal's digits, that are others until the end of the scope; a null one is
// missing.
class EntryPoints {
 public:
  using Replacements = std::map<std::string, void*>;
  explicit EntryPoints(Replacements replacements) { replacements_ = std::move(replacements); }

 private:
  static FARPROC WINAPI Answer(HMODULE module, LPCSTR name) {
    const auto number = reinterpret_cast<std::uintptr_t>(name);
    const auto found = replacements_.find(number < 0x10000 ? std::to_string(number) : std::string(name));
    if (found == replacements_.end()) return g_getProcAddress(module, name);
    if (found->second == nullptr) SetLastError(ERROR_PROC_NOT_FOUND);
    return reinterpret_cast<FARPROC>(found->second);
  }

  inline static Replacements replacements_;
  const ImportPatch patch_{"GetProcAddress", &Answer};
};

class WinVersionInfoTest : public testing::Test {
 protected:
  ~WinVersionInfoTest() override { ForgetWinVersionInfo(); }
};

TEST_F(WinVersionInfoTest, DllVersion) {
  DWORD major = 99;
  DWORD minor = 99;
  EXPECT_FALSE(WinVersionInfo::DllVersion(L"no such library.dll", major, minor));
  EXPECT_FALSE(WinVersionInfo::DllVersion(L"kernel32.dll", major, minor));
  EXPECT_EQ(major, 99u);
  ASSERT_TRUE(WinVersionInfo::DllVersion(L"comctl32.dll", major, minor));
  EXPECT_TRUE(major >= 5 && major < 99);
}

BOOL WINAPI FailingProductInfo(DWORD, DWORD, DWORD, DWORD, DWORD*) {
  SetLastError(ERROR_INVALID_PARAMETER);
  return FALSE;
}

TEST_F(WinVersionInfoTest, FailuresOfProductInfo) {
  DWORD product = 77;
  // The system says no to a version before 6.0, and does not say why. An older call's reason is not this
  // one's.
  SetLastError(ERROR_ACCESS_DENIED);
  EXPECT_NO_THROW(WinVersionInfo::GetProductInfo(5, 0, 0, 0, product));
  EXPECT_EQ(product, 0u);
  try {
    ForgetWinVersionInfo();
    const EntryPoints failing({{"GetProductInfo", reinterpret_cast<void*>(&FailingProductInfo)}});
    WinVersionInfo::GetProductInfo(6, 1, 0, 0, product);
    FAIL() << "nothing was raised";
  } catch (const TWinVersionInfoException& exception) {
    EXPECT_EQ(exception.Message(),
              L"WinVersionInfo.GetProductInfo() (Error code: 87). " + SystemErrorText(87));
  }
  try {
    ForgetWinVersionInfo();
    const EntryPoints missing({{"GetProductInfo", nullptr}});
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
  for (void* const process : {reinterpret_cast<void*>(&FailingIsWow64Process), static_cast<void*>(nullptr)}) {
    for (const auto isOs : {&OnlyWow64, &AllButWow64}) {
      const EntryPoints others({{"IsWow64Process", process}, {"437", reinterpret_cast<void*>(isOs)}});
      ForgetWinVersionInfo();
      EXPECT_EQ(WinVersionInfo::IsWow64(), isOs == &OnlyWow64);
    }
  }
  const EntryPoints none({{"IsWow64Process", nullptr}, {"437", nullptr}});
  ForgetWinVersionInfo();
  EXPECT_THROW(WinVersionInfo::IsWow64(), EOSError);
}

SMH_CHILD(PrintVersion) {
  std::printf("%ls|%ls|%ls", WinVersionInfo::OSName().data(), WinVersionInfo::ServicePackName().data(),
              WinVersionInfo::EditionName().data());
  ForgetWinVersionInfo();
  return 0;
}

// Runs a copy of this program for which the prefix pretends to be another Windows.
std::string VersionSeenAs(const std::wstring& version) {
  const std::wstring program = L"smh_version_probe.exe";
  const RegistryTree pretended(L"Software\\Wine\\AppDefaults\\" + program);
  pretended.Set(L"", L"Version", Sz(version));
  const TemporaryFolder folder;
  if (!CopyFileW(ThisProgram().c_str(), folder.File(program).c_str(), TRUE)) return "no copy";
  return RunProgram(folder.File(program), {L"--child=PrintVersion"}).output;
}

// The rules have tests of their own; here the facts come from the system.
TEST_F(WinVersionInfoTest, OtherVersionsOfWindows) {
  const std::pair<const wchar_t*, const char*> rows[] = {
      {L"win98", "Windows 98 SE||Unknown Edition"},
      // Its service pack is the sixth.
      {L"nt40", "Windows NT|Service Pack 5|Professional Edition"},
      // Wine's record under this name says that it is a server.
      {L"win7", "Windows Server 2008 R2|Service Pack 1|Standard Edition"},
      {L"vista", "Windows Vista|Service Pack 2|Ultimate Edition"},
  };
  for (const auto& [version, seen] : rows) EXPECT_EQ(VersionSeenAs(version), seen) << version;
}

}  // namespace
}  // namespace smh::test
