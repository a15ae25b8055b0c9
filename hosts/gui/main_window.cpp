#include "hosts/gui/main_window.h"

#include "hosts/gui/context_menus.h"
#include "hosts/gui/key_help.h"
#include "hosts/gui/keyboard.h"
#include "hosts/gui/language_choice.h"
#include "hosts/gui/menus.h"
#include "hosts/gui/message_dialog.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/dialog_texts.h"
#include "hosts/gui/texts/frame_texts.h"
#include "hosts/gui/theme_window.h"
#include "hosts/gui/window_settings.h"

#include <utility>

namespace smh {

namespace {

constexpr wchar_t kClassName[] = L"StartupManagerMain";
constexpr UINT kQueueMessage = WM_APP + 1;
constexpr UINT kSafetyInterval = 500;
constexpr SIZE kFirstSize = {1080, 700};
constexpr SIZE kLeastSize = {560, 360};

}  // namespace

MainWindow::MainWindow(Worker& worker, TrustChecker& trust, UiQueue& queue)
    : worker_(worker),
      queue_(queue),
      actions_(worker),
      frame_{nullptr,
             worker,
             trust,
             account_,
             actions_,
             [this] { Update(); },
             [this](const std::wstring& text) {
               said_ = text;
               Update();
             }} {}

MainWindow::~MainWindow() {
  queue_.Detach();
}

void MainWindow::Open(int showCommand) {
  // The entries are read while the window is made.
  if (const auto all = LoadNumbers(L"AllLocations", 1); !all.empty()) allLocations_ = all[0] != 0;
  ReadEntries();
  const std::wstring title = account_.elevated ? Format(texts::kElevatedCaption, kProgramTitle, account_.name)
                                               : std::wstring(kProgramTitle);
  Create({.className = kClassName,
          .title = title.c_str(),
          .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
          .exStyle = IsMirrored(CurrentLanguage()) ? DWORD{WS_EX_LAYOUTRTL} : 0,
          .menu = MakeMenuBar()});
  ShowWindow(Handle(), WasMaximized() && showCommand == SW_SHOWDEFAULT ? SW_SHOWMAXIMIZED : showCommand);
  SetFocus(panes_.Shown().MainControl());
}

void MainWindow::OnCreate() {
  frame_.window = Handle();
  panes_.Create(frame_, [this](const LocationTree::Node& node) { ShowNode(node); });
  ThemeWindow(Handle(), [this] {
    panes_.SetDpi(panes_.Dpi());
    panes_.Layout();
    Update();
  });
  panes_.SetDpi(DpiOf(Handle()));
  LoadLook();
  panes_.Shown().Show(true);
  panes_.Tree().Build(allLocations_);
  queue_.Attach(Handle(), kQueueMessage);
  // The loop of a dialog that closes may drop a posted message.
  SetTimer(Handle(), 1, kSafetyInterval, nullptr);
  worker_.Listen({[this](ListNews& news) {
                    if (!news.events.empty()) panes_.Undo().RefreshWhenWritten();
                    panes_.Entries().OnNews(news);
                    panes_.Tree().ShowCounts(panes_.Entries().Rows());
                  },
                  [this](const std::wstring& text) {
                    said_.clear();
                    ShowError(frame_, text);
                  },
                  [this](const std::wstring& text) {
                    ShowError(frame_, text);
                    SendMessageW(Handle(), WM_CLOSE, 0, 0);
                  }});
  panes_.Undo().Refresh();
  Update();
}

void MainWindow::LoadLook() {
  LoadPlace(Handle(), {Scaled(kFirstSize.cx, panes_.Dpi()), Scaled(kFirstSize.cy, panes_.Dpi())});
  panes_.LoadLook();
}

void MainWindow::SaveLook() const {
  SavePlace(Handle());
  panes_.SaveLook();
  SaveNumbers(L"AllLocations", {allLocations_ && !onlyUsualBefore_ ? 1 : 0});
}

void MainWindow::OnDpiChanged(int dpi, const RECT& suggested) {
  panes_.SetDpi(dpi);
  SetWindowPos(Handle(), nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
               suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
  panes_.Layout();
  Update();
}

LRESULT MainWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      OnCreate();
      return 0;
    case WM_SIZE:
      panes_.Layout();
      // A mirrored window grows at its left: what lies between the panes moves with them.
      if (IsMirrored(CurrentLanguage())) InvalidateRect(Handle(), nullptr, TRUE);
      return 0;
    case WM_GETMINMAXINFO: {
      auto& limits = *reinterpret_cast<MINMAXINFO*>(lParam);
      limits.ptMinTrackSize = {Scaled(kLeastSize.cx, panes_.Dpi()), Scaled(kLeastSize.cy, panes_.Dpi())};
      return 0;
    }
    case WM_DPICHANGED:
      OnDpiChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return 0;
    case WM_SETFOCUS:
      panes_.RestoreFocus();
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) panes_.RememberFocus();
      break;
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
    case WM_COMMAND:
      OnCommand(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_INITMENUPOPUP:
      OnMenuOpens(reinterpret_cast<HMENU>(wParam));
      return 0;
    case WM_CONTEXTMENU:
      if (ShowContextMenu(Handle(), reinterpret_cast<HWND>(wParam),
                          {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))})) {
        return 0;
      }
      break;
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
      panes_.Entries().ForgetImages();
      panes_.Programs().ForgetImages();
      PostQuitMessage(0);
      return 0;
    default:
      break;
  }
  return DefWindowProcW(Handle(), message, wParam, lParam);
}

LRESULT MainWindow::OnNotify(const NMHDR& header) {
  if (!panes_.IsMade()) return 0;
  LRESULT result = 0;
  if (CommandBar::OnNotify(header) || panes_.Tree().OnNotify(header)) return 0;
  for (View* const view : panes_.Views()) {
    if (view->OnNotify(header, result)) return result;
  }
  return 0;
}

void MainWindow::OnCommand(UINT command, UINT code) {
  if (command == IDC_SEARCH) {
    if (code == EN_CHANGE) {
      panes_.Shown().Search(TextOf(panes_.SearchBox()));
      Update();
    }
    return;
  }
  if (CanRun(command)) Run(command);
}

bool MainWindow::CanRun(UINT command) const {
  if (MeansEdit(command) || MeansTree(command)) return true;
  switch (command) {
    case CMD_ALL_LOCATIONS:
      return !panes_.Entries().Rows().IsComparing();
    case CMD_REFRESH:
    case CMD_SAVE_STATE:
    case CMD_COMPARE_STATE:
    case CMD_FIND:
    case CMD_NEXT_PANE:
    case CMD_PREVIOUS_PANE:
    case CMD_ENTRIES:
    case CMD_DEFAULT_PROGRAMS:
    case CMD_UNDO_HISTORY:
    case CMD_ABOUT:
    case CMD_KEYS:
    case CMD_LANGUAGE_SYSTEM:
    case CMD_LANGUAGE_ENGLISH:
    case CMD_LANGUAGE_GERMAN:
    case CMD_LANGUAGE_HEBREW:
    case CMD_EXIT:
    case CMD_HIDE_NOTICE:
      return true;
    case CMD_RESTART_ELEVATED:
      return !account_.elevated;
    case CMD_UNDO:
      return panes_.Shows(panes_.Undo()) ? panes_.Undo().CanRun(command) : panes_.Undo().CanUndoLatest();
    case CMD_REDO:
      return panes_.Shows(panes_.Undo()) ? panes_.Undo().CanRun(command) : panes_.Undo().CanRedoLatest();
    case CMD_SEARCH_EVERYWHERE:
    case CMD_SHOW_ALL:
      return panes_.Shows(panes_.Entries());
    default:
      return panes_.Shown().CanRun(command);
  }
}

// The tree has one text to copy: that of the selected node.
bool MainWindow::MeansTree(UINT command) const {
  return command == CMD_COPY && GetFocus() == panes_.Tree().Handle();
}

void MainWindow::Run(UINT command) {
  if (MeansEdit(command)) return RunInEdit(command);
  if (MeansTree(command)) return (void)CopyToClipboard(Handle(), panes_.Tree().SelectedText());
  switch (command) {
    case CMD_REFRESH:
      return Refresh();
    case CMD_ALL_LOCATIONS:
      allLocations_ = !allLocations_;
      panes_.Tree().Build(allLocations_);
      return Refresh();
    case CMD_FIND:
      SetFocus(panes_.SearchBox());
      SendMessageW(panes_.SearchBox(), EM_SETSEL, 0, -1);
      return;
    case CMD_NEXT_PANE:
    case CMD_PREVIOUS_PANE:
      return panes_.FocusNext(command == CMD_PREVIOUS_PANE);
    case CMD_ENTRIES:
      return panes_.Tree().Select(LocationTree::Kind::kEntries);
    case CMD_DEFAULT_PROGRAMS:
      return panes_.Tree().Select(LocationTree::Kind::kPrograms);
    case CMD_UNDO_HISTORY:
      return panes_.Tree().Select(LocationTree::Kind::kUndo);
    case CMD_UNDO:
      return panes_.Shows(panes_.Undo()) ? panes_.Undo().Run(command) : panes_.Undo().UndoLatest();
    case CMD_REDO:
      return panes_.Shows(panes_.Undo()) ? panes_.Undo().Run(command) : panes_.Undo().RedoLatest();
    case CMD_SEARCH_EVERYWHERE:
      return SearchEverywhere();
    case CMD_SAVE_STATE:
      return SaveState(frame_, allLocations_);
    case CMD_COMPARE_STATE:
      return LoadState(frame_, [this](const auto& state) { StartComparing(state); });
    case CMD_STOP_COMPARING:
      return StopComparing();
    case CMD_SHOW_ALL:
      SetWindowTextW(panes_.SearchBox(), L"");
      panes_.Entries().SetFilters({});
      return panes_.Tree().Select(LocationTree::Kind::kEntries);
    case CMD_KEYS:
      return ShowKeys(Handle());
    case CMD_ABOUT:
      return ShowAbout();
    case CMD_LANGUAGE_SYSTEM:
    case CMD_LANGUAGE_ENGLISH:
    case CMD_LANGUAGE_GERMAN:
    case CMD_LANGUAGE_HEBREW:
      if (ChangeLanguage(Handle(), command)) Restart();
      return;
    case CMD_EXIT:
      SendMessageW(Handle(), WM_CLOSE, 0, 0);
      return;
    case CMD_RESTART_ELEVATED:
      return RestartAsAdministrator();
    case CMD_HIDE_NOTICE:
      return HideNotice();
    default:
      return panes_.Shown().Run(command);
  }
}

void MainWindow::ShowNode(const LocationTree::Node& node) {
  const std::wstring title = LocationTree::PlaceTitle(node);
  if (node.kind == LocationTree::Kind::kEntries) panes_.Entries().ShowLocations(node.locations, title);
  panes_.SetSearchPlace(title);
  if (panes_.Show(node.kind)) said_.clear();
  shownLocations_ = node.locations;
  panes_.SetNotice(notices_.For(shownLocations_));
  panes_.Layout();
  Update();
}

// In all locations, for what the box holds.
void MainWindow::SearchEverywhere() {
  const bool isOffered = panes_.Entries().Offers(CMD_SEARCH_EVERYWHERE);
  panes_.Tree().Select(LocationTree::Kind::kEntries);
  if (!isOffered) Run(CMD_FIND);
}

// A state holds the entries of all locations.
void MainWindow::StartComparing(const std::shared_ptr<const SavedState>& state) {
  said_.clear();
  if (!allLocations_) {
    allLocations_ = onlyUsualBefore_ = true;
    panes_.Tree().Build(true);
  }
  panes_.Tree().Select(LocationTree::Kind::kEntries);
  panes_.Entries().Compare(state);
}

void MainWindow::StopComparing() {
  panes_.Entries().Compare(nullptr);
  if (std::exchange(onlyUsualBefore_, false)) Run(CMD_ALL_LOCATIONS);
}

void MainWindow::HideNotice() {
  notices_.Hide();
  panes_.SetNotice(notices_.For(shownLocations_));
  panes_.Layout();
}

void MainWindow::ReadEntries() {
  worker_.Post([all = allLocations_](LibrarySession& session) { session.Refresh(all); });
}

void MainWindow::Refresh() {
  said_.clear();
  if (panes_.Shows(panes_.Programs())) return panes_.Programs().Refresh();
  panes_.Entries().CheckAgain();
  ReadEntries();
  panes_.Undo().Refresh();
}

// Many changes come together; one message later all of them are shown at once.
void MainWindow::Update() {
  if (updateWaits_ || Handle() == nullptr) return;
  updateWaits_ = true;
  PostMessageW(Handle(), kUpdateMessage, 0, 0);
}

void MainWindow::UpdateNow() {
  updateWaits_ = false;
  panes_.Bar().Update([this](UINT command) { return CanRun(command); });
  panes_.Progress().Follow();
  ShowStatus();
}

std::wstring MainWindow::ReadingText() const {
  switch (panes_.Entries().ReadState()) {
    case kReadStateReading:
      return texts::kReadingLocations.Get();
    case kReadStateListed:
      return texts::kReadingDetails.Get();
    default:
      return {};
  }
}

void MainWindow::ShowStatus() {
  const std::wstring reading = ReadingText();
  std::wstring text = reading.empty() ? said_ : reading;
  if (text.empty()) text = panes_.Entries().CheckingText();
  if (text.empty() && !account_.elevated && panes_.Entries().HasLockedEntries()) {
    text = texts::kLockedHint.Get();
  }
  panes_.SetStatus(MainPanes::StatusPart::kNews, text.empty() ? texts::kReady.Get() : text);
  panes_.SetStatus(MainPanes::StatusPart::kCount, panes_.Shown().CountText());
  panes_.SetStatus(MainPanes::StatusPart::kAccount, account_.name);
}

void MainWindow::OnMenuOpens(HMENU menu) const {
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    const UINT command = GetMenuItemID(menu, i);
    if (command == 0 || command == static_cast<UINT>(-1)) continue;
    EnableMenuItem(menu, static_cast<UINT>(i), MF_BYPOSITION | (CanRun(command) ? MF_ENABLED : MF_GRAYED));
    if (command == CMD_LANGUAGE_SYSTEM) {
      CheckMenuRadioItem(menu, CMD_LANGUAGE_SYSTEM, CMD_LANGUAGE_HEBREW, SavedLanguageCommand(),
                         MF_BYCOMMAND);
    }
    if (command == CMD_ONLY_DIFFERENT) {
      const bool isOn = panes_.Entries().Rows().ShowsOnlyDifferent();
      CheckMenuItem(menu, static_cast<UINT>(i), MF_BYPOSITION | (isOn ? MF_CHECKED : MF_UNCHECKED));
    }
    const std::size_t filter = FilterOf(command);
    if (command == CMD_ALL_LOCATIONS || filter < kFilterCount) {
      const bool isOn =
          command == CMD_ALL_LOCATIONS ? allLocations_ : panes_.Entries().Rows().Filters()[filter];
      CheckMenuItem(menu, static_cast<UINT>(i), MF_BYPOSITION | (isOn ? MF_CHECKED : MF_UNCHECKED));
    }
  }
}

void MainWindow::ShowAbout() const {
  ShowMessage(Handle(), {.title = texts::kAboutCaption.Get(), .text = texts::kAboutText.Get(), .verb = {}});
}

void MainWindow::RestartAsAdministrator() {
  if (RestartElevated(Handle())) SendMessageW(Handle(), WM_CLOSE, 0, 0);
}

void MainWindow::Restart() {
  SaveLook();
  StartAgain();
  SendMessageW(Handle(), WM_CLOSE, 0, 0);
}

void MainWindow::RunMessages() {
  const HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_ACCELERATORS));
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    const bool isFinding =
        message.hwnd == panes_.SearchBox() && message.message == WM_KEYDOWN && message.wParam == VK_RETURN;
    if (isFinding && panes_.Entries().Offers(CMD_SEARCH_EVERYWHERE)) SearchEverywhere();
    if (ClicksButton(message)) continue;
    if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE &&
        panes_.Entries().IsInCompareBar(message.hwnd)) {
      StopComparing();
      continue;
    }
    if (panes_.Progress().TakesKey(message, panes_.SearchBox())) continue;
    const KeyTurn turn = TakeKey(
        message, {Handle(), panes_.SearchBox(), panes_.Tree().Handle(), panes_.Shown().MainControl()});
    if (turn == KeyTurn::kNobody) continue;
    if (turn == KeyTurn::kCommands && TranslateAcceleratorW(Handle(), keys, &message) != 0) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace smh
