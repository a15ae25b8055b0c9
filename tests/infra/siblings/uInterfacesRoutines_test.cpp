#include "core/contracts/com_object.h"
#include "core/contracts/intf_DebugLog.h"
#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_general.h"
#include "core/contracts/intf_safeguard.h"
#include "core/contracts/intf_settings.h"
#include "infra/log/uAxDebug.h"
#include "infra/siblings/sibling_file.h"
#include "infra/siblings/uInterfacesRoutines.h"
#include "tests/support/child_process.h"
#include "tests/support/fake_siblings.h"
#include "tests/support/file_fixture.h"
#include "tests/support/import_patch.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/test_main.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace smh::test {
namespace {

// Has every slot that a first call may call: the first after IUnknown's three.
class FakeService : public ComObject<IShellDialogsHelper> {
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

TEST_F(SiblingTest, LibraryNameInAnyCaseIsOneEntryAndAFailedLoadNone) {
  TLibraryList list;
  const HMODULE basekit = list.GetHandle(L"basekit.dll");
  ASSERT_NE(basekit, nullptr);
  EXPECT_EQ(list.GetHandle(L"BASEKIT.dll"), basekit);
  EXPECT_EQ(list.IndexOf(L"Basekit.DLL"), 0);
  EXPECT_EQ(list.Load(L"no such library.dll"), nullptr);
  EXPECT_EQ(list.IndexOf(L"no such library.dll"), -1);
}

// What the system would find by the name: in the current folder, in its own, and among what is loaded.
TEST_F(SiblingTest, NoOtherFolderSuppliesALibrary) {
  const TemporaryFolder folder;
  ASSERT_TRUE(CopyFileW((ThisFolder() + L"basekit.dll").c_str(), folder.File(L"planted.dll").c_str(), TRUE));
  const ScopedModule loaded(LoadLibraryW(folder.File(L"planted.dll").c_str()));
  ASSERT_TRUE(loaded);
  wchar_t before[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, before);
  SetCurrentDirectoryW(folder.Path().c_str());
  for (const wchar_t* const name : {L"planted.dll", L"version.dll"}) {
    EXPECT_EQ(TLibraryList().Load(name), nullptr) << name;
    EXPECT_EQ(FindSibling(name), L"");
  }
  SetCurrentDirectoryW(before);
}

TEST_F(SiblingTest, FailingLibraryIsTriedOnce) {
  // The stand-in goes by that name from here on.
  Install(L"guardkit.dll", L"{nobody}", nullptr);
  InterfaceCache failed;
  EXPECT_EQ(GetLibraryInterface(failed, L"guardkit.dll", L"{nobody}", 0), nullptr);
  const auto late = MakeComObject<FakeService>();
  Install(L"guardkit.dll", L"{nobody}", late.Get());
  EXPECT_EQ(GetLibraryInterface(failed, L"guardkit.dll", L"{nobody}", 0), nullptr);
  InterfaceCache fresh;
  EXPECT_EQ(GetLibraryInterface(fresh, L"guardkit.dll", L"{nobody}", 0), late.Get());
}

struct Service {
  const wchar_t* library;
  const wchar_t* id;
  IUnknown* (*get)();
};
template <typename Interface>
constexpr Service kService = {Interface::kLibrary, Interface::kId,
                              []() -> IUnknown* { return &Sibling<Interface>(); }};

// That these are the published identifiers is tested with the libraries.
TEST_F(SiblingTest, EachServiceIsKeptWithOneReferenceUntilTheStop) {
  std::vector<ComPtr<FakeService>> services;
  for (const Service& row :
       {kService<IHelper>, kService<IGlobals>, kService<IShellHelper>, kService<IShellDialogsHelper>,
        kService<IFileRater>, kService<ISafeguard>, kService<ISettings>, kService<IDebugLog>}) {
    SCOPED_TRACE(row.id);
    const ComPtr<FakeService>& service = services.emplace_back(MakeComObject<FakeService>());
    Install(row.library, row.id, service.Get());
    EXPECT_EQ(row.get(), service.Get());
    InstallFakeSibling(row.library, row.id, nullptr);
    EXPECT_EQ(row.get(), service.Get());
    EXPECT_EQ(References(*service), 2u);
    // Only the dialogs have something to initialise.
    EXPECT_EQ(service->initialised, row.id == IShellDialogsHelper::kId);
  }
  g_siblings.Stop();
  for (const auto& service : services) EXPECT_EQ(References(*service), 1u);
  // A new start asks again.
  g_siblings.Start();
  const auto next = MakeComObject<FakeService>();
  Install(L"guardkit.dll", ISafeguard::kId, next.Get());
  EXPECT_EQ(&Sibling<ISafeguard>(), static_cast<IUnknown*>(next.Get()));
}

TEST_F(SiblingTest, InitialisedOnceHoweverManyAsk) {
  const auto dialogs = MakeComObject<FakeService>();
  Install(L"basekit.dll", IShellDialogsHelper::kId, dialogs.Get());
  std::vector<std::thread> threads;
  std::atomic<int> ready{0};
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      // Whoever has the service has it initialised.
      if (&Sibling<IShellDialogsHelper>() == dialogs.Get() && dialogs->initialised == 1) ++ready;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(ready, 8);
  EXPECT_EQ(dialogs->initialised, 1);
}

// Says what would be shown.
int WINAPI PrintBox(HWND, const wchar_t* text, const wchar_t* caption, UINT) {
  std::printf("%ls: %ls", caption, text);
  return IDOK;
}

struct IMissing : IUnknown {
  static constexpr wchar_t kLibrary[] = L"missing.dll";
  static constexpr wchar_t kId[] = L"{nobody}";
  static constexpr wchar_t kLocator[] = L"missing.dll::Nobody";
};

SMH_CHILD(AskForMissing) {
  const ImportPatch patch("MessageBoxW", &PrintBox);
  // A new station is not the interactive one.
  if (arguments.at(0) == L"hidden") {
    SetProcessWindowStation(CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr));
  }
  g_siblings.Start();
  Sibling<IMissing>();
  return 0;
}

TEST(MissingSiblingTest, ServiceIsNamedInABoxWhereOneCanBeClosedAndTheProcessEnds) {
  const std::string text =
      "An error occurred while loading library missing.dll::Nobody. \r\n\r\nIt may have been removed. Please "
      "reinstall the application. If the problem persists, contact technical support.";
  for (const wchar_t* const desktop : {L"shown", L"hidden"}) {
    const ChildResult result = RunChild(L"AskForMissing", {desktop});
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.output.starts_with("Error: An error"), desktop == std::wstring(L"shown"));
    EXPECT_EQ(result.errors, text + "\r\n");
  }
}

TEST(AsciiTextTest, OnlyAsciiLettersFold) {
  EXPECT_EQ(AsciiLowerCase(L"@AZ[`az{ \x00C4\x0130"), L"@az[`az{ \x00C4\x0130");
  EXPECT_FALSE(SameAsciiText(L"\x00C4", L"\x00E4"));
}

constexpr wchar_t kSettings[] = L"Software\\Quillmark\\DebugMode";

SMH_CHILD(DebugDecision) {
  g_siblings.Start();
  g_debugMode.Start();
  const bool decided = IsDebugMode();
  // What was decided at the start holds.
  SetDebugModeSetting(!decided);
  if (IsDebugMode() != decided) return 2;
  // The library is none: there is no trace then, and no end of the process.
  DebugLog()->Message(L"lost");
  return IsDebugMode() ? 3 : decided + 10;
}

struct DebugCase {
  bool library;
  std::optional<RawValue> setting;
  std::vector<std::wstring> arguments;
  DWORD expected;
};

TEST(DebugDecisionTest, LibraryThenRegistryThenFirstArgument) {
  const RawValue odd{REG_DWORD, {std::byte{1}}};
  const DebugCase cases[] = {
      {false, Dword(1), {L"-debug"}, 0},
      {true, std::nullopt, {}, 0},
      {true, Dword(1), {}, 1},
      {true, Dword(2), {}, 0},
      {true, Sz(L"1"), {}, 0},
      {true, odd, {}, 0},
      {true, std::nullopt, {L"-debug"}, 1},
      {true, Dword(0), {L"-DeBuG"}, 1},
      {true, std::nullopt, {L"x", L"-debug"}, 0},
      {true, std::nullopt, {L"-debugger"}, 0},
  };
  const SavedKey saved(HKEY_CURRENT_USER, kSettings);
  const TemporaryFolder folder;
  const std::wstring program = folder.File(L"host.exe");
  ASSERT_TRUE(CopyFileW(ThisProgram().c_str(), program.c_str(), TRUE));
  const std::wstring library = folder.File(L"tracekit.dll");
  for (const DebugCase& row : cases) {
    DeleteFileW(library.c_str());
    if (row.library) folder.Write(L"tracekit.dll", "only its presence counts");
    DeleteKeyTree(HKEY_CURRENT_USER, kSettings);
    if (row.setting) SetValue(HKEY_CURRENT_USER, kSettings, L"DebugMode", *row.setting);
    std::vector<std::wstring> arguments = row.arguments;
    arguments.push_back(L"--child=DebugDecision");
    const ChildResult result = RunProgram(program, arguments);
    EXPECT_EQ(result.exitCode, row.expected + 10) << "case " << &row - cases << ": " << result.output;
    EXPECT_EQ(GetValue(HKEY_CURRENT_USER, kSettings, L"DebugMode"), Dword(1 - row.expected));
  }
}

}  // namespace
}  // namespace smh::test
