// What stands above the list of entries and in its place: the bar of a comparison, the filters, and the note
// of an empty list. For the window's thread.
#pragma once

#include "hosts/gui/compare_bar.h"
#include "hosts/gui/empty_note_window.h"
#include "hosts/gui/filter_bar.h"
#include "hosts/gui/state_commands.h"

#include <memory>
#include <vector>

namespace smh {

// The controls are the parent's, which destroys them.
class ListSurroundings {
 public:
  // Makes the controls, hidden. Called once; SetDpi comes before Place. Raises HostError.
  void Create(HWND parent);
  // The font is the caller's and lives until the next call.
  void SetDpi(int dpi, HFONT font);
  void Show(bool show);
  // What the list is compared with; null for nothing.
  void SetState(std::shared_ptr<const SavedState> state) { state_ = std::move(state); }
  // Takes the upper part of `area`, in pixels of the parent's client area, and answers the rest.
  RECT PlaceAbove(const RECT& area) const;
  // Covers the rows of that list when the note is shown.
  void PlaceNote(HWND list);
  // Shows what the rows and the request are by now. `list` gets the keyboard focus that something loses.
  void Update(const EntryRows& rows, const ListRequest& request, HWND list);

  // What the keyboard goes through before the list, hidden or not; borrowed, until the next Update.
  std::vector<HWND> Controls() const;
  // Whether the note is shown and offers that command.
  bool Offers(UINT command) const { return note_.Offers(command); }
  // Whether the control is one of the bar of the comparison.
  bool IsInCompareBar(HWND control) const noexcept { return compareBar_.Holds(control); }

 private:
  FilterBar filterBar_;
  CompareBar compareBar_;
  EmptyNoteWindow note_;
  std::shared_ptr<const SavedState> state_;
  bool shown_ = false;
};

}  // namespace smh
