// Every module loaded and freed many times in one process: nothing of them stays behind, the static runtime
// of the language included.
#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/intf_DebugLog.h"
#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_FileTrust.h"
#include "core/contracts/intf_general.h"
#include "core/contracts/intf_safeguard.h"
#include "core/contracts/intf_settings.h"
#include "infra/runtime/com_ptr.h"
#include "tests/siblings/common/sibling_library.h"
#include "tests/support/process_counts.h"
#include "tests/support/test_main.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <algorithm>
#include <functional>
#include <future>
#include <string_view>
#include <thread>

namespace smh::test {
namespace {

constexpr wchar_t kNoFile[] = L"C:\\no such folder\\gone.exe";

bool UseLibrary(const SiblingLibrary& module) {
  ComPtr<IStartupItemCollection> items;
  return module.Service<IStartupManager>()->GetStartupItems(items.Put()) == S_OK &&
         items->Unlock() == E_UNEXPECTED;
}

// A little of each; an exception is thrown and caught inside those that have one to throw.
struct ModuleRow {
  const wchar_t* file;
  bool (*use)(const SiblingLibrary& module);
};

const ModuleRow kModules[] = {
    {L"basekit.dll",
     [](const SiblingLibrary& module) {
       return FAILED(module.Service<IShellDialogsHelper>()->ShowFileDetails(nullptr, kNoFile, L"", 0));
     }},
    {L"prefkit.dll",
     [](const SiblingLibrary& module) {
       ComPtr<IApplicationSettings> settings;
       return module.Service<ISettings>()->GetApplicationSettings(settings.Put()) == S_OK;
     }},
    {L"raterkit.dll",
     [](const SiblingLibrary& module) {
       FileTrustFacts facts = {};
       facts.size = sizeof(facts);
       return module.Service<IFileTrust>()->Verify(kNoFile, &facts) == S_OK &&
              facts.state == kSignatureUnreadable &&
              module.Service<IFileRater>()->RateFile(kNoFile) == kRatingUnknown;
     }},
    {L"guardkit.dll",
     [](const SiblingLibrary& module) {
       return module.Service<ISafeguard>()->DeleteRecordedFile(kNoFile) == ERROR_FILE_NOT_FOUND;
     }},
    {L"tracekit.dll",
     [](const SiblingLibrary& module) { return module.Service<IDebugLog>()->SetEnabled(0) == S_OK; }},
    {L"StartupManagerHelper.dll", UseLibrary},
};

// The system's libraries stay, as in a host that uses them itself: what they keep is none of the modules'.
void KeepLibrariesOfTheSystem() {
  const ScopedHandle modules(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, 0));
  const std::wstring own = ThisFolder();
  MODULEENTRY32W entry = {};
  entry.dwSize = sizeof(entry);
  for (BOOL more = Module32FirstW(modules.Get(), &entry); more; more = Module32NextW(modules.Get(), &entry)) {
    if (!std::wstring_view(entry.szExePath).starts_with(own)) LoadLibraryW(entry.szExePath);
  }
}

// Used by this thread, by one that ends before the module is freed, and by one that outlives it.
bool LoadUseAndFree(const ModuleRow& row, bool first = false) {
  std::promise<void> used;
  std::promise<void> freed;
  std::thread other;
  bool good = true;
  {
    const SiblingLibrary module(row.file);
    const auto use = [&] { good = row.use(module) && good; };
    other = std::thread([&] {
      use();
      used.set_value();
      freed.get_future().wait();
    });
    used.get_future().wait();
    use();
    std::thread(use).join();
    if (first) KeepLibrariesOfTheSystem();
  }
  freed.set_value();
  other.join();
  return good && GetModuleHandleW(row.file) == nullptr;
}

// Threads that use the module once and end, while it stays loaded.
bool ThreadsLeaveNothing(const ModuleRow& row) {
  const SiblingLibrary module(row.file);
  return LeavesNothing([&] { return std::async(std::launch::async, row.use, std::cref(module)).get(); });
}

// A process of its own: what a module has from another stays loaded.
SMH_CHILD(LoadUseAndFreeModule) {
  const ModuleRow& row = *std::ranges::find(kModules, arguments.at(0), &ModuleRow::file);
  if (!LoadUseAndFree(row, true)) return 1;
  if (!ThreadsLeaveNothing(row)) return 2;
  return LeavesNothing([&] { return LoadUseAndFree(row); }) ? 0 : 3;
}

TEST(UnloadTest, LoadingAndFreeingAModuleManyTimesLeavesNothingBehind) {
  for (const ModuleRow& row : kModules) {
    SCOPED_TRACE(row.file);
    const ChildResult result = RunChild(L"LoadUseAndFreeModule", {row.file}, 120'000);
    EXPECT_EQ(result.exitCode, 0u) << result.output;
  }
}

}  // namespace
}  // namespace smh::test
