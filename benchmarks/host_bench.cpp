// The library as a host has it: what calls across the boundary cost, what waiting costs, what loading costs.

#include "benchmarks/bench.h"
#include "benchmarks/minimal_item.h"
#include "benchmarks/sample_entries.h"
#include "benchmarks/system_calls.h"
#include "core/contracts/StartupManagerHelper.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/import_function.h"
#include "tests/support/process_counts.h"
#include "tests/support/waiting.h"

#include <oleauto.h>

#include <filesystem>
#include <stdexcept>

namespace smh::bench {
namespace {

std::wstring Beside(const wchar_t* name) {
  wchar_t own[MAX_PATH];
  GetModuleFileNameW(nullptr, own, MAX_PATH);
  return (std::filesystem::path(own).parent_path() / name).wstring();
}

double TimeToLoad(const wchar_t* file, const wchar_t* id) {
  return Microseconds([&] {
    const HMODULE module = LoadLibraryW(Beside(file).c_str());
    ImportFunction<GetInstanceFunction>(module, "GetInstance")(id, 0);
    FreeLibrary(module);
  });
}

// Comes first: later the library stays loaded.
TEST_CASE("Size and start") {
  const auto size = [](const wchar_t* file) {
    return static_cast<double>(std::filesystem::file_size(Beside(file))) / 1024;
  };
  AddRow("size of the library, empty one for comparison", "KB", size(L"StartupManagerHelper.dll"),
         size(L"empty_module.dll"), kNoGoal);
  const Pair times = Alternate(
      10, [] { return TimeToLoad(L"StartupManagerHelper.dll", IStartupManager::kId); },
      [] { return TimeToLoad(L"empty_module.dll", L""); });
  AddRow("load, GetInstance, free; empty library for comparison", "us", times.ours, times.reference, kNoGoal);
}

constexpr int kPrograms = 40;

// The keys that the library watches from the moment it is loaded: emptied before that and put back at the
// end.
RunValues& Values() {
  static const Programs programs(kPrograms);
  static RunValues values(programs);
  return values;
}

// Loaded once and for good, as by a host.
IStartupItemCollection& Collection() {
  Values();
  static IStartupItemCollection* const collection = [] {
    const HMODULE module = LoadLibraryW(Beside(L"StartupManagerHelper.dll").c_str());
    const auto get = ImportFunction<GetInstanceFunction>(module, "GetInstance");
    if (get == nullptr) throw std::runtime_error("the library cannot be loaded");
    IStartupItemCollection* items = nullptr;
    static_cast<IStartupManager*>(get(IStartupManager::kId, 0))->GetStartupItems(&items);
    return items;
  }();
  return *collection;
}

void Read(int count) {
  Collection();
  Values().Fill(count);
  Collection().Refresh();
  if (!test::WaitUntil([] { return Collection().GetReadState() == kReadStateComplete; }, 120'000)) {
    throw std::runtime_error("reading takes too long");
  }
  REQUIRE(Collection().GetCount() == count);
}

std::wstring CommandOf(std::int32_t index) {
  ComPtr<IStartupItem> item;
  Collection().GetItem(index, item.Put());
  VARIANT text;
  item->GetProperty(kPropertyCommand, &text);
  const std::wstring command(text.bstrVal == nullptr ? L"" : text.bstrVal);
  VariantClear(&text);
  return command;
}

void AskText(std::int32_t index) {
  ComPtr<IStartupItem> item;
  Collection().GetItem(index, item.Put());
  VARIANT text;
  item->GetProperty(kPropertyCommand, &text);
  VariantClear(&text);
}

TEST_CASE("Boundary calls") {
  Read(100);
  Collection().Stop();
  MinimalList& list = MakeMinimalList(CommandOf(17));
  const auto million = [](auto&& call) {
    return [call] {
      return Microseconds([&] {
        for (int i = 0; i < 100'000; ++i) call(i % 100);
      });
    };
  };
  // Ten times a hundred thousand, in turns.
  const Pair times = Alternate(10, million([](int i) { AskText(i); }), million([&](int) {
                                 MinimalItem* const item = list.Make();
                                 VARIANT text;
                                 item->GetText(&text);
                                 VariantClear(&text);
                                 item->Free();
                               }));
  AddRow("boundary: item, text, release", "ns", times.ours / 100, times.reference / 100, 2);
}

double WalkAll() {
  return Microseconds([] {
    const std::int32_t count = Collection().GetCount();
    for (std::int32_t i = 0; i < count; ++i) {
      ComPtr<IStartupItem> item;
      Collection().GetItem(i, item.Put());
      for (std::int32_t property = kPropertyLocation; property <= kPropertyRating; ++property) {
        VARIANT value;
        item->GetProperty(property, &value);
        VariantClear(&value);
      }
    }
  });
}

double FastestWalk() {
  double best = WalkAll();
  for (int i = 0; i < 5; ++i) best = std::min(best, WalkAll());
  return best;
}

TEST_CASE("Walk over all items and properties") {
  Read(1'000);
  Collection().Stop();
  const double small = FastestWalk();
  Read(10'000);
  Collection().Stop();
  AddRow("growth 1000 to 10000, walk of a host", "us", FastestWalk(), small, 11);
}

TEST_CASE("Waiting") {
  Read(10);
  static const bool counted = [] {
    CountSystemCalls({L"StartupManagerHelper.dll"});
    return true;
  }();
  REQUIRE(counted);
  Sleep(2'000);
  ResetSystemCalls();
  constexpr int kSeconds = 5;
  Sleep(kSeconds * 1'000);
  AddNote("five idle seconds: " + SystemCallList());
  const int registry = CountOf(SystemCall::RegOpenKeyExW) + CountOf(SystemCall::RegEnumValueW) +
                       CountOf(SystemCall::RegQueryValueExW) + CountOf(SystemCall::RegNotifyChangeKeyValue);
  REQUIRE(registry == 0);
  // Six locations, one wait; polls of the first or last second may fall outside or inside.
  AddRow("calls in an idle second (reference: 6 tests + 1 wait)", "calls",
         static_cast<double>(TotalSystemCalls()) / kSeconds, 7.0 * (kSeconds + 1) / kSeconds, 1);

  double longest = 0;
  for (int i = 0; i < 5; ++i) {
    const std::wstring command = L"C:\\changed" + std::to_wstring(i) + L".exe";
    // At another point of the reader's second each time.
    Sleep(1'000 + 170 * static_cast<DWORD>(i));
    Values().SetCommand(0, command);
    longest =
        std::max(longest, Microseconds([&] { test::WaitUntil([&] { return CommandOf(0) == command; }); }));
  }
  AddRow("a change is noticed (reference: 1000 ms)", "ms", longest / 1'000, 1'000, 1.1);

  const int handles = test::HandleCount();
  const std::size_t bytes = test::HeapBytes();
  for (int i = 0; i < 10'000; ++i) Values().SetCommand(0, L"C:\\often" + std::to_wstring(i) + L".exe");
  REQUIRE(test::WaitUntil([] { return CommandOf(0) == L"C:\\often9999.exe"; }));
  Sleep(1'500);
  AddRow("handles after 10000 changes", "handles", test::HandleCount(), handles, 1);
  const double grown = (static_cast<double>(test::HeapBytes()) - static_cast<double>(bytes)) / 1024;
  AddRow("heap after 10000 changes (reference: 64 KB)", "KB", std::max(grown, 0.0), 64, 1);
  Collection().Stop();
}

}  // namespace
}  // namespace smh::bench
