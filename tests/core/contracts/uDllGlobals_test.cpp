#include "core/contracts/uDllGlobals.h"
#include "tests/support/child_process.h"
#include "tests/support/fake_siblings.h"
#include "tests/support/file_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace smh::test {
namespace {

using DllGlobalsTest = SiblingTest;

class SettingsWithoutObject : public FakeSettings {
 public:
  HRESULT STDMETHODCALLTYPE GetApplicationSettings(IApplicationSettings**) override { return E_FAIL; }
};

TEST_F(DllGlobalsTest, CheckpointsAreAskedForEveryTimeAndOnWithoutSettings) {
  const auto settings = MakeComObject<FakeSettings>();
  Install(L"prefkit.dll", ISettings::kId, settings.Get());
  for (const bool use : {false, true}) {
    settings->useCheckpoints = use;
    EXPECT_EQ(DLLGlobals::UseBackupCheckpoints(), use);
  }
  EXPECT_EQ(settings->Asked(), (std::vector<std::wstring>{L"startupmanager.exe", L"startupmanager.exe"}));
  g_siblings.Stop();
  g_siblings.Start();
  const auto broken = MakeComObject<SettingsWithoutObject>();
  Install(L"prefkit.dll", ISettings::kId, broken.Get());
  EXPECT_TRUE(DLLGlobals::UseBackupCheckpoints());
}

TEST_F(DllGlobalsTest, IndirectStrings) {
  const std::wstring self = ThisProgram();
  SetEnvironmentVariableW(L"SMH_TEST_PROGRAM", self.c_str());
  const TemporaryFolder folder;
  const std::wstring noImage = folder.Write(L"text.dll", "no image");
  const std::wstring copy = folder.File(L"copy, of a program.exe");
  ASSERT_TRUE(CopyFileW(self.c_str(), copy.c_str(), TRUE));
  const std::wstring text = L"A text of the test's own";
  std::wstring cut;
  while (cut.size() < 259) cut += static_cast<wchar_t>(L'0' + cut.size() % 10);
  const std::pair<std::wstring, std::wstring> rows[] = {
      {L"", L""},
      {L"plain,-4001", L"plain,-4001"},
      {L" @" + self + L",-4001", L" @" + self + L",-4001"},
      {L"@" + self + L",-4001", text},
      {L"@" + self + L",4001", text},
      {L"@%SMH_TEST_PROGRAM%,-4001", text},
      {L"@" + copy + L",-4001", text},
      {L"@" + self + L",-4002", cut},
      {L"@" + self + L",-4003", L""},
      {L"@" + self + L",-2147483648", L""},
      {L"@" + self, L""},
      {L"@,-4001", L""},
      {L"@C:\\smh missing.dll,-4001", L""},
      {L"@" + noImage + L",-4001", L""},
      {L"@" + std::wstring(32'000, L'a') + L",-1", L""},
  };
  for (const auto& [reference, expected] : rows) {
    EXPECT_EQ(DLLGlobals::LoadIndirectString(reference), expected) << reference.substr(0, 80);
  }
  // The file is free again.
  EXPECT_TRUE(DeleteFileW(copy.c_str()));
}

}  // namespace
}  // namespace smh::test
