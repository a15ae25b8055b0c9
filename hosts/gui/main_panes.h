// What stands in the main window, and where: tool bar and search box at the top, a banner below them when
// there is something to say, the tree of locations beside the view that it chose, a bar for what lasts, the
// status bar. For the window's thread.
#pragma once

#include "hosts/gui/accessible_window.h"
#include "hosts/gui/command_bar.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/entries_view.h"
#include "hosts/gui/location_tree.h"
#include "hosts/gui/notice_bar.h"
#include "hosts/gui/programs_view.h"
#include "hosts/gui/progress_bar.h"
#include "hosts/gui/undo_view.h"
#include "hosts/gui/view.h"
#include "hosts/gui/window.h"

#include <memory>
#include <string>
#include <vector>

namespace smh {

// Owns the views, which see the main window as a Frame only. The controls are the window's, which destroys
// them; the object outlives them.
class MainPanes {
 public:
  // Makes all controls in the frame's window, with the view of entries shown; called once, and SetDpi next.
  // `frame` outlives the object. Raises HostError.
  void Create(const Frame& frame, LocationTree::OnSelect onSelect);
  // Whether Create is through; everything below but Dpi and Layout is for that time.
  bool IsMade() const noexcept { return shown_ != nullptr; }

  // The parts, valid as long as the object.
  LocationTree& Tree() noexcept { return tree_; }
  const LocationTree& Tree() const noexcept { return tree_; }
  const CommandBar& Bar() const noexcept { return bar_; }
  EntriesView& Entries() const noexcept { return *entries_; }
  ProgramsView& Programs() const noexcept { return *programs_; }
  UndoView& Undo() const noexcept { return *undo_; }
  std::vector<View*> Views() const { return {entries_.get(), programs_.get(), undo_.get()}; }
  HWND SearchBox() const noexcept { return search_; }
  ProgressBar& Progress() noexcept { return progress_; }

  // The view at the right side.
  View& Shown() const noexcept { return *shown_; }
  bool Shows(const View& view) const noexcept { return shown_ == &view; }
  // Shows the view of that kind, searched for what the search box holds; false when it is shown already.
  // Layout places it.
  bool Show(LocationTree::Kind kind);
  // Says that in the banner; Layout makes room for it.
  void SetNotice(const Notice& notice);
  // Where the empty search box says that it searches; everywhere when that is empty.
  void SetSearchPlace(const std::wstring& place) const;
  // The parts of the status bar, from the left.
  enum class StatusPart { kNews, kCount, kAccount };
  void SetStatus(StatusPart part, const std::wstring& text) const;
  // The controls that take the focus now, in their order on the screen.
  std::vector<HWND> FocusOrder() const;
  // Gives the focus to the next of them, or to the one before.
  void FocusNext(bool backwards) const;
  // The window is not the active one any more; it is again: the focus goes back to where it was.
  void RememberFocus();
  void RestoreFocus() const;

  // Of the screen that the window is on, as SetDpi was told last; 96 before.
  int Dpi() const noexcept { return dpi_; }
  // Makes fonts and pictures anew for all parts; Layout comes next.
  void SetDpi(int dpi);
  // Places everything in the window's client area. Does nothing before Create is through or while the window
  // is an icon.
  void Layout();
  // The sizes of panes and columns and the order of the list, as the user left them; see window_settings.h.
  void LoadLook();
  void SaveLook() const;

 private:
  View& ViewOf(LocationTree::Kind kind) const noexcept;
  void ShowProgress(bool show);
  void LayoutTop(int width, int top, int height);

  const Frame* frame_ = nullptr;
  LocationTree tree_;
  CommandBar bar_;
  Splitter splitter_;
  ProgressBar progress_;
  std::unique_ptr<EntriesView> entries_;
  std::unique_ptr<ProgramsView> programs_;
  std::unique_ptr<UndoView> undo_;
  View* shown_ = nullptr;
  HWND lastFocus_ = nullptr;
  HWND search_ = nullptr;
  AccessibleWindow accessibleSearch_;
  HWND status_ = nullptr;
  NoticeBar notice_;
  ScopedFont font_;
  ScopedFont heading_;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  int treeWidth_ = 230;  // at 96 DPI
};

}  // namespace smh
