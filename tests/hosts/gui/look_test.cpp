// What the window shows, and how it looks: the screenshots are for people.
#include "hosts/common/text_encoding.h"
#include "hosts/gui/resource.h"
#include "tests/hosts/cli/startupctl_process.h"
#include "tests/hosts/gui/gui_program.h"
#include "tests/support/waiting.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

namespace smh::test {

namespace {

// The entries as startupctl lists them.
nlohmann::json Listed(const std::vector<std::wstring>& options = {}) {
  std::vector<std::wstring> arguments = {L"list", L"--json"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return nlohmann::json::parse(RunStartupctl(arguments).output);
}

bool Contains(const std::vector<std::wstring>& texts, const std::wstring& text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

TEST(LookTest, ShowsTheSampleMachine) {
  const GuiProgram gui(GuiProgram::Look::kFresh);
  std::multiset<std::wstring> expected;
  for (const auto& item : Listed()) {
    expected.insert(FromUtf8(item["caption"].get<std::string>()) + (item["enabled"] ? L" on" : L" off"));
  }
  std::multiset<std::wstring> shown;
  for (int row = 0; row < gui.Count(IDC_ENTRIES); ++row) {
    const std::wstring cell = gui.Cell(IDC_ENTRIES, row, 0);
    shown.insert(cell.substr(0, cell.find(L"  \u2013  ")) + (gui.IsChecked(row) ? L" on" : L" off"));
  }
  EXPECT_EQ(shown, expected);
  EXPECT_TRUE(Contains(gui.NodeTexts(), L"All entries (" + std::to_wstring(expected.size()) + L")"));
  EXPECT_EQ(gui.Cell(IDC_ENTRIES, gui.RowOf(IDC_ENTRIES, L"Lost Agent"), 1), L"On, file missing");
  gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Host")});
  EXPECT_TRUE(WaitUntil([&] { return gui.Detail(L"File") == L"C:\\Samples\\Temp\\scvhost.exe"; }));
  EXPECT_TRUE(gui.Detail(L"Trust").starts_with(L"Risky"));
  // The files are checked behind the list.
  const auto cell = [&](const wchar_t* name, int column) {
    return gui.Cell(IDC_ENTRIES, gui.RowOf(IDC_ENTRIES, name), column);
  };
  EXPECT_TRUE(WaitUntil([&] { return cell(L"Fernhill Update", 3).ends_with(L"Broken signature"); }));
  EXPECT_TRUE(WaitUntil([&] { return gui.Detail(L"SHA-256").size() == 64; }));
  const std::wstring switchedOff = L"On, but switched off in Task Manager";
  EXPECT_EQ(cell(L"Card Watch", 1), switchedOff);
  EXPECT_GT(SendMessageW(gui.Control(IDC_ENTRIES), LVM_GETCOLUMNWIDTH, 1, 0),
            gui.TextWidth(IDC_ENTRIES, switchedOff) + 12);
  EXPECT_TRUE(WaitUntil([&] { return !gui.Status(0).starts_with(L"Checking"); }, 60'000));
  const int shownBefore = gui.Count(IDC_ENTRIES);
  gui.Command(CMD_HIDE_VERIFIED);
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) < shownBefore; }));
  gui.Command(CMD_HIDE_VERIFIED);
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) == shownBefore; }));
  gui.Screenshot(L"startupmanager");
  gui.Command(CMD_ALL_LOCATIONS);
  const std::size_t all = Listed({L"--all"}).size();
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_ENTRIES) == static_cast<int>(all); }));
  EXPECT_EQ(gui.Selection(IDC_ENTRIES), std::vector<int>{gui.RowOf(IDC_ENTRIES, L"Host")});
  EXPECT_TRUE(gui.SelectNode(L"Browser helper objects"));
  EXPECT_GE(gui.RowOf(IDC_ENTRIES, L"Keypad Browser Helper"), 0);
  gui.Screenshot(L"startupmanager-all-locations");
}

TEST(LookTest, FiltersAndSorts) {
  const GuiProgram gui(GuiProgram::Look::kFresh);
  const int all = gui.Count(IDC_ENTRIES);
  gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Inkwell")});
  gui.Search(L"QUILL inkwell");
  const auto companies = gui.Column(IDC_ENTRIES, 2);
  EXPECT_LT(companies.size(), static_cast<std::size_t>(all));
  EXPECT_EQ(std::count(companies.begin(), companies.end(), L"Quillmark"),
            static_cast<std::ptrdiff_t>(companies.size()));
  EXPECT_EQ(gui.Selection(IDC_ENTRIES), std::vector<int>{gui.RowOf(IDC_ENTRIES, L"Inkwell")});
  EXPECT_TRUE(WaitUntil([&] {
    return gui.Status(1) == std::to_wstring(companies.size()) + L" of " + std::to_wstring(all) + L" entries";
  }));
  gui.Search(L"");
  for (const bool descending : {false, true}) {
    gui.ClickHeader(2);
    std::vector<std::wstring> column;
    EXPECT_TRUE(WaitUntil([&] {
      column = gui.Column(IDC_ENTRIES, 2);
      if (descending) std::reverse(column.begin(), column.end());
      return std::is_sorted(column.begin(), column.end(), [](const auto& a, const auto& b) {
        return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.c_str(), -1, b.c_str(), -1) ==
               CSTR_LESS_THAN;
      });
    }));
  }
  EXPECT_EQ(gui.Selection(IDC_ENTRIES), std::vector<int>{gui.RowOf(IDC_ENTRIES, L"Inkwell")});
}

TEST(LookTest, RemembersHowItWasLeft) {
  const RECT place = {40, 30, 40 + 900, 30 + 600};
  {
    const GuiProgram gui(GuiProgram::Look::kFresh);
    SetWindowPos(gui.Window(), nullptr, place.left, place.top, 900, 600, SWP_NOZORDER);
    SendMessageW(gui.Control(IDC_ENTRIES), LVM_SETCOLUMNWIDTH, 2, 77);
    gui.ClickHeader(3);
  }
  const GuiProgram gui(GuiProgram::Look::kAsLeft);
  RECT now;
  GetWindowRect(gui.Window(), &now);
  EXPECT_TRUE(EqualRect(&now, &place));
  EXPECT_EQ(SendMessageW(gui.Control(IDC_ENTRIES), LVM_GETCOLUMNWIDTH, 2, 0), 77);
  EXPECT_TRUE(gui.Cell(IDC_ENTRIES, 0, 3).ends_with(L"Risky"));
}

// Controls lie beside and below each other inside the window, whatever the resolution.
TEST(LookTest, IsSharpAndCompleteAtEveryResolution) {
  const GuiProgram gui(GuiProgram::Look::kFresh);
  gui.Select(IDC_ENTRIES, {gui.RowOf(IDC_ENTRIES, L"Aurora Mixer")});
  EXPECT_TRUE(WaitUntil([&] { return !gui.Detail(L"File").empty(); }));
  const auto placeOf = [&](int id) {
    RECT rect;
    GetWindowRect(gui.Control(id), &rect);
    MapWindowPoints(nullptr, gui.Window(), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
  };
  for (const int dpi : {96, 144, 192}) {
    gui.SendDpiChange(dpi, {0, 0, MulDiv(800, dpi, 96), MulDiv(560, dpi, 96)});
    RECT area;
    GetClientRect(gui.Window(), &area);
    const RECT bar = placeOf(IDC_TOOLBAR), search = placeOf(IDC_SEARCH), tree = placeOf(IDC_TREE);
    const RECT list = placeOf(IDC_ENTRIES), details = placeOf(IDC_DETAILS), status = placeOf(IDC_STATUS);
    EXPECT_GE(search.bottom - search.top, MulDiv(20, dpi, 96)) << dpi;
    EXPECT_LE(bar.right, search.left) << dpi;
    EXPECT_LE(search.right, area.right) << dpi;
    EXPECT_LE(std::max(bar.bottom, search.bottom), tree.top) << dpi;
    EXPECT_LE(tree.right, list.left) << dpi;
    EXPECT_LE(list.bottom, details.top) << dpi;
    EXPECT_LE(details.bottom, status.top) << dpi;
    EXPECT_EQ(details.right, area.right) << dpi;
    EXPECT_GE(list.bottom - list.top, MulDiv(120, dpi, 96)) << dpi;
    gui.Screenshot(L"startupmanager-" + std::to_wstring(dpi) + L"dpi");
  }
}

std::vector<HWND> ShownChildren(HWND window) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsWindowVisible(child)) children.push_back(child);
  }
  return children;
}

TEST(LookTest, CoversNothingAtAnyWidth) {
  const GuiProgram gui(GuiProgram::Look::kFresh);
  // Wider than the screen, which only a window without a sizing frame may become.
  const LONG style = GetWindowLongW(gui.Window(), GWL_STYLE);
  SetWindowLongW(gui.Window(), GWL_STYLE, (style & ~WS_THICKFRAME) | static_cast<LONG>(WS_POPUP));
  for (const int dpi : {96, 192}) {
    for (const int width : {560, 700, 1'000, 1'920, 3'840}) {
      const std::string where = std::to_string(width) + " at " + std::to_string(dpi);
      gui.SendDpiChange(dpi, {0, 0, std::max(width, MulDiv(560, dpi, 96)), MulDiv(480, dpi, 96)});
      RECT client, area, other, common;
      GetWindowRect(gui.Window(), &area);
      EXPECT_EQ(area.right - area.left, std::max(width, MulDiv(560, dpi, 96)));
      GetClientRect(gui.Window(), &client);
      MapWindowPoints(gui.Window(), nullptr, reinterpret_cast<POINT*>(&client), 2);
      const std::vector<HWND> children = ShownChildren(gui.Window());
      for (const HWND child : children) {
        GetWindowRect(child, &area);
        EXPECT_TRUE(IntersectRect(&common, &area, &client) && EqualRect(&common, &area))
            << GetDlgCtrlID(child) << " leaves the window, " << where;
        for (const HWND sibling : children) {
          GetWindowRect(sibling, &other);
          EXPECT_TRUE(sibling == child || !IntersectRect(&common, &area, &other))
              << GetDlgCtrlID(child) << " and " << GetDlgCtrlID(sibling) << ", " << where;
        }
      }
      GetClientRect(gui.Control(IDC_TOOLBAR), &area);
      EXPECT_LE(gui.ButtonRect(CMD_REFRESH).right, area.right) << where;
      if (width <= 700)
        gui.Screenshot(L"width-" + std::to_wstring(width) + L"-" + std::to_wstring(dpi) + L"dpi");
    }
  }
}

TEST(LookTest, DefaultPrograms) {
  const GuiProgram gui(GuiProgram::Look::kFresh);
  gui.Command(CMD_DEFAULT_PROGRAMS);
  const auto listed = nlohmann::json::parse(RunStartupctl({L"clients", L"--json"}).output);
  EXPECT_TRUE(WaitUntil([&] { return gui.Count(IDC_PROGRAMS) == static_cast<int>(listed.size()); }));
  for (const auto& client : listed) {
    EXPECT_TRUE(Contains(gui.Column(IDC_PROGRAMS, 0), FromUtf8(client["name"].get<std::string>())));
  }
  EXPECT_FALSE(IsWindowVisible(gui.Control(IDC_ENTRIES)));
  EXPECT_FALSE(gui.CanRun(CMD_DELETE));
  gui.Screenshot(L"startupmanager-default-programs");
}

}  // namespace
}  // namespace smh::test
