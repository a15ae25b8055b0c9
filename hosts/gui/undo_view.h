// The view of past changes: what was changed when, what taking it back would mean, undo and redo. For the
// window's thread; the worker asks the journal.
#pragma once

#include "hosts/common/journal.h"
#include "hosts/gui/view.h"
#include "hosts/gui/virtual_list.h"

#include <string>
#include <vector>

namespace smh {

// Shows a snapshot of the journal's checkpoints, read when the view is shown, by Refresh and after every
// undo.
class UndoView final : public View {
 public:
  // `frame` outlives the view, and `parent` destroys the controls.
  UndoView(HWND parent, const Frame& frame);

  // Reads the journal anew; what is shown stays until the answer is there.
  void Refresh();
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
  bool OnNotify(const NMHDR& header, LRESULT& result) override;
  bool CanRun(UINT command) const override;
  void Run(UINT command) override;
  void Search(std::wstring_view text) override;
  std::wstring CountText() const override;

 private:
  enum class Direction { kUndo, kRedo };

  void Take(std::vector<CheckpointRecord> checkpoints);
  void Filter();
  void ShowSteps();
  const CheckpointRecord* Selected() const;
  std::uint32_t LatestUndone() const;
  void Start(Direction direction, std::uint32_t id, UndoMode mode);
  void Finish(Direction direction, UndoMode mode, const UndoRecord& record);

  const Frame& frame_;
  std::vector<CheckpointRecord> all_;    // undos among them, oldest first
  std::vector<CheckpointRecord> shown_;  // changes only, newest first
  std::vector<std::wstring> steps_;
  std::uint32_t stepsOf_ = 0;
  std::wstring search_;
  VirtualList list_;
  VirtualList stepList_;
  HWND heading_ = nullptr;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  int headingHeight_ = 0;
  bool hasTold_ = false;
};

}  // namespace smh
