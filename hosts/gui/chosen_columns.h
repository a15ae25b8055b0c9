// The columns of the list of entries as the user has chosen, moved and sized them, and the order of the rows
// as their heads show it. For the window's thread.
#pragma once

#include "hosts/gui/column_layout.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/virtual_list.h"

#include <windows.h>

#include <optional>
#include <utility>

namespace smh {

// Between the columns of a list, which count those that are shown, and EntryColumns. `list` outlives it and
// is made with FirstColumns.
class ChosenColumns {
 public:
  using Orders = std::pair<EntryRows::Order, EntryRows::Order>;

  explicit ChosenColumns(VirtualList& list);
  // For VirtualList::Create.
  static std::vector<ListColumn> FirstColumns();

  // The index of EntryColumns that a column of the list shows.
  std::size_t At(std::size_t column) const { return shown_[column]; }
  // Shows how the rows are sorted, in the heads.
  void ShowOrder(const EntryRows::Order& first, const EntryRows::Order& second);

  // Shows the columns that Save has kept (see window_settings.h), and returns how the rows were sorted. What
  // was never kept stays as it is.
  std::optional<Orders> Load();
  // With the places and widths of now, and the order that was shown last.
  void Save() const;

  // A menu at a place of the screen with a check for every column; its commands go to `window`.
  void ShowMenu(HWND window, POINT point) const;
  // Of CMD_COLUMNS, and of CMD_FIRST_COLUMN and the next for the columns that can be hidden.
  static bool CanRun(UINT command) noexcept;
  // Shows or hides a column, or asks for all in a box above `window`.
  void Run(UINT command, HWND window);

 private:
  std::size_t PlaceOf(std::size_t column) const;
  ColumnLayout Layout() const;
  void Show(const ColumnLayout& layout);

  VirtualList& list_;
  std::vector<std::size_t> shown_;  // the name first, wherever it stands on the screen
  Orders orders_;
};

}  // namespace smh
