// What the main window's commands do, and what its bars say.
#include "hosts/common/location_names.h"
#include "hosts/gui/entry_dialogs.h"
#include "hosts/gui/main_window.h"
#include "hosts/gui/resource.h"

namespace smh {

namespace {

void SetPart(HWND status, WPARAM part, const std::wstring& text) {
  SendMessageW(status, SB_SETTEXTW, part, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace

LRESULT MainWindow::OnNotify(const NMHDR& header) {
  if (view_ == nullptr) return 0;
  LRESULT result = 0;
  if (CommandBar::OnNotify(header) || tree_.OnNotify(header)) return 0;
  for (View* const view : Views()) {
    if (view->OnNotify(header, result)) return result;
  }
  return 0;
}

void MainWindow::OnCommand(UINT command, UINT code) {
  if (command == IDC_SEARCH) {
    if (code == EN_CHANGE) {
      view_->Search(TextOf(search_));
      Update();
    }
    return;
  }
  if (CanRun(command)) Run(command);
}

bool MainWindow::CanRun(UINT command) const {
  switch (command) {
    case CMD_REFRESH:
    case CMD_ALL_LOCATIONS:
    case CMD_FIND:
    case CMD_NEXT_PANE:
    case CMD_PREVIOUS_PANE:
    case CMD_ENTRIES:
    case CMD_DEFAULT_PROGRAMS:
    case CMD_UNDO_HISTORY:
    case CMD_ABOUT:
    case CMD_EXIT:
      return true;
    case CMD_RESTART_ELEVATED:
      return !account_.elevated;
    case CMD_UNDO:
      return view_ == undo_.get() ? undo_->CanRun(command) : undo_->CanUndoLatest();
    case CMD_REDO:
      return view_ == undo_.get() ? undo_->CanRun(command) : undo_->CanRedoLatest();
    default:
      return view_->CanRun(command);
  }
}

void MainWindow::Run(UINT command) {
  switch (command) {
    case CMD_REFRESH:
      return Refresh();
    case CMD_ALL_LOCATIONS:
      allLocations_ = !allLocations_;
      tree_.Build(allLocations_);
      return Refresh();
    case CMD_FIND:
      SetFocus(search_);
      SendMessageW(search_, EM_SETSEL, 0, -1);
      return;
    case CMD_NEXT_PANE:
    case CMD_PREVIOUS_PANE:
      return NextPane(command == CMD_PREVIOUS_PANE);
    case CMD_ENTRIES:
      return tree_.Select(LocationTree::Kind::kEntries);
    case CMD_DEFAULT_PROGRAMS:
      return tree_.Select(LocationTree::Kind::kPrograms);
    case CMD_UNDO_HISTORY:
      return tree_.Select(LocationTree::Kind::kUndo);
    case CMD_UNDO:
      return view_ == undo_.get() ? undo_->Run(command) : undo_->UndoLatest();
    case CMD_REDO:
      return view_ == undo_.get() ? undo_->Run(command) : undo_->RedoLatest();
    case CMD_ABOUT:
      return ShowAbout();
    case CMD_EXIT:
      SendMessageW(Handle(), WM_CLOSE, 0, 0);
      return;
    case CMD_RESTART_ELEVATED:
      return RestartAsAdministrator();
    default:
      return view_->Run(command);
  }
}

std::vector<View*> MainWindow::Views() const {
  return {entries_.get(), programs_.get(), undo_.get()};
}

void MainWindow::ShowNode(const LocationTree::Node& node) {
  switch (node.kind) {
    case LocationTree::Kind::kEntries:
      entries_->ShowLocations(node.locations);
      ShowView(*entries_);
      break;
    case LocationTree::Kind::kPrograms:
      ShowView(*programs_);
      break;
    case LocationTree::Kind::kUndo:
      ShowView(*undo_);
      break;
  }
  ShowBanner(node);
  Layout();
  Update();
}

void MainWindow::ShowView(View& view) {
  if (view_ == &view) return;
  view_->Show(false);
  view_ = &view;
  view_->Search(TextOf(search_));
  view_->Show(true);
  said_.clear();
}

// Whose entries these are, where that is not plain.
void MainWindow::ShowBanner(const LocationTree::Node& node) const {
  bool isUsers = false;
  for (std::int32_t location = kFirstLocation; location <= kLastLocation; ++location) {
    isUsers = isUsers || (node.locations[location] && IsUserLocation(location));
  }
  const std::wstring text = L"The entries of \u201Cthis user\u201D are those of " + account_.name +
                            L", not of " + account_.sessionUser + L", who is logged on.";
  SetWindowTextW(banner_, text.c_str());
  ShowWindow(banner_, isUsers && account_.IsForeign() ? SW_SHOWNA : SW_HIDE);
}

void MainWindow::Refresh() {
  said_.clear();
  if (view_ == programs_.get()) return programs_->Refresh();
  undo_->Refresh();
  worker_.Post([all = allLocations_](LibrarySession& session) { session.Refresh(all); });
}

// Many changes come together; one message later all of them are shown at once.
void MainWindow::Update() {
  if (updateWaits_ || Handle() == nullptr) return;
  updateWaits_ = true;
  PostMessageW(Handle(), kUpdateMessage, 0, 0);
}

void MainWindow::UpdateNow() {
  updateWaits_ = false;
  bar_.Update([this](UINT command) { return CanRun(command); });
  ShowStatus();
}

std::wstring MainWindow::ReadingText() const {
  switch (entries_->ReadState()) {
    case kReadStateReading:
      return L"Reading the locations\u2026";
    case kReadStateListed:
      return L"Reading the details of the files\u2026";
    default:
      return {};
  }
}

void MainWindow::ShowStatus() {
  const std::wstring reading = ReadingText();
  std::wstring text = reading.empty() ? said_ : reading;
  if (text.empty() && !account_.elevated && entries_->HasLockedEntries()) {
    text = L"Locked entries can be changed by an administrator: use the shield in the tool bar.";
  }
  SetPart(status_, 0, text.empty() ? L"Ready" : text);
  SetPart(status_, 1, view_->CountText());
  SetPart(status_, 2, account_.name);
}

void MainWindow::OnMenuOpens(HMENU menu) const {
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    const UINT command = GetMenuItemID(menu, i);
    if (command == 0 || command == static_cast<UINT>(-1)) continue;
    EnableMenuItem(menu, static_cast<UINT>(i), MF_BYPOSITION | (CanRun(command) ? MF_ENABLED : MF_GRAYED));
    if (command == CMD_ALL_LOCATIONS) {
      CheckMenuItem(menu, static_cast<UINT>(i), MF_BYPOSITION | (allLocations_ ? MF_CHECKED : MF_UNCHECKED));
    }
  }
}

void MainWindow::OnContextMenu(HWND control, POINT point) {
  if (control != view_->MainControl() || view_ != entries_.get()) return;
  if (point.x == -1 && point.y == -1) {
    // Asked for by the keyboard: beside the entry that has the focus.
    RECT row = {};
    const int focused = ListView_GetNextItem(control, -1, LVNI_FOCUSED);
    if (focused >= 0) ListView_GetItemRect(control, focused, &row, LVIR_LABEL);
    point = {row.left, row.bottom};
    ClientToScreen(control, &point);
  }
  const HMENU menu = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_ENTRY_MENU));
  TrackPopupMenu(GetSubMenu(menu, 0), TPM_RIGHTBUTTON, point.x, point.y, 0, Handle(), nullptr);
  DestroyMenu(menu);
}

void MainWindow::NextPane(bool backwards) const {
  const HWND panes[] = {tree_.Handle(), view_->MainControl(), search_};
  constexpr std::size_t kCount = std::size(panes);
  std::size_t now = 0;
  while (now < kCount && panes[now] != GetFocus()) ++now;
  SetFocus(panes[now == kCount ? 1 : (now + (backwards ? kCount - 1 : 1)) % kCount]);
}

void MainWindow::ShowAbout() const {
  MessageBoxW(Handle(),
              L"Startup Manager 1.0\n\nShows what Windows starts by itself, and lets you switch it off.\n"
              L"Nothing is lost: what you change can be taken back.",
              L"About Startup Manager", MB_OK | MB_ICONINFORMATION);
}

void MainWindow::RestartAsAdministrator() {
  if (RestartElevated(Handle())) SendMessageW(Handle(), WM_CLOSE, 0, 0);
}

}  // namespace smh
