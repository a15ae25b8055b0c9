#include "hosts/gui/main_window.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/window_settings.h"

#include <algorithm>

namespace smh {

namespace {

constexpr wchar_t kClassName[] = L"StartupManagerMain";
constexpr UINT kQueueMessage = WM_APP + 1;
constexpr UINT kSafetyInterval = 500;
constexpr SIZE kFirstSize = {1080, 700};
constexpr SIZE kLeastSize = {560, 360};
constexpr int kLeastPane = 120;

RECT ClientArea(HWND window) noexcept {
  RECT area;
  GetClientRect(window, &area);
  return area;
}

// A place that is on a screen by now.
bool IsVisible(const RECT& place) noexcept {
  return MonitorFromRect(&place, MONITOR_DEFAULTTONULL) != nullptr;
}

}  // namespace

MainWindow::MainWindow(Worker& worker, UiQueue& queue)
    : worker_(worker),
      queue_(queue),
      frame_{nullptr, worker, account_, [this] { Update(); },
             [this](const std::wstring& text) {
               said_ = text;
               Update();
             }} {}

MainWindow::~MainWindow() {
  queue_.Detach();
}

void MainWindow::Open(int showCommand) {
  const HMENU menu = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_MENU));
  const std::wstring title =
      account_.elevated ? kProgramTitle + (L" \u2013 Administrator " + account_.name) : kProgramTitle;
  Create({.className = kClassName,
          .title = title.c_str(),
          .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
          .menu = menu});
  const bool wasMaximized = !LoadNumbers(L"Window", 5).empty() && LoadNumbers(L"Window", 5)[4] != 0;
  ShowWindow(Handle(), wasMaximized && showCommand == SW_SHOWDEFAULT ? SW_SHOWMAXIMIZED : showCommand);
  SetFocus(view_->MainControl());
}

void MainWindow::OnCreate() {
  frame_.window = Handle();
  dpi_ = DpiOf(Handle());
  bar_.Create(Handle());
  search_ =
      CreateWindowExW(WS_EX_CLIENTEDGE, WC_EDITW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, 0,
                      0, 0, 0, Handle(), reinterpret_cast<HMENU>(IDC_SEARCH), nullptr, nullptr);
  SendMessageW(search_, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(L"Search (Ctrl+F)"));
  banner_ = CreateWindowExW(0, WC_STATICW, L"",
                            WS_CHILD | WS_CLIPSIBLINGS | SS_NOPREFIX | SS_CENTERIMAGE | SS_ENDELLIPSIS, 0, 0,
                            0, 0, Handle(), reinterpret_cast<HMENU>(IDC_BANNER), nullptr, nullptr);
  tree_.Create(Handle(), [this](const LocationTree::Node& node) { ShowNode(node); });
  splitter_.Open(Handle(), Splitter::Direction::kLeftRight, [this](int position) {
    treeWidth_ = MulDiv(position, USER_DEFAULT_SCREEN_DPI, dpi_);
    Layout();
  });
  entries_ = std::make_unique<EntriesView>(Handle(), frame_);
  programs_ = std::make_unique<ProgramsView>(Handle(), frame_);
  undo_ = std::make_unique<UndoView>(Handle(), frame_);
  status_ =
      CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SBARS_SIZEGRIP, 0,
                      0, 0, 0, Handle(), reinterpret_cast<HMENU>(IDC_STATUS), nullptr, nullptr);
  view_ = entries_.get();
  ApplyDpi();
  LoadLook();
  view_->Show(true);
  tree_.Build(allLocations_);
  bar_.ShowButton(CMD_RESTART_ELEVATED, !account_.elevated);
  queue_.Attach(Handle(), kQueueMessage);
  // The loop of a dialog that closes may drop a posted message.
  SetTimer(Handle(), 1, kSafetyInterval, nullptr);
  worker_.Listen({[this](ListNews& news) {
                    if (!news.events.empty()) undo_->Refresh();
                    entries_->OnNews(news);
                    tree_.ShowCounts(entries_->Rows());
                  },
                  [this](const std::wstring& text) { ShowError(frame_, text); }});
  Refresh();
  Update();
}

void MainWindow::LoadLook() {
  SIZE size = {Scaled(kFirstSize.cx, dpi_), Scaled(kFirstSize.cy, dpi_)};
  RECT screen = {};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
  size.cx = std::min(size.cx, screen.right - screen.left);
  size.cy = std::min(size.cy, screen.bottom - screen.top);
  SetWindowPos(Handle(), nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  if (const auto window = LoadNumbers(L"Window", 5); !window.empty()) {
    const RECT place = {window[0], window[1], window[0] + window[2], window[1] + window[3]};
    if (IsVisible(place)) {
      SetWindowPos(Handle(), nullptr, window[0], window[1], window[2], window[3],
                   SWP_NOZORDER | SWP_NOACTIVATE);
    }
  }
  if (const auto panes = LoadNumbers(L"Panes", 2); !panes.empty()) {
    treeWidth_ = panes[0];
    entries_->SetDetailsHeight(panes[1]);
  }
  if (const auto columns = LoadNumbers(L"Columns", EntryColumns().size()); !columns.empty()) {
    entries_->SetColumnWidths(columns);
  }
  if (const auto order = LoadNumbers(L"Order", 2); !order.empty() && order[0] >= 0) {
    entries_->SortBy(static_cast<std::size_t>(order[0]), order[1] != 0);
  }
  if (const auto all = LoadNumbers(L"AllLocations", 1); !all.empty()) allLocations_ = all[0] != 0;
}

void MainWindow::SaveLook() const {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof(placement);
  if (GetWindowPlacement(Handle(), &placement)) {
    const RECT& place = placement.rcNormalPosition;
    SaveNumbers(L"Window",
                {static_cast<int>(place.left), static_cast<int>(place.top),
                 static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
                 placement.showCmd == SW_SHOWMAXIMIZED ? 1 : 0});
  }
  SaveNumbers(L"Panes", {treeWidth_, entries_->DetailsHeight()});
  SaveNumbers(L"Columns", entries_->ColumnWidths());
  SaveNumbers(L"Order",
              {static_cast<int>(entries_->Rows().SortColumn()), entries_->Rows().Descending() ? 1 : 0});
  SaveNumbers(L"AllLocations", {allLocations_ ? 1 : 0});
}

void MainWindow::ApplyDpi() {
  ScopedFont font = MakeFont(dpi_);
  ScopedFont heading = MakeFont(dpi_, FontKind::kHeading);
  const ViewFonts fonts = {font.Get(), heading.Get()};
  bar_.SetDpi(dpi_, font.Get());
  bar_.ShowButton(CMD_RESTART_ELEVATED, !account_.elevated);
  tree_.SetDpi(dpi_, font.Get());
  for (View* const view : Views()) view->SetDpi(dpi_, fonts);
  for (const HWND control : {search_, status_, banner_}) {
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), TRUE);
  }
  font_ = std::move(font);
  heading_ = std::move(heading);
}

void MainWindow::OnDpiChanged(int dpi, const RECT& suggested) {
  dpi_ = dpi;
  ApplyDpi();
  SetWindowPos(Handle(), nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
               suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
  Layout();
  Update();
}

void MainWindow::Layout() {
  if (view_ == nullptr || IsIconic(Handle())) return;
  SendMessageW(status_, WM_SIZE, 0, 0);
  const RECT area = ClientArea(Handle());
  const int width = static_cast<int>(area.right);
  const int margin = Scaled(4, dpi_);
  const int parts[] = {std::max(width - Scaled(420, dpi_), Scaled(100, dpi_)),
                       std::max(width - Scaled(200, dpi_), Scaled(200, dpi_)), -1};
  SendMessageW(status_, SB_SETPARTS, std::size(parts), reinterpret_cast<LPARAM>(parts));
  const int statusHeight = static_cast<int>(ClientArea(status_).bottom);
  const int topHeight = std::max(bar_.Height(), FontHeight(search_, font_.Get()) + Scaled(10, dpi_));
  LayoutTop(width, margin / 2, topHeight);
  int top = topHeight + margin;
  const bool hasBanner = (GetWindowLongW(banner_, GWL_STYLE) & WS_VISIBLE) != 0;
  if (hasBanner) {
    const int height = FontHeight(banner_, font_.Get()) + Scaled(8, dpi_);
    MoveWindow(banner_, margin * 2, top, width - margin * 4, height, TRUE);
    top += height;
  }
  const int bottom = static_cast<int>(area.bottom) - statusHeight;
  const int bar = Scaled(Splitter::kThickness, dpi_);
  const int least = Scaled(kLeastPane, dpi_);
  const int tree = std::clamp(Scaled(treeWidth_, dpi_), least, std::max(width - least - bar, least));
  MoveWindow(tree_.Handle(), 0, top, tree, bottom - top, TRUE);
  MoveWindow(splitter_.Handle(), tree, top, bar, bottom - top, TRUE);
  view_->Place({tree + bar, top, width, bottom});
}

void MainWindow::LayoutTop(int width, int top, int height) const {
  const int margin = Scaled(4, dpi_);
  const int searchWidth = std::min(Scaled(220, dpi_), width / 3);
  const int searchHeight = FontHeight(search_, font_.Get()) + Scaled(8, dpi_);
  MoveWindow(bar_.Handle(), margin, top, width - searchWidth - 3 * margin, height, TRUE);
  MoveWindow(search_, width - searchWidth - margin, top + (height - searchHeight) / 2, searchWidth,
             searchHeight, TRUE);
}

LRESULT MainWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      OnCreate();
      return 0;
    case WM_SIZE:
      Layout();
      return 0;
    case WM_GETMINMAXINFO: {
      auto& limits = *reinterpret_cast<MINMAXINFO*>(lParam);
      limits.ptMinTrackSize = {Scaled(kLeastSize.cx, dpi_), Scaled(kLeastSize.cy, dpi_)};
      return 0;
    }
    case WM_DPICHANGED:
      OnDpiChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return 0;
    case WM_SETFOCUS:
      if (view_ != nullptr) SetFocus(view_->MainControl());
      return 0;
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
    case WM_COMMAND:
      OnCommand(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_INITMENUPOPUP:
      OnMenuOpens(reinterpret_cast<HMENU>(wParam));
      return 0;
    case WM_CONTEXTMENU:
      OnContextMenu(reinterpret_cast<HWND>(wParam),
                    {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
      return 0;
    case kQueueMessage:
      queue_.RunAll();
      return 0;
    case kUpdateMessage:
      UpdateNow();
      return 0;
    case WM_TIMER:
      queue_.RunAll();
      if (updateWaits_) UpdateNow();
      return 0;
    case WM_CLOSE:
      SaveLook();
      DestroyWindow(Handle());
      return 0;
    case WM_ENDSESSION:
      if (wParam != FALSE) SaveLook();
      return 0;
    case WM_DESTROY:
      queue_.Detach();
      entries_->ForgetImages();
      programs_->ForgetImages();
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcW(Handle(), message, wParam, lParam);
  }
}

void MainWindow::RunMessages() {
  const HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_ACCELERATORS));
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    // The edit field has its own meaning of Del, Ctrl+A, Ctrl+C and Ctrl+Z.
    const bool isEditing = message.hwnd == search_ && message.message == WM_KEYDOWN &&
                           message.wParam != VK_F5 && message.wParam != VK_F6;
    if (isEditing &&
        (message.wParam == VK_ESCAPE || message.wParam == VK_RETURN || message.wParam == VK_DOWN)) {
      if (message.wParam == VK_ESCAPE) SetWindowTextW(search_, L"");
      SetFocus(view_->MainControl());
      continue;
    }
    if (!isEditing && TranslateAcceleratorW(Handle(), keys, &message) != 0) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace smh
