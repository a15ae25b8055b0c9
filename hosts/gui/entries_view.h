// The view of start-up entries: the list, the details of the selected one, and which commands they allow.
// Everything here runs on the window's thread; what asks the library is a task of the worker and shows its
// answer later.
#pragma once

#include "hosts/gui/chosen_columns.h"
#include "hosts/gui/details_pane.h"
#include "hosts/gui/entry_commands.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/list_standing.h"
#include "hosts/gui/list_surroundings.h"
#include "hosts/gui/look_closer.h"
#include "hosts/gui/view.h"
#include "hosts/gui/virtual_list.h"
#include "hosts/gui/window.h"
#include "hosts/gui/window_images.h"

#include <functional>
#include <optional>

namespace smh {

// Shows copies of the entries, which OnNews keeps up to date; holds nothing of the library but its image
// lists. The controls belong to `parent`, which destroys them.
class EntriesView final : public View {
 public:
  // `frame` outlives the view.
  EntriesView(HWND parent, const Frame& frame);

  // Takes in what a look at the library's list has found, and moves the events out of it. Selection and
  // scroll position stay with their entries; a list that stands at its top stays there.
  void OnNews(ListNews& news);
  // Has the files of all entries checked once more, in the background.
  void CheckAgain();
  // Goes on with what is not checked yet; called when an action that lasted has ended.
  void CheckNext();
  // For the status bar: how many files have still to be checked; empty when none has.
  std::wstring CheckingText() const;
  // Shows what passes all of those filters.
  void SetFilters(const FilterSet& filters);
  // Shows the entries of those locations only; the title is empty when they are all.
  void ShowLocations(const LocationSet& locations, const std::wstring& title);
  // Marks what differs from that state, and adds what is only there; null ends that.
  void Compare(const std::shared_ptr<const SavedState>& state);
  // Whether the control is one of the bar that stands above the list then.
  bool IsInCompareBar(HWND control) const noexcept { return around_.IsInCompareBar(control); }
  // Whether the list is empty and its note offers that command.
  bool Offers(UINT command) const { return around_.Offers(command); }
  // Valid as long as the view; what it shows changes with every call that is not const.
  const EntryRows& Rows() const noexcept { return rows_; }
  // Whether the list or its details were still being read at the last news; the ReadState of those.
  std::int32_t ReadState() const noexcept { return readState_; }
  // The library's images are about to go: nothing is drawn with them from here on.
  void ForgetImages();
  // Whether an entry that is shown can be neither switched nor deleted.
  bool HasLockedEntries() const;

  // The columns and the order, as the user has left them; see chosen_columns.h.
  void LoadLook();
  void SaveLook() const { columns_.Save(); }
  // At 96 DPI; the height is kept within the view when it is placed.
  int DetailsHeight() const noexcept { return detailsHeight_; }
  void SetDetailsHeight(int height);

  // See view.h.
  void Show(bool show) override;
  void Place(const RECT& area) override;
  void SetDpi(int dpi, const ViewFonts& fonts) override;
  HWND MainControl() const override { return list_.Handle(); }
  std::vector<HWND> Panes() const override;
  bool OnNotify(const NMHDR& header, LRESULT& result) override;
  bool CanRun(UINT command) const override;
  void Run(UINT command) override;
  void Search(std::wstring_view text) override;
  std::wstring CountText() const override;

 private:
  // Changes rows_ and keeps selection and place: for what happens behind the user's back. A list that stands
  // at its top stays there, so that what comes in before the first row is seen.
  template <typename Change>
  void Rearrange(Change&& change);
  // The same with what was selected before.
  template <typename Change>
  void Rearrange(const ListStanding& standing, Change&& change);
  // Changes rows_ for the user, who has asked for other rows or another order: keeps the selection, and
  // begins at the top.
  template <typename Change>
  void ShowAnew(Change&& change);

  ListSource MakeSource();
  void SortBy(const EntryRows::Order& first, const EntryRows::Order& second);
  void SortByColumn(std::size_t column);
  void ChooseImages();
  void ChangeFilters(const FilterSet& filters);
  void OnSelect();
  void Toggle(std::size_t row);
  void ShowDetails();
  void ResolveFile(const ItemRecord& item);
  void SelectAdded();
  void TakeTrust(const std::vector<ItemRecord>& checked);

  std::vector<ItemRecord> Selected() const;
  template <typename Can>
  std::vector<ItemRecord> SelectedWith(Can&& can) const;
  std::vector<ItemRecord> SelectedThatCan(ItemAction action) const;
  std::vector<ItemRecord> SelectedOrShown() const;
  const EntryRow* OnlySelectedRow() const;
  const ItemRecord* OnlySelected() const;
  void Add();
  void Copy() const;
  bool IsInDetails() const;

  const Frame& frame_;
  EntryCommands commands_;
  LookCloser closer_;
  EntryRows rows_;
  VirtualList list_;
  ChosenColumns columns_{list_};
  DetailsPane details_;
  ListSurroundings around_;
  Splitter splitter_;
  RECT area_ = {};
  LocationSet locations_ = LocationSet().set();
  ListRequest request_;
  ScaledImages images_;
  HIMAGELIST smallImages_ = nullptr;
  HIMAGELIST largeImages_ = nullptr;
  std::int32_t readState_ = kReadStateReading;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  int detailsHeight_ = 210;  // at 96 DPI
  bool shown_ = false;
  bool isChecking_ = false;            // a question is on its way
  std::optional<EntryKey> inDetails_;  // the entry whose file was checked again for the details
  // The program of the command that the details show.
  std::wstring resolvedCommand_;
  std::wstring resolvedFile_;
  std::optional<EntryKey> added_;  // an entry that is about to appear
};

}  // namespace smh
