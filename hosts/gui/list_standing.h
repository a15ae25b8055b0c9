// What is selected in the list of entries and where it stands, by entries instead of positions. For the
// window's thread.
#pragma once

#include "hosts/gui/entry_rows.h"
#include "hosts/gui/virtual_list.h"

#include <set>

namespace smh {

class ListStanding {
 public:
  // As the list stands now, with the rows that it shows.
  ListStanding(const VirtualList& list, const EntryRows& rows);
  // The same with the list at its top.
  ListStanding AtTop() const;
  // Shows the rows there are by now, and has the list stand with them as it did. An entry that has gone
  // leaves the focus to the one that takes its place; a list that stood at its top stands there again.
  void Restore(VirtualList& list, const EntryRows& rows) const;

 private:
  std::set<RowId> selected_;
  RowId focused_ = 0;
  std::size_t focusedPosition_ = 0;
  RowId top_ = 0;  // none: the list is at its top
};

}  // namespace smh
