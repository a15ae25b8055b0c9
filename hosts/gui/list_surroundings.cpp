#include "hosts/gui/list_surroundings.h"

#include "hosts/gui/texts/filter_texts.h"

#include <commctrl.h>

namespace smh {

void ListSurroundings::Create(HWND parent) {
  filterBar_.Create(parent);
  compareBar_.Open(parent);
  note_.Open(parent);
}

void ListSurroundings::SetDpi(int dpi, HFONT font) {
  filterBar_.SetDpi(dpi, font);
  compareBar_.SetDpi(dpi, font);
  note_.SetDpi(dpi, font);
}

void ListSurroundings::Show(bool show) {
  shown_ = show;
  filterBar_.Show(show);
}

RECT ListSurroundings::PlaceAbove(const RECT& area) const {
  RECT rest = area;
  if (state_ != nullptr) rest.top += compareBar_.Place(rest);
  rest.top += filterBar_.Place(rest);
  return rest;
}

// The heads of the list's columns stay.
void ListSurroundings::PlaceNote(HWND list) {
  RECT area;
  RECT head;
  GetClientRect(list, &area);
  GetWindowRect(ListView_GetHeader(list), &head);
  area.top = head.bottom - head.top;
  MapWindowPoints(list, GetParent(list), reinterpret_cast<POINT*>(&area), 2);
  note_.Place(area);
}

std::vector<HWND> ListSurroundings::Controls() const {
  std::vector<HWND> controls;
  const auto addChildrenOf = [&controls](HWND parent) {
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
      controls.push_back(child);
    }
  };
  addChildrenOf(compareBar_.Handle());
  controls.insert(controls.end(), filterBar_.Buttons().begin(), filterBar_.Buttons().end());
  addChildrenOf(note_.Handle());
  return controls;
}

void ListSurroundings::Update(const EntryRows& rows, const ListRequest& request, HWND list) {
  filterBar_.Check(rows.Filters());
  const bool isComparing = shown_ && state_ != nullptr;
  if (!isComparing && compareBar_.Holds(GetFocus())) SetFocus(list);
  if (isComparing) {
    compareBar_.SetText(Format(texts::kComparedWith, state_->title, DifferenceCountText(rows.Differences())),
                        rows.ShowsOnlyDifferent());
  }
  ShowWindow(compareBar_.Handle(), isComparing ? SW_SHOWNA : SW_HIDE);
  if (note_.Show(shown_ ? NoteOf(rows, request) : EmptyListNote())) SetFocus(list);
  PlaceNote(list);
}

}  // namespace smh
