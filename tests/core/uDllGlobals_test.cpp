#include "core/uDllGlobals.h"

#include "infra/com_object.h"
#include "infra/uInterfacesRoutines.h"
#include "support/child_process.h"
#include "support/fake_siblings.h"
#include "support/file_fixture.h"
#include "support/recording_safeguard.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

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

// A service of a sibling library until the end of the scope.
class Installed {
 public:
  Installed(const wchar_t* library, const wchar_t* id, IUnknown* object) : library_(library), id_(id) {
    test::InstallFakeSibling(library, id, object);
  }
  ~Installed() { test::InstallFakeSibling(library_, id_, nullptr); }
  Installed(const Installed&) = delete;
  Installed& operator=(const Installed&) = delete;

 private:
  const wchar_t* library_;
  const wchar_t* id_;
};

class DllGlobalsTest : public testing::Test {
 protected:
  DllGlobalsTest() {
    StartLibraryList();
    StartDllGlobals();
  }
  ~DllGlobalsTest() override {
    StopDllGlobals();
    StopLibraryList();
  }
};

TEST_F(DllGlobalsTest, EachGetterKeepsItsOwnServiceWithAReference) {
  struct Row {
    const wchar_t* library;
    const wchar_t* id;
    std::function<IUnknown*()> get;
  };
  const Row rows[] = {
      {L"basekit.dll", IHelper::kId, [] { return &DLLGlobals::Helper(); }},
      {L"basekit.dll", IGlobals::kId, [] { return &DLLGlobals::Globals(); }},
      {L"basekit.dll", IShellHelper::kId, [] { return &DLLGlobals::ShellHelper(); }},
      {L"raterkit.dll", IFileRater::kId, [] { return &DLLGlobals::FileRater(); }},
      {L"guardkit.dll", ISafeguard::kId, [] { return &DLLGlobals::Safeguard(); }},
      {L"prefkit.dll", ISettings::kId, [] { return &DLLGlobals::Settings(); }},
      {L"basekit.dll", IShellDialogsHelper::kId, [] { return &DLLGlobals::ShellDialogs(); }},
  };
  for (const Row& row : rows) {
    // Only one of its slots is ever called: the first, by ShellDialogs.
    const auto object = MakeComObject<FakeDialogs>();
    const auto later = MakeComObject<FakeDialogs>();
    {
      const Installed installed(row.library, row.id, object.Get());
      const ULONG before = References(*object);
      EXPECT_EQ(row.get(), object.Get()) << row.id;
      EXPECT_EQ(References(*object), before + 1);
    }
    const Installed installed(row.library, row.id, later.Get());
    EXPECT_EQ(row.get(), object.Get()) << row.id;
    EXPECT_EQ(References(*object), 2u);
    EXPECT_EQ(object->initialised, std::wstring_view(row.id) == IShellDialogsHelper::kId ? 1 : 0);
    StopDllGlobals();
    EXPECT_EQ(References(*object), 1u);
    StartDllGlobals();
  }
}

TEST_F(DllGlobalsTest, ShellDialogsAreInitialisedOnceHoweverManyAsk) {
  const auto dialogs = MakeComObject<FakeDialogs>();
  const Installed installed(L"basekit.dll", IShellDialogsHelper::kId, dialogs.Get());
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

TEST_F(DllGlobalsTest, CheckpointsAreAskedForEveryTime) {
  const auto settings = MakeComObject<test::FakeSettings>();
  const Installed installed(L"prefkit.dll", ISettings::kId, settings.Get());
  settings->useCheckpoints = false;
  EXPECT_FALSE(DLLGlobals::UseBackupCheckpoints());
  settings->useCheckpoints = true;
  EXPECT_TRUE(DLLGlobals::UseBackupCheckpoints());
  const std::vector<std::wstring> asked = {L"startupmanager.exe", L"startupmanager.exe"};
  EXPECT_EQ(settings->Asked(), asked);
}

class SettingsWithoutObject : public test::FakeSettings {
 public:
  HRESULT STDMETHODCALLTYPE GetApplicationSettings(IApplicationSettings**) override { return E_FAIL; }
};

TEST_F(DllGlobalsTest, WithoutSettingsChangesAreRecorded) {
  const auto settings = MakeComObject<SettingsWithoutObject>();
  const Installed installed(L"prefkit.dll", ISettings::kId, settings.Get());
  EXPECT_TRUE(DLLGlobals::UseBackupCheckpoints());
}

TEST_F(DllGlobalsTest, IndirectStrings) {
  const std::wstring self = test::ThisProgram();
  SetEnvironmentVariableW(L"SMH_TEST_PROGRAM", self.c_str());
  const std::wstring text = L"A text of the test's own";
  const std::pair<std::wstring, std::wstring> rows[] = {
      {L"", L""},
      {L"plain", L"plain"},
      {L"plain,-4001", L"plain,-4001"},
      {L" @" + self + L",-4001", L" @" + self + L",-4001"},
      {L"@" + self + L",-4001", text},
      {L"@" + self + L",4001", text},
      {L"@%SMH_TEST_PROGRAM%,-4001", text},
      {L"@" + self + L",-4003", L""},
      {L"@" + self + L",-2147483648", L""},
      {L"@" + self, L""},
      {L"@", L""},
      {L"@,-4001", L""},
      {L"@C:\\smh missing.dll,-4001", L""},
      {L"@" + std::wstring(32'000, L'a') + L",-1", L""},
  };
  for (const auto& [reference, expected] : rows) {
    EXPECT_EQ(DLLGlobals::LoadIndirectString(reference), expected) << reference.substr(0, 80);
  }
  std::wstring cut;
  while (cut.size() < 259) cut += static_cast<wchar_t>(L'0' + cut.size() % 10);
  EXPECT_EQ(DLLGlobals::LoadIndirectString(L"@" + self + L",-4002"), cut);
}

TEST_F(DllGlobalsTest, IndirectStringFromAFileThatIsNoLibrary) {
  const test::TemporaryFolder folder;
  const std::wstring file = folder.Write(L"text,with comma.dll", "no image");
  EXPECT_EQ(DLLGlobals::LoadIndirectString(L"@" + file + L",-4001"), L"");
  const std::wstring copy = folder.File(L"copy, of a program.exe");
  ASSERT_TRUE(CopyFileW(test::ThisProgram().c_str(), copy.c_str(), TRUE));
  EXPECT_EQ(DLLGlobals::LoadIndirectString(L"@" + copy + L",-4001"), L"A text of the test's own");
  // The file is free again.
  EXPECT_TRUE(DeleteFileW(copy.c_str()));
}

}  // namespace
}  // namespace smh
