// The view of past changes: what was changed when and in which parts, what taking it back would mean, undo
// and redo. For the window's thread; the worker asks the journal.
#pragma once

#include "hosts/gui/history_rows.h"
#include "hosts/gui/view.h"
#include "hosts/gui/virtual_list.h"

#include <functional>
#include <string>
#include <vector>

namespace smh {

// Shows a snapshot of the journal's actions, read when the view is shown, by Refresh and after every undo. An
// action is opened into its parts with Enter, a double click or the right arrow key; for a change without
// parts Enter leads to what taking it back means.
class UndoView final : public View {
 public:
  // `frame` outlives the view, and `parent` destroys the controls.
  UndoView(HWND parent, const Frame& frame);

  // Reads the journal anew; what is shown stays until the answer is there.
  void Refresh();
  // The same when somebody has written to it since; quick.
  void RefreshWhenWritten();
  // For the commands of the other views: the latest change, whichever is selected here. They ask the snapshot
  // only.
  bool CanUndoLatest() const;
  bool CanRedoLatest() const;
  // Start the undo or redo as a task. A conflict asks the user whether to overwrite; any other failure ends
  // in a box.
  void UndoLatest();
  void RedoLatest();

  // See view.h.
  void Show(bool show) override;
  void Place(const RECT& area) override;
  void SetDpi(int dpi, const ViewFonts& fonts) override;
  HWND MainControl() const override { return list_.Handle(); }
  std::vector<HWND> Panes() const override { return {list_.Handle(), stepList_.Handle()}; }
  bool OnNotify(const NMHDR& header, LRESULT& result) override;
  bool CanRun(UINT command) const override;
  void Run(UINT command) override;
  void Search(std::wstring_view text) override;
  std::wstring CountText() const override;

 private:
  enum class Direction { kUndo, kRedo };
  // What the user asked for, and its name for people.
  struct Order {
    Direction direction;
    HistoryTarget target;  // none: the latest change
    std::wstring name;
  };

  void Create(HWND parent);
  void Take(const HistorySnapshot& snapshot);
  // Makes the rows anew by `change` and keeps selection and focus by what they are.
  void Rearrange(const std::function<void()>& change);
  void Fold(std::size_t row, bool open);
  // Opens or closes what has the focus; without parts its steps get the focus.
  void Activate();
  const VirtualList& Focused() const { return GetFocus() == stepList_.Handle() ? stepList_ : list_; }
  void ShowSteps();
  HistoryTarget Selected() const { return rows_.TargetOf(list_.Selection()); }
  static std::wstring TitleOf(const Order& order);
  void Start(const Order& order, UndoMode mode);
  void Finish(const Order& order, UndoMode mode, const UndoRecord& record);

  const Frame& frame_;
  HistoryRows rows_;
  std::uint64_t revision_ = 0;  // of the journal in rows_
  std::vector<std::wstring> steps_;
  HistoryTarget stepsOf_;
  VirtualList list_;
  VirtualList stepList_;
  HWND heading_ = nullptr;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  int headingHeight_ = 0;
  bool hasTold_ = false;
};

}  // namespace smh
