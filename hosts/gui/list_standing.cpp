#include "hosts/gui/list_standing.h"

#include <algorithm>

namespace smh {

ListStanding::ListStanding(const VirtualList& list, const EntryRows& rows)
    : focusedPosition_(list.Focused()) {
  for (const RowId id : rows.IdsAt(list.Selection())) selected_.insert(id);
  const auto idAt = [&rows](std::size_t row) {
    return row < rows.Shown().size() ? rows.Shown()[row]->id : 0;
  };
  focused_ = idAt(focusedPosition_);
  if (list.TopRow() > 0) top_ = idAt(list.TopRow());
}

ListStanding ListStanding::AtTop() const {
  ListStanding standing = *this;
  standing.top_ = 0;
  return standing;
}

void ListStanding::Restore(VirtualList& list, const EntryRows& rows) const {
  const std::size_t count = rows.Shown().size();
  list.SetCount(count);
  const auto focused = rows.PositionsOf({focused_});
  std::size_t row = focused.empty() ? focusedPosition_ : focused.front();
  if (focused.empty() && focused_ != 0 && count > 0) row = std::min(row, count - 1);
  list.Select(rows.PositionsOf(selected_), row);
  const auto top = rows.PositionsOf({top_});
  if (!top.empty()) list.ScrollTo(top.front());
  if (top_ == 0) list.ScrollTo(0);
}

}  // namespace smh
