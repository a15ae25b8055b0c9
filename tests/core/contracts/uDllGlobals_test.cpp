#include "core/contracts/uDllGlobals.h"

#include "infra/siblings/uInterfacesRoutines.h"
#include "tests/support/child_process.h"
#include "tests/support/fake_siblings.h"
#include "tests/support/file_fixture.h"
#include "tests/support/recording_safeguard.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace smh {
namespace {

class FakeDialogs : public ComObject<IShellDialogsHelper> {
 public:
  std::atomic<int> initialised{0};

  HRESULT STDMETHODCALLTYPE Initialize() override {
    // Long enough for other threads to come in meanwhile.
    Sleep(20);
    ++initialised;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ShowFileDetails(HWND, const wchar_t*, const wchar_t*, std::int32_t) override {
    return S_OK;
  }
};

ULONG References(IUnknown& object) {
  object.AddRef();
  return object.Release();
}

class DllGlobalsTest : public testing::Test {
 protected:
  DllGlobalsTest() {
    StartLibraryList();
    StartDllGlobals();
  }
  ~DllGlobalsTest() override {
    for (const auto& [library, id] : installed_) test::InstallFakeSibling(library, id, nullptr);
    StopDllGlobals();
    StopLibraryList();
  }

  // A service of a sibling library until the end of the test.
  void Install(const wchar_t* library, const wchar_t* id, IUnknown* object) {
    test::InstallFakeSibling(library, id, object);
    installed_.emplace_back(library, id);
  }

 private:
  std::vector<std::pair<const wchar_t*, const wchar_t*>> installed_;
};

TEST_F(DllGlobalsTest, EachGetterKeepsItsOwnServiceWithAReference) {
  const struct {
    const wchar_t* library;
    const wchar_t* id;
    std::function<IUnknown*()> get;
  } rows[] = {
      {L"basekit.dll", IHelper::kId, [] { return &DLLGlobals::Helper(); }},
      {L"basekit.dll", IGlobals::kId, [] { return &DLLGlobals::Globals(); }},
      {L"basekit.dll", IShellHelper::kId, [] { return &DLLGlobals::ShellHelper(); }},
      {L"raterkit.dll", IFileRater::kId, [] { return &DLLGlobals::FileRater(); }},
      {L"guardkit.dll", ISafeguard::kId, [] { return &DLLGlobals::Safeguard(); }},
      {L"prefkit.dll", ISettings::kId, [] { return &DLLGlobals::Settings(); }},
      {L"basekit.dll", IShellDialogsHelper::kId, [] { return &DLLGlobals::ShellDialogs(); }},
  };
  for (const auto& row : rows) {
    // Only one of its slots is ever called: the first, by ShellDialogs.
    const auto object = MakeComObject<FakeDialogs>();
    const auto later = MakeComObject<FakeDialogs>();
    Install(row.library, row.id, object.Get());
    EXPECT_EQ(row.get(), object.Get()) << row.id;
    Install(row.library, row.id, later.Get());
    EXPECT_EQ(row.get(), object.Get()) << row.id;
    EXPECT_EQ(References(*object), 2u);
    test::InstallFakeSibling(row.library, row.id, nullptr);
    StopDllGlobals();
    EXPECT_EQ(References(*object), 1u);
    StartDllGlobals();
  }
}

TEST_F(DllGlobalsTest, ShellDialogsAreInitialisedOnceHoweverManyAsk) {
  const auto dialogs = MakeComObject<FakeDialogs>();
  Install(L"basekit.dll", IShellDialogsHelper::kId, dialogs.Get());
  std::vector<std::thread> threads;
  std::atomic<int> ready{0};
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      // Whoever has the service has it initialised.
      if (&DLLGlobals::ShellDialogs() == dialogs.Get() && dialogs->initialised == 1) ++ready;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(ready, 8);
  EXPECT_EQ(dialogs->initialised, 1);
}

class SettingsWithoutObject : public test::FakeSettings {
 public:
  HRESULT STDMETHODCALLTYPE GetApplicationSettings(IApplicationSettings**) override { return E_FAIL; }
};

TEST_F(DllGlobalsTest, CheckpointsAreAskedForEveryTimeAndOnWithoutSettings) {
  const auto settings = MakeComObject<test::FakeSettings>();
  Install(L"prefkit.dll", ISettings::kId, settings.Get());
  for (const bool use : {false, true}) {
    settings->useCheckpoints = use;
    EXPECT_EQ(DLLGlobals::UseBackupCheckpoints(), use);
  }
  EXPECT_EQ(settings->Asked(), (std::vector<std::wstring>{L"startupmanager.exe", L"startupmanager.exe"}));
  StopDllGlobals();
  StartDllGlobals();
  const auto broken = MakeComObject<SettingsWithoutObject>();
  Install(L"prefkit.dll", ISettings::kId, broken.Get());
  EXPECT_TRUE(DLLGlobals::UseBackupCheckpoints());
}

TEST_F(DllGlobalsTest, IndirectStrings) {
  const std::wstring self = test::ThisProgram();
  SetEnvironmentVariableW(L"SMH_TEST_PROGRAM", self.c_str());
  const test::TemporaryFolder folder;
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
}  // namespace smh
