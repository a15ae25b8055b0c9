#include "hosts/gui/entries_view.h"

#include "hosts/gui/dpi.h"
#include "hosts/gui/entries_look.h"
#include "hosts/gui/location_words.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/action_texts.h"
#include "hosts/gui/texts/status_texts.h"

#include <algorithm>

namespace smh {

namespace {

constexpr int kLeastListHeight = 80;
constexpr int kLeastDetailsHeight = 60;
constexpr std::size_t kFilesAtOnce = 64;

}  // namespace

EntriesView::EntriesView(HWND parent, const Frame& frame) : frame_(frame), commands_(frame), closer_(frame) {
  request_.isReading = true;
  list_.Create(parent, IDC_ENTRIES, ChosenColumns::FirstColumns(), MakeSource());
  list_.Describe(texts::kEntriesList.Get(), texts::kShowDetails.Get());
  columns_.ShowOrder(rows_.FirstOrder(), rows_.SecondOrder());
  details_.Create(parent);
  around_.Create(parent);
  splitter_.Open(parent, Splitter::Direction::kUpDown, [this](int position) {
    SetDetailsHeight(MulDiv(static_cast<int>(area_.bottom) - position, USER_DEFAULT_SCREEN_DPI, dpi_));
  });
}

ListSource EntriesView::MakeSource() {
  ListSource source = LookOf(rows_, columns_);
  source.onSort = [this](std::size_t column) { SortByColumn(columns_.At(column)); };
  source.onHeaderMenu = [this](POINT point) { columns_.ShowMenu(frame_.window, point); };
  source.onCheck = [this](std::size_t row) { Toggle(row); };
  source.onSelect = [this] { OnSelect(); };
  source.onActivate = [this] { SetFocus(details_.Handle()); };
  return source;
}

void EntriesView::OnNews(ListNews& news) {
  readState_ = news.readState;
  smallImages_ = news.smallImages;
  largeImages_ = news.largeImages;
  ChooseImages();
  if (!news.events.empty()) {
    Rearrange([&] { rows_.Apply(std::move(news.events)); });
    SelectAdded();
    ShowDetails();
  }
  request_.isReading = readState_ == kReadStateReading;
  around_.Update(rows_, request_, list_.Handle());
  CheckNext();
  frame_.onChange();
}

// When the library has read everything and does nothing that lasts, which comes first. What is asked at once
// is little, so that what the user scrolls to is next.
void EntriesView::CheckNext() {
  if (isChecking_ || readState_ != kReadStateComplete || frame_.actions.Long() != nullptr) return;
  const auto page = static_cast<std::size_t>(std::max(ListView_GetCountPerPage(list_.Handle()), 0) + 1);
  std::vector<ItemRecord> items = rows_.Unchecked(list_.TopRow(), page, kFilesAtOnce);
  if (items.empty()) return;
  isChecking_ = true;
  frame_.trust.Check(std::move(items), [this](const auto& checked) {
    isChecking_ = false;
    TakeTrust(checked);
    CheckNext();
    frame_.onChange();
  });
}

void EntriesView::TakeTrust(const std::vector<ItemRecord>& checked) {
  const ListStanding standing(list_, rows_);
  if (rows_.TakeTrust(checked)) {
    Rearrange(standing, [] {});
  } else {
    InvalidateRect(list_.Handle(), nullptr, FALSE);
  }
  ShowDetails();
}

void EntriesView::CheckAgain() {
  rows_.CheckAgain();
}

std::wstring EntriesView::CheckingText() const {
  const std::size_t left = rows_.UncheckedCount();
  return left == 0 ? std::wstring() : Format(texts::kSignaturesLeft, left);
}

void EntriesView::SetFilters(const FilterSet& filters) {
  ShowAnew([&] { rows_.SetFilters(filters); });
}

void EntriesView::Compare(const std::shared_ptr<const SavedState>& state) {
  around_.SetState(state);
  Rearrange([&] {
    rows_.Compare(state == nullptr ? nullptr : std::shared_ptr<const Snapshot>(state, &state->snapshot));
    rows_.ShowOnlyDifferent(state != nullptr);
  });
  ShowDetails();
  Place(area_);
  frame_.onChange();
}

void EntriesView::ChooseImages() {
  list_.SetImages(images_.For(dpi_, smallImages_, largeImages_));
}

void EntriesView::ForgetImages() {
  smallImages_ = largeImages_ = nullptr;
  list_.SetImages(nullptr);
}

void EntriesView::ShowLocations(const LocationSet& locations, const std::wstring& title) {
  locations_ = locations;
  request_.place = title;
  ShowAnew([&] { rows_.ShowLocations(locations); });
}

void EntriesView::Search(std::wstring_view text) {
  request_.search = text;
  ShowAnew([&] { rows_.Search(text); });
}

void EntriesView::SortBy(const EntryRows::Order& first, const EntryRows::Order& second) {
  ShowAnew([&] { rows_.Sort(first, second); });
  columns_.ShowOrder(first, second);
}

// The order before decides among equals.
void EntriesView::SortByColumn(std::size_t column) {
  const EntryRows::Order now = rows_.FirstOrder();
  if (column == now.column) return SortBy({column, !now.descending}, rows_.SecondOrder());
  SortBy({column, false}, now);
}

void EntriesView::LoadLook() {
  if (const auto orders = columns_.Load()) SortBy(orders->first, orders->second);
}

template <typename Change>
void EntriesView::Rearrange(Change&& change) {
  Rearrange(ListStanding(list_, rows_), change);
}

template <typename Change>
void EntriesView::Rearrange(const ListStanding& standing, Change&& change) {
  change();
  standing.Restore(list_, rows_);
  around_.Update(rows_, request_, list_.Handle());
}

template <typename Change>
void EntriesView::ShowAnew(Change&& change) {
  Rearrange(ListStanding(list_, rows_).AtTop(), change);
}

void EntriesView::SelectAdded() {
  if (!added_) return;
  const auto& shown = rows_.Shown();
  const auto row = std::find_if(shown.begin(), shown.end(), [this](const EntryRow* each) {
    return each->item.location == added_->location && each->item.name == added_->name;
  });
  if (row == shown.end()) return;
  const auto position = static_cast<std::size_t>(row - shown.begin());
  added_.reset();
  list_.Select({position}, position);
  ListView_EnsureVisible(list_.Handle(), static_cast<int>(position), FALSE);
}

void EntriesView::OnSelect() {
  ShowDetails();
  frame_.onChange();
}

void EntriesView::ShowDetails() {
  const ItemRecord* const item = OnlySelected();
  if (item == nullptr) {
    const std::size_t count = list_.Selection().size();
    const std::wstring text =
        count == 0 ? std::wstring(texts::kSelectOne.Get()) : Format(texts::kManySelected, count);
    return details_.SetEntry(
        text, nullptr, {},
        count == 0 ? LocationLines(locations_, request_.place) : std::vector<DetailLine>());
  }
  const EntryRow& row = *OnlySelectedRow();
  if (row.IsGone()) {
    resolvedCommand_.clear();
    resolvedFile_.clear();
    return details_.SetEntry(CaptionText(*item), nullptr, {}, DifferenceLines(*row.difference));
  }
  if (item->command != resolvedCommand_) ResolveFile(*item);
  if (inDetails_ != KeyOf(*item)) {
    inDetails_ = KeyOf(*item);
    rows_.CheckAgain(*inDetails_);
    CheckNext();
  }
  details_.SetEntry(
      CaptionText(*item) + (item->description.empty() ? L"" : L"  \u2013  " + item->description), item,
      resolvedFile_, row.difference ? DifferenceLines(*row.difference) : std::vector<DetailLine>());
}

void EntriesView::ResolveFile(const ItemRecord& item) {
  resolvedCommand_ = item.command;
  resolvedFile_.clear();
  frame_.worker.Ask(
      [command = item.command](LibrarySession& session) { return session.ResolveFile(command); },
      [this, command = item.command](const std::wstring& file) {
        if (command != resolvedCommand_ || file == resolvedFile_) return;
        resolvedFile_ = file;
        ShowDetails();
      });
}

void EntriesView::SetDetailsHeight(int height) {
  detailsHeight_ = height;
  Place(area_);
}

void EntriesView::Place(const RECT& whole) {
  area_ = whole;
  const RECT area = around_.PlaceAbove(whole);
  const int bar = Scaled(Splitter::kThickness, dpi_);
  const int height = static_cast<int>(area.bottom - area.top);
  const int most = std::max(height - bar - Scaled(kLeastListHeight, dpi_), 0);
  const int details =
      std::min(std::max(Scaled(detailsHeight_, dpi_), Scaled(kLeastDetailsHeight, dpi_)), most);
  const int width = static_cast<int>(area.right - area.left);
  const int top = static_cast<int>(area.bottom) - details;
  MoveWindow(list_.Handle(), area.left, area.top, width, std::max(top - bar - static_cast<int>(area.top), 0),
             TRUE);
  MoveWindow(splitter_.Handle(), area.left, top - bar, width, bar, TRUE);
  details_.Place({area.left, top, area.right, area.bottom});
  around_.PlaceNote(list_.Handle());
}

void EntriesView::Show(bool show) {
  shown_ = show;
  for (const HWND window : {list_.Handle(), splitter_.Handle()})
    ShowWindow(window, show ? SW_SHOWNA : SW_HIDE);
  details_.Show(show);
  around_.Show(show);
  around_.Update(rows_, request_, list_.Handle());
}

void EntriesView::SetDpi(int dpi, const ViewFonts& fonts) {
  dpi_ = dpi;
  list_.SetDpi(dpi, fonts.normal);
  details_.SetDpi(dpi, fonts);
  around_.SetDpi(dpi, fonts.normal);
  ChooseImages();
}

std::vector<HWND> EntriesView::Panes() const {
  std::vector<HWND> panes = around_.Controls();
  panes.insert(panes.end(), {list_.Handle(), details_.Handle()});
  return panes;
}

bool EntriesView::OnNotify(const NMHDR& header, LRESULT& result) {
  return list_.OnNotify(header, result);
}

bool EntriesView::HasLockedEntries() const {
  return std::any_of(rows_.Shown().begin(), rows_.Shown().end(),
                     [](const EntryRow* row) { return IsLocked(row->item); });
}

std::wstring EntriesView::CountText() const {
  const std::size_t shown = rows_.Shown().size();
  const std::size_t total = rows_.Total();
  const std::wstring text = shown == total ? Format(texts::kEntries.For(total), total)
                                           : Format(texts::kEntriesOf.For(total), shown, total);
  const std::size_t selected = list_.Selection().size();
  return selected > 1 ? Format(texts::kAndSelected, text, selected) : text;
}

std::vector<ItemRecord> EntriesView::Selected() const {
  std::vector<ItemRecord> items;
  for (const std::size_t row : list_.Selection()) {
    if (row < rows_.Shown().size() && !rows_.Shown()[row]->IsGone())
      items.push_back(rows_.Shown()[row]->item);
  }
  return items;
}

template <typename Can>
std::vector<ItemRecord> EntriesView::SelectedWith(Can&& can) const {
  std::vector<ItemRecord> items = Selected();
  std::erase_if(items, [&can](const ItemRecord& item) { return !can(item); });
  return items;
}

std::vector<ItemRecord> EntriesView::SelectedThatCan(ItemAction action) const {
  return SelectedWith([action](const ItemRecord& item) { return item.Can(action); });
}

// The selected entries, or all that are shown when there are fewer than two.
std::vector<ItemRecord> EntriesView::SelectedOrShown() const {
  std::vector<ItemRecord> items = Selected();
  if (items.size() >= 2) return items;
  items.clear();
  for (const EntryRow* row : rows_.Shown()) {
    if (!row->IsGone()) items.push_back(row->item);
  }
  return items;
}

const EntryRow* EntriesView::OnlySelectedRow() const {
  const std::vector<std::size_t> rows = list_.Selection();
  return rows.size() == 1 && rows.front() < rows_.Shown().size() ? rows_.Shown()[rows.front()] : nullptr;
}

const ItemRecord* EntriesView::OnlySelected() const {
  const EntryRow* const row = OnlySelectedRow();
  return row == nullptr ? nullptr : &row->item;
}

bool EntriesView::CanRun(UINT command) const {
  const ItemRecord* const only = OnlySelected();
  const auto any = [this](const auto& can) {
    const std::vector<std::size_t> rows = list_.Selection();
    return std::any_of(rows.begin(), rows.end(), [&](std::size_t row) {
      return row < rows_.Shown().size() && can(rows_.Shown()[row]->item);
    });
  };
  const auto anyCan = [&any](ItemAction action) {
    return any([action](const ItemRecord& item) { return item.Can(action); });
  };
  switch (command) {
    case CMD_ENABLE:
      return any(CanEnable);
    case CMD_SWITCH_OFF:
      return any(CanSwitchOff);
    case CMD_SWITCH_ON:
      return any(CanSwitchOn);
    case CMD_DISABLE:
      return anyCan(kActionDisable);
    case CMD_DELETE:
      return anyCan(kActionDelete);
    case CMD_MOVE:
      return anyCan(kActionMove);
    case CMD_CHANGE_COMMAND:
      return only != nullptr && only->Can(kActionChangeCommand);
    case CMD_EXECUTE:
      return only != nullptr && only->Can(kActionExecute);
    case CMD_SHOW_FILE:
      return only != nullptr && only->Can(kActionShowFileDetails);
    case CMD_SHOW_LOCATION:
      return only != nullptr && only->Can(kActionShowLocation);
    case CMD_OPEN_FOLDER:
    case CMD_SEARCH_WEB:
      return only != nullptr && LookCloser::CanLookAt(*only);
    case CMD_COPY_PATH:
    case CMD_COPY_COMMAND:
    case CMD_COPY_HASH:
      return any(LookCloser::CanLookAt);
    case CMD_COPY:
      return IsInDetails() || !list_.Selection().empty();
    case CMD_ADD:
      return true;
    case CMD_CLEAR_FILTERS:
      return rows_.Filters().any();
    case CMD_ONLY_DIFFERENT:
    case CMD_STOP_COMPARING:
      return rows_.IsComparing();
    case CMD_EXPORT:
    case CMD_SELECT_ALL:
      return !rows_.Shown().empty();
    case CMD_DETAILS:
      return only != nullptr;
    default:
      return ChosenColumns::CanRun(command) || FilterOf(command) < kFilterCount;
  }
}

void EntriesView::Run(UINT command) {
  switch (command) {
    case CMD_ENABLE:
      return commands_.Switch(true, SelectedWith(CanEnable));
    case CMD_DISABLE:
      return commands_.Switch(false, SelectedThatCan(kActionDisable));
    case CMD_SWITCH_OFF:
      return commands_.SwitchInSystem(true, SelectedWith(CanSwitchOff));
    case CMD_SWITCH_ON:
      return commands_.SwitchInSystem(false, SelectedWith(CanSwitchOn));
    case CMD_CLEAR_FILTERS:
      return ChangeFilters({});
    case CMD_ONLY_DIFFERENT:
      Rearrange([&] { rows_.ShowOnlyDifferent(!rows_.ShowsOnlyDifferent()); });
      return frame_.onChange();
    case CMD_DELETE:
      return commands_.Delete(SelectedThatCan(kActionDelete));
    case CMD_ADD:
      return Add();
    case CMD_MOVE:
      return commands_.Move(SelectedThatCan(kActionMove));
    case CMD_CHANGE_COMMAND:
      return commands_.ChangeCommand(SelectedThatCan(kActionChangeCommand));
    case CMD_EXECUTE:
      return commands_.Execute(Selected());
    case CMD_SHOW_FILE:
      return commands_.ShowFile(SelectedThatCan(kActionShowFileDetails));
    case CMD_SHOW_LOCATION:
      return commands_.ShowPlace(Selected());
    case CMD_OPEN_FOLDER:
      return closer_.OpenFolder(*OnlySelected());
    case CMD_SEARCH_WEB:
      return closer_.SearchWeb(*OnlySelected());
    case CMD_COPY_PATH:
      return closer_.CopyPaths(SelectedWith(LookCloser::CanLookAt));
    case CMD_COPY_COMMAND:
      return closer_.CopyCommands(SelectedWith(LookCloser::CanLookAt));
    case CMD_COPY_HASH:
      return closer_.CopyHashes(SelectedWith(LookCloser::CanLookAt));
    case CMD_COPY:
      return Copy();
    case CMD_SELECT_ALL:
      return IsInDetails() ? details_.SelectAll() : list_.SelectAll();
    case CMD_DETAILS:
      SetFocus(details_.Handle());
      return;
    case CMD_EXPORT:
      return commands_.Export(SelectedOrShown(), list_.Selection().size() >= 2);
    default:
      if (ChosenColumns::CanRun(command)) return columns_.Run(command, frame_.window);
      return ChangeFilters(FilterSet(rows_.Filters()).flip(FilterOf(command)));
  }
}

void EntriesView::ChangeFilters(const FilterSet& filters) {
  SetFilters(filters);
  frame_.onChange();
}

// A click on the box of a selected row means every selected one.
void EntriesView::Toggle(std::size_t row) {
  if (row >= rows_.Shown().size()) return;
  const ItemAction action = rows_.Shown()[row]->item.enabled ? kActionDisable : kActionEnable;
  const std::vector<std::size_t> selected = list_.Selection();
  const bool meansAll = std::find(selected.begin(), selected.end(), row) != selected.end();
  const std::vector<ItemRecord> items =
      meansAll ? SelectedThatCan(action) : std::vector{rows_.Shown()[row]->item};
  if (items.empty() || !items.front().Can(action)) {
    return frame_.say((action == kActionEnable ? texts::kCannotEnable : texts::kCannotDisable).Get());
  }
  commands_.Switch(action == kActionEnable, items);
}

void EntriesView::Add() {
  commands_.Add(locations_, [this](const EntryKey& added) {
    added_ = added;
    SelectAdded();
  });
}

void EntriesView::Copy() const {
  CopyToClipboard(frame_.window, IsInDetails() ? details_.TextToCopy() : list_.SelectedText());
}

bool EntriesView::IsInDetails() const {
  return GetFocus() == details_.Handle();
}

}  // namespace smh
