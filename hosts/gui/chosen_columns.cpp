#include "hosts/gui/chosen_columns.h"

#include "hosts/gui/columns_dialog.h"
#include "hosts/gui/entry_columns.h"
#include "hosts/gui/menus.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/menu_texts.h"
#include "hosts/gui/window_settings.h"

#include <algorithm>

namespace smh {

namespace {

constexpr wchar_t kLayout[] = L"ColumnLayout";
constexpr wchar_t kOlderWidths[] = L"Columns";
constexpr std::size_t kOlderCount = 6;
constexpr wchar_t kOlderOrder[] = L"Order";
constexpr wchar_t kOrders[] = L"Orders";

ListColumn ListColumnOf(const ColumnPlace& place) {
  return {EntryColumns()[place.column].title.Get(), place.width, place.column == kCommandColumn};
}

}  // namespace

ChosenColumns::ChosenColumns(VirtualList& list) : list_(list) {
  for (const ColumnPlace& place : FirstLayout()) shown_.push_back(place.column);
}

std::vector<ListColumn> ChosenColumns::FirstColumns() {
  std::vector<ListColumn> columns;
  for (const ColumnPlace& place : FirstLayout()) columns.push_back(ListColumnOf(place));
  return columns;
}

std::size_t ChosenColumns::PlaceOf(std::size_t column) const {
  return static_cast<std::size_t>(std::ranges::find(shown_, column) - shown_.begin());
}

ColumnLayout ChosenColumns::Layout() const {
  const std::vector<int> widths = list_.Columns().Widths();
  ColumnLayout layout;
  for (const std::size_t place : list_.Columns().Order()) layout.push_back({shown_[place], widths[place]});
  return layout;
}

// The first column of a list has its check boxes and pictures, so that is the name, wherever it is seen.
void ChosenColumns::Show(const ColumnLayout& layout) {
  ColumnLayout columns = layout;
  const auto name = std::ranges::find(columns, kNameColumn, &ColumnPlace::column);
  std::rotate(columns.begin(), name, name + 1);
  shown_.clear();
  std::vector<ListColumn> listColumns;
  for (const ColumnPlace& place : columns) {
    shown_.push_back(place.column);
    listColumns.push_back(ListColumnOf(place));
  }
  std::vector<std::size_t> order;
  order.reserve(layout.size());
  for (const ColumnPlace& place : layout) order.push_back(PlaceOf(place.column));
  list_.Columns().Set(std::move(listColumns), order);
  ShowOrder(orders_.first, orders_.second);
}

void ChosenColumns::ShowOrder(const EntryRows::Order& first, const EntryRows::Order& second) {
  orders_ = {first, second};
  const std::size_t none = shown_.size();
  list_.Columns().ShowSorting(
      {PlaceOf(first.column), first.descending},
      {second.column == first.column ? none : PlaceOf(second.column), second.descending});
}

std::optional<ChosenColumns::Orders> ChosenColumns::Load() {
  if (const std::vector<int> numbers = LoadNumbers(kLayout); !numbers.empty()) {
    Show(LayoutOf(numbers));
  } else if (const std::vector<int> widths = LoadNumbers(kOlderWidths, kOlderCount); !widths.empty()) {
    Show(LayoutOfWidths(widths));
  }
  std::vector<int> order = LoadNumbers(kOrders, 4);
  if (order.empty()) order = LoadNumbers(kOlderOrder, 2);
  if (order.empty()) return std::nullopt;
  order.resize(4);
  const Orders orders = {{static_cast<std::size_t>(order[0]), order[1] != 0},
                         {static_cast<std::size_t>(order[2]), order[3] != 0}};
  if (std::max(orders.first.column, orders.second.column) >= EntryColumns().size()) return std::nullopt;
  return orders;
}

void ChosenColumns::Save() const {
  SaveNumbers(kLayout, NumbersOf(Layout()));
  std::vector<int> numbers;
  for (const EntryRows::Order& order : {orders_.first, orders_.second}) {
    numbers.insert(numbers.end(), {static_cast<int>(order.column), order.descending ? 1 : 0});
  }
  SaveNumbers(kOrders, numbers);
}

void ChosenColumns::ShowMenu(HWND window, POINT point) const {
  const HMENU menu = CreatePopupMenu();
  for (std::size_t i = 0; i < EntryColumns().size(); ++i) {
    const UINT isShown = PlaceOf(i) < shown_.size() ? MF_CHECKED : MF_UNCHECKED;
    AppendMenuW(menu, MF_STRING | isShown, CMD_FIRST_COLUMN + i, EntryColumns()[i].title.Get());
  }
  AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
  AppendMenuW(menu, MF_STRING, CMD_COLUMNS, texts::kMenuMoreColumns.Get());
  OpenMenu(menu, point, window);
  DestroyMenu(menu);
}

bool ChosenColumns::CanRun(UINT command) noexcept {
  return command == CMD_COLUMNS ||
         (command > CMD_FIRST_COLUMN && command < CMD_FIRST_COLUMN + EntryColumns().size());
}

void ChosenColumns::Run(UINT command, HWND window) {
  if (command != CMD_COLUMNS) return Show(Toggled(Layout(), command - CMD_FIRST_COLUMN));
  if (const auto layout = AskColumns(window, Layout())) Show(*layout);
}

}  // namespace smh
