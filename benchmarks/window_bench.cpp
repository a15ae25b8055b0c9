// The window as its user waits for it: until rows stand on the screen, until the list is whole, and for the
// answer to a key, a click and a switch. Worst of ten, since a user minds the worst.

#include "benchmarks/bench.h"
#include "benchmarks/sample_entries.h"
#include "benchmarks/window_probe.h"
#include "hosts/gui/resource.h"
#include "infra/registry/registry_values.h"

#include <commctrl.h>

#include <algorithm>

namespace smh::bench {
namespace {

constexpr int kTries = 10;
constexpr int kMany = 10'000;
constexpr int kPrograms = 40;
const std::wstring kSettings = L"Software\\Quillmark\\Startup Manager\\Settings\\startupmanager.exe";

template <typename Measure>
double WorstOf(int tries, Measure&& measure) {
  double worst = 0;
  for (int i = 0; i < tries; ++i) worst = std::max(worst, static_cast<double>(measure()));
  return worst;
}

// Every start is a first one: the window stands as it does at first.
WindowProbe Start() {
  RegDeleteTreeW(HKEY_CURRENT_USER, kSettings.c_str());
  return WindowProbe(L"startupmanager.exe", {}, L"StartupManagerMain", IDC_ENTRIES);
}

double TimeToPage() {
  return Start().UntilPageIsPainted();
}

double TimeOfBareWindow(int rows) {
  return WindowProbe(L"window_floor.exe", {std::to_wstring(rows)}, L"BareListWindow", 1003)
      .UntilPageIsPainted();
}

double TimeOfCommandLine() {
  return Microseconds([] {
    test::ChildProcess process(test::ThisFolder() + L"startupctl.exe", {L"list"});
    REQUIRE(process.Finish().exitCode == 0);
  });
}

int CountOfWholeList() {
  const WindowProbe window = Start();
  int count = 0;
  do {
    count = window.Count();
    Sleep(2'000);
  } while (count == 0 || count != window.Count());
  window.UntilComplete(count, IDC_STATUS, L"Reading");
  return count;
}

void MeasureStart(const std::string& what, int count, double allowed) {
  TimeToPage();
  const double page = WorstOf(kTries, TimeToPage);
  const double bare = WorstOf(kTries, [count] { return TimeOfBareWindow(count); });
  AddRow("window: first page of rows, " + what + " (reference: bare window)", "us", page, bare, kNoGoal);
  AddRow("window: first page of rows, " + what + " (reference: what is allowed)", "us", page,
         allowed > 0 ? allowed : bare + 150'000, 1);
  const Pair whole = Alternate(
      kTries, [count] { return Start().UntilComplete(count, IDC_STATUS, L"Reading"); }, TimeOfCommandLine);
  AddRow("window: complete list, " + what + " (reference: startupctl list)", "us", whole.ours,
         whole.reference, 1.1);
}

double TimeToType(const WindowProbe& window, std::wstring_view text) {
  const HWND search = window.Control(IDC_SEARCH);
  double worst = 0;
  for (const wchar_t letter : text) worst = std::max(worst, window.Answer(search, WM_CHAR, letter, 1));
  for (std::size_t i = 0; i < text.size(); ++i) {
    worst = std::max(worst, window.Answer(search, WM_CHAR, VK_BACK, 1));
  }
  return worst;
}

void MeasureAnswers(const WindowProbe& window) {
  const double key = WorstOf(kTries, [&] { return TimeToType(window, L"ent 77"); });
  AddRow("window: a key in the search, 10000 entries (reference: 50 ms)", "us", key, 50'000, 1);
  const auto header = reinterpret_cast<HWND>(SendMessageW(window.List(), LVM_GETHEADER, 0, 0));
  const LPARAM place = MAKELPARAM(40, 8);
  const double sorting = WorstOf(kTries, [&] {
    return window.Answer(header, WM_LBUTTONDOWN, MK_LBUTTON, place) +
           window.Answer(header, WM_LBUTTONUP, 0, place);
  });
  AddRow("window: sorting, 10000 entries (reference: 100 ms)", "us", sorting, 100'000, 1);
  const double page =
      WorstOf(kTries, [&] { return window.Answer(window.List(), WM_VSCROLL, SB_PAGEDOWN, 0); });
  AddRow("window: a page further, 10000 entries (reference: 16 ms)", "us", page, 16'000, 1);
}

bool IsInRun(const std::wstring& name) {
  return RegGetValueW(HKEY_CURRENT_USER, test::kRunKey.c_str(), name.c_str(), RRF_RT_ANY, nullptr, nullptr,
                      nullptr) == ERROR_SUCCESS;
}

// From the moment when the change stands in the registry. The entry is the only row that is shown.
double TimeToShowSwitch(const WindowProbe& window, bool on) {
  const std::wstring name = EntryName(0);
  window.Command(on ? CMD_ENABLE : CMD_DISABLE);
  while (IsInRun(name) != on) Sleep(0);
  return Microseconds([&] {
    while (window.IsChecked(0) != on) Sleep(0);
  });
}

void MeasureSwitch(const WindowProbe& window) {
  const std::wstring name = EntryName(0);
  window.Answer(window.Control(IDC_SEARCH), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
  while (window.Count() != 1) Sleep(10);
  const LPARAM place = MAKELPARAM(80, 34);
  SendMessageW(window.List(), WM_LBUTTONDOWN, MK_LBUTTON, place);
  SendMessageW(window.List(), WM_LBUTTONUP, 0, place);
  const double shown = WorstOf(
      kTries, [&] { return std::max(TimeToShowSwitch(window, false), TimeToShowSwitch(window, true)); });
  AddRow("window: a switch is shown, 10000 entries (reference: 100 ms)", "us", shown, 100'000, 1);
  window.Answer(window.Control(IDC_SEARCH), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L""));
}

TEST_CASE("The sample machine") {
  MeasureStart("sample machine", CountOfWholeList(), 0);
}

TEST_CASE("Ten thousand entries") {
  const Programs programs(kPrograms);
  RunValues values(programs);
  values.Fill(kMany);
  const int count = CountOfWholeList();
  REQUIRE(count >= kMany);
  MeasureStart("10000 entries", count, 500'000);

  const WindowProbe window = Start();
  window.UntilComplete(count, IDC_STATUS, L"Reading");
  MeasureSwitch(window);
  MeasureAnswers(window);
}

}  // namespace
}  // namespace smh::bench
