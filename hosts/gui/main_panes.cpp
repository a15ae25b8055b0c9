#include "hosts/gui/main_panes.h"

#include "hosts/gui/accessible_text.h"
#include "hosts/gui/control_direction.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/text_direction.h"
#include "hosts/gui/texts/frame_texts.h"
#include "hosts/gui/theme_window.h"
#include "hosts/gui/window_settings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace smh {

namespace {

constexpr int kLeastPane = 120;
constexpr int kLeastSearch = 100;

RECT ClientArea(HWND window) noexcept {
  RECT area;
  GetClientRect(window, &area);
  return area;
}

}  // namespace

void MainPanes::Create(const Frame& frame, LocationTree::OnSelect onSelect) {
  frame_ = &frame;
  const HWND window = frame.window;
  bar_.Create(window);
  search_ =
      CreateWindowExW(WS_EX_CLIENTEDGE, WC_EDITW, L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, 0,
                      0, 0, 0, window, reinterpret_cast<HMENU>(IDC_SEARCH), nullptr, nullptr);
  DirectText(search_);
  SetSearchPlace({});
  accessibleSearch_.Attach(search_, std::make_unique<AccessibleText>(search_, texts::kNameSearch.Get(),
                                                                     texts::kNameSearchKeys.Get()));
  notice_.Open(window);
  tree_.Create(window, std::move(onSelect));
  splitter_.Open(window, Splitter::Direction::kLeftRight, [this](int position) {
    treeWidth_ = MulDiv(position, USER_DEFAULT_SCREEN_DPI, dpi_);
    Layout();
  });
  entries_ = std::make_unique<EntriesView>(window, frame);
  programs_ = std::make_unique<ProgramsView>(window, frame);
  undo_ = std::make_unique<UndoView>(window, frame);
  progress_.Open(window, frame.actions, [this](bool show) { ShowProgress(show); });
  status_ =
      CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SBARS_SIZEGRIP, 0,
                      0, 0, 0, window, reinterpret_cast<HMENU>(IDC_STATUS), nullptr, nullptr);
  shown_ = entries_.get();
}

View& MainPanes::ViewOf(LocationTree::Kind kind) const noexcept {
  switch (kind) {
    case LocationTree::Kind::kPrograms:
      return *programs_;
    case LocationTree::Kind::kUndo:
      return *undo_;
    case LocationTree::Kind::kEntries:
      break;
  }
  return *entries_;
}

bool MainPanes::Show(LocationTree::Kind kind) {
  View& view = ViewOf(kind);
  if (Shows(view)) return false;
  const std::vector<HWND> before = shown_->Panes();
  const bool hadFocus = std::find(before.begin(), before.end(), GetFocus()) != before.end();
  shown_->Show(false);
  shown_ = &view;
  shown_->Search(TextOf(search_));
  shown_->Show(true);
  if (hadFocus) SetFocus(shown_->MainControl());
  return true;
}

void MainPanes::SetNotice(const Notice& notice) {
  if (notice_.Show(notice)) SetFocus(shown_->MainControl());
}

void MainPanes::ShowProgress(bool show) {
  const bool hadFocus = GetFocus() == progress_.CancelButton();
  ShowWindow(progress_.Handle(), show ? SW_SHOWNA : SW_HIDE);
  if (hadFocus && !show) SetFocus(shown_->MainControl());
  Layout();
  if (!show) entries_->CheckNext();
}

void MainPanes::SetSearchPlace(const std::wstring& place) const {
  const std::wstring cue = place.empty() ? texts::kSearchInAll.Get() : Format(texts::kSearchIn, place);
  SendMessageW(search_, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(cue.c_str()));
}

void MainPanes::SetStatus(StatusPart part, const std::wstring& text) const {
  SendMessageW(status_, SB_SETTEXTW, static_cast<WPARAM>(part),
               reinterpret_cast<LPARAM>(Directed(text).c_str()));
}

std::vector<HWND> MainPanes::FocusOrder() const {
  std::vector<HWND> panes = {bar_.Handle(), search_};
  const std::vector<HWND> answers = notice_.Controls();
  panes.insert(panes.end(), answers.begin(), answers.end());
  panes.push_back(tree_.Handle());
  const std::vector<HWND> ofView = shown_->Panes();
  panes.insert(panes.end(), ofView.begin(), ofView.end());
  panes.push_back(progress_.CancelButton());
  std::erase_if(panes, [](HWND pane) { return !IsWindowVisible(pane) || !IsWindowEnabled(pane); });
  return panes;
}

void MainPanes::FocusNext(bool backwards) const {
  const std::vector<HWND> panes = FocusOrder();
  const HWND focus = GetFocus();
  const auto now = std::find_if(panes.begin(), panes.end(),
                                [focus](HWND pane) { return pane == focus || IsChild(pane, focus); });
  if (now == panes.end()) return (void)SetFocus(shown_->MainControl());
  const std::size_t step = backwards ? panes.size() - 1 : 1;
  SetFocus(panes[(static_cast<std::size_t>(now - panes.begin()) + step) % panes.size()]);
}

void MainPanes::RememberFocus() {
  lastFocus_ = GetFocus();
}

void MainPanes::RestoreFocus() const {
  if (!IsMade()) return;
  const std::vector<HWND> panes = FocusOrder();
  const bool isThere = std::find(panes.begin(), panes.end(), lastFocus_) != panes.end();
  SetFocus(isThere ? lastFocus_ : shown_->MainControl());
}

void MainPanes::SetDpi(int dpi) {
  dpi_ = dpi;
  ScopedFont font = MakeFont(dpi);
  ScopedFont heading = MakeFont(dpi, FontKind::kHeading);
  const ViewFonts fonts = {font.Get(), heading.Get()};
  bar_.SetDpi(dpi, font.Get());
  bar_.ShowButton(CMD_RESTART_ELEVATED, !frame_->account.elevated);
  tree_.SetDpi(dpi, font.Get());
  progress_.SetDpi(dpi, font.Get());
  notice_.SetDpi(dpi, font.Get());
  for (View* const view : Views()) view->SetDpi(dpi, fonts);
  for (const HWND control : {search_, status_}) {
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), TRUE);
  }
  font_ = std::move(font);
  heading_ = std::move(heading);
}

void MainPanes::Layout() {
  if (!IsMade() || IsIconic(frame_->window)) return;
  SendMessageW(status_, WM_SIZE, 0, 0);
  const RECT area = ClientArea(frame_->window);
  const int width = static_cast<int>(area.right);
  const int margin = Scaled(4, dpi_);
  const int parts[] = {std::max(width - Scaled(420, dpi_), Scaled(100, dpi_)),
                       std::max(width - Scaled(200, dpi_), Scaled(200, dpi_)), -1};
  SendMessageW(status_, SB_SETPARTS, std::size(parts), reinterpret_cast<LPARAM>(parts));
  const int statusHeight = static_cast<int>(ClientArea(status_).bottom);
  const int topHeight = std::max(bar_.Height(), FontHeight(search_, font_.Get()) + Scaled(10, dpi_));
  LayoutTop(width, margin / 2, topHeight);
  int top = topHeight + margin;
  top += notice_.Place({0, top, width, static_cast<int>(area.bottom)});
  int bottom = static_cast<int>(area.bottom) - statusHeight;
  if ((GetWindowLongW(progress_.Handle(), GWL_STYLE) & WS_VISIBLE) != 0) {
    progress_.Place({0, top, width, bottom});
    bottom -= progress_.Height();
  }
  const int bar = Scaled(Splitter::kThickness, dpi_);
  const int least = Scaled(kLeastPane, dpi_);
  const int tree = std::clamp(Scaled(treeWidth_, dpi_), least, std::max(width - least - bar, least));
  MoveWindow(tree_.Handle(), 0, top, tree, bottom - top, TRUE);
  MoveWindow(splitter_.Handle(), tree, top, bar, bottom - top, TRUE);
  shown_->Place({tree + bar, top, width, bottom});
}

void MainPanes::LayoutTop(int width, int top, int height) {
  const int margin = Scaled(4, dpi_);
  const int least = Scaled(kLeastSearch, dpi_);
  const int wanted = std::max(std::min(Scaled(260, dpi_), width / 3), least);
  const int searchHeight = FontHeight(search_, font_.Get()) + Scaled(8, dpi_);
  // A narrow window leaves the buttons their room, and the search box what is left of it.
  const int buttons = bar_.Fit(width - wanted - 3 * margin);
  const int searchWidth = std::clamp(width - buttons - 3 * margin, least, wanted);
  MoveWindow(bar_.Handle(), margin, top, width - searchWidth - 3 * margin, height, TRUE);
  MoveWindow(search_, width - searchWidth - margin, top + (height - searchHeight) / 2, searchWidth,
             searchHeight, TRUE);
}

void MainPanes::LoadLook() {
  if (const auto panes = LoadNumbers(L"Panes", 2); !panes.empty()) {
    treeWidth_ = panes[0];
    entries_->SetDetailsHeight(panes[1]);
  }
  entries_->LoadLook();
  FilterSet filters;
  for (std::size_t i = 0; i < kFilterCount; ++i) {
    const auto isOn = LoadNumbers(EntryFilters()[i].saved, 1);
    filters[i] = !isOn.empty() && isOn[0] != 0;
  }
  entries_->SetFilters(filters);
}

void MainPanes::SaveLook() const {
  SaveNumbers(L"Panes", {treeWidth_, entries_->DetailsHeight()});
  entries_->SaveLook();
  for (std::size_t i = 0; i < kFilterCount; ++i) {
    SaveNumbers(EntryFilters()[i].saved, {entries_->Rows().Filters()[i] ? 1 : 0});
  }
}

}  // namespace smh
