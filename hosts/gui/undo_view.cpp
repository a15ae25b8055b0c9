#include "hosts/gui/undo_view.h"

#include "hosts/common/text_encoding.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/resource.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

constexpr std::size_t kMostSteps = 8;

// By CheckpointState.
constexpr const wchar_t* kStates[] = {L"At work", L"Done",        L"Interrupted", L"Undone",
                                      L"Failed",  L"Partly done", L"Damaged",     L"Dropped"};

std::wstring StateText(CheckpointState state) {
  const auto index = static_cast<std::size_t>(state);
  return index < std::size(kStates) ? kStates[index] : L"";
}

struct CheckpointColumn {
  const wchar_t* title;
  int width;
  std::wstring (*text)(const CheckpointRecord& checkpoint);
};
constexpr CheckpointColumn kColumns[] = {
    {L"Change", 420, [](const CheckpointRecord& checkpoint) { return Printable(checkpoint.title); }},
    {L"State", 100, [](const CheckpointRecord& checkpoint) { return StateText(checkpoint.info.state); }},
    {L"Time", 170,
     [](const CheckpointRecord& checkpoint) {
       std::wstring time = IsoTimeOf(checkpoint.info.time);
       std::replace(time.begin(), time.end(), L'T', L' ');
       return time;
     }},
};

bool IsChange(const CheckpointRecord& checkpoint) noexcept {
  return checkpoint.info.undoes == 0;
}
// Whether the next undo may mean it.
bool IsLeftToUndo(const CheckpointRecord& checkpoint) noexcept {
  const CheckpointState state = checkpoint.info.state;
  return IsChange(checkpoint) && (state == CheckpointState::kDone || state == CheckpointState::kInterrupted ||
                                  state == CheckpointState::kPartlyDone);
}
// When it is chosen: something may be left of one that failed.
bool CanBeUndone(const CheckpointRecord& checkpoint) noexcept {
  return IsLeftToUndo(checkpoint) ||
         (IsChange(checkpoint) && checkpoint.info.state == CheckpointState::kFailed);
}

// What is as expected needs no word.
std::wstring StepText(const UndoneStepRecord& step) {
  const bool isPlain = step.outcome == StepOutcome::kUndo;
  return (isPlain ? std::wstring() : std::wstring(StepOutcomeName(step.outcome)) + L": ") +
         Printable(step.text);
}

// The steps that stand in the way.
std::wstring Conflicts(const UndoRecord& record) {
  std::wstring text;
  std::size_t count = 0;
  for (const UndoneStepRecord& step : record.steps) {
    if (step.outcome != StepOutcome::kConflict && step.outcome != StepOutcome::kBlocked) continue;
    if (++count <= kMostSteps) text += L"\n\u2022 " + Printable(step.text);
  }
  return count > kMostSteps ? text + L"\n\u2026" : text;
}

}  // namespace

UndoView::UndoView(HWND parent, const Frame& frame) : frame_(frame) {
  ListSource source;
  source.text = [this](std::size_t row, std::size_t column) { return kColumns[column].text(shown_[row]); };
  source.color = [this](std::size_t row) {
    return GetSysColor(IsLeftToUndo(shown_[row]) ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
  };
  source.onSelect = [this] {
    ShowSteps();
    frame_.onChange();
  };
  std::vector<ListColumn> columns;
  for (const CheckpointColumn& column : kColumns) columns.push_back({column.title, column.width});
  list_.Create(parent, IDC_CHECKPOINTS, std::move(columns), std::move(source));
  heading_ = CreateWindowExW(0, WC_STATICW, L"What taking it back means",
                             WS_CHILD | WS_CLIPSIBLINGS | SS_NOPREFIX | SS_CENTERIMAGE, 0, 0, 0, 0, parent,
                             nullptr, nullptr, nullptr);
  ListSource steps;
  steps.text = [this](std::size_t row, std::size_t) { return steps_[row]; };
  stepList_.Create(parent, IDC_STEPS, {{L"Step", 700}}, std::move(steps));
}

void UndoView::Refresh() {
  frame_.worker.Ask([](LibrarySession& session) { return session.Changes().Checkpoints(); },
                    [this](const std::vector<CheckpointRecord>& checkpoints) { Take(checkpoints); });
}

void UndoView::Take(std::vector<CheckpointRecord> checkpoints) {
  all_ = std::move(checkpoints);
  stepsOf_ = 0;
  Filter();
  ShowSteps();
  const auto interrupted = std::count_if(all_.begin(), all_.end(), [](const CheckpointRecord& checkpoint) {
    return checkpoint.info.state == CheckpointState::kInterrupted;
  });
  if (interrupted > 0 && !hasTold_)
    frame_.say(L"A change was interrupted: the undo history (Ctrl+3) can take it back.");
  hasTold_ = true;
}

void UndoView::Filter() {
  const CheckpointRecord* const selected = Selected();
  const std::uint32_t id = selected == nullptr ? 0 : selected->info.id;
  shown_.clear();
  std::copy_if(
      all_.rbegin(), all_.rend(), std::back_inserter(shown_), [this](const CheckpointRecord& checkpoint) {
        return IsChange(checkpoint) && LowerCase(checkpoint.title).find(search_) != std::wstring::npos;
      });
  list_.SetCount(shown_.size());
  const auto again = std::find_if(shown_.begin(), shown_.end(),
                                  [id](const CheckpointRecord& each) { return each.info.id == id; });
  const auto row = static_cast<std::size_t>(again - shown_.begin());
  list_.Select(again == shown_.end() ? std::vector<std::size_t>() : std::vector{row}, row);
  frame_.onChange();
}

const CheckpointRecord* UndoView::Selected() const {
  const std::vector<std::size_t> rows = list_.Selection();
  return rows.size() == 1 && rows.front() < shown_.size() ? &shown_[rows.front()] : nullptr;
}

void UndoView::ShowSteps() {
  const CheckpointRecord* const selected = Selected();
  const std::uint32_t id = selected == nullptr || !CanBeUndone(*selected) ? 0 : selected->info.id;
  if (id == stepsOf_ && id != 0) return;
  stepsOf_ = id;
  steps_.clear();
  stepList_.SetCount(0);
  if (id == 0) return;
  frame_.worker.Ask([id](LibrarySession& session) { return session.Changes().Undo(id, UndoMode::kShow); },
                    [this, id](const UndoRecord& record) {
                      if (id != stepsOf_) return;
                      for (const UndoneStepRecord& step : record.steps) steps_.push_back(StepText(step));
                      stepList_.SetCount(steps_.size());
                    });
}

bool UndoView::CanUndoLatest() const {
  return std::any_of(all_.begin(), all_.end(), IsLeftToUndo);
}

// The change that was taken back last, unless a new one came after that; 0 for none.
std::uint32_t UndoView::LatestUndone() const {
  for (auto undo = all_.rbegin(); undo != all_.rend(); ++undo) {
    if (IsChange(*undo) && undo->info.state != CheckpointState::kUndone &&
        undo->info.state != CheckpointState::kFailed) {
      return 0;
    }
    const auto change = std::find_if(all_.begin(), all_.end(), [&](const CheckpointRecord& each) {
      return each.info.id == undo->info.undoes && IsChange(each) &&
             each.info.state == CheckpointState::kUndone;
    });
    if (change != all_.end() && undo->info.state == CheckpointState::kDone) return change->info.id;
  }
  return 0;
}

bool UndoView::CanRedoLatest() const {
  return LatestUndone() != 0;
}

void UndoView::UndoLatest() {
  Start(Direction::kUndo, 0, UndoMode::kRun);
}

void UndoView::RedoLatest() {
  Start(Direction::kRedo, LatestUndone(), UndoMode::kRun);
}

void UndoView::Start(Direction direction, std::uint32_t id, UndoMode mode) {
  frame_.worker.Ask(
      [direction, id, mode](LibrarySession& session) {
        const Journal& journal = session.Changes();
        return direction == Direction::kUndo ? journal.Undo(id, mode) : journal.Redo(id, mode);
      },
      [this, direction, mode](const UndoRecord& record) { Finish(direction, mode, record); });
}

void UndoView::Finish(Direction direction, UndoMode mode, const UndoRecord& record) {
  Refresh();
  const bool isUndo = direction == Direction::kUndo;
  if (SUCCEEDED(record.result)) return frame_.say((isUndo ? L"Undid: " : L"Redid: ") + record.title);
  if (record.result == IJournal::kConflict && mode == UndoMode::kRun) {
    if (Confirm(frame_,
                L"\u201C" + record.title + L"\u201D is in conflict with later changes. Nothing was changed." +
                    Conflicts(record) + L"\n\nGo on all the same, and overwrite what stands there now?")) {
      Start(direction, record.checkpoint, UndoMode::kForce);
    }
    return;
  }
  const wchar_t* const verb = isUndo ? L"undo" : L"redo";
  ShowError(frame_, L"Cannot " + std::wstring(verb) + L" \u201C" + record.title + L"\u201D: " +
                        UndoFailureText(record, verb) + L"\n" + PartlyDoneText(record));
}

void UndoView::Search(std::wstring_view text) {
  search_ = LowerCase(Trim(text));
  Filter();
}

void UndoView::Show(bool show) {
  if (show) Refresh();
  for (const HWND window : {list_.Handle(), heading_, stepList_.Handle()}) {
    ShowWindow(window, show ? SW_SHOWNA : SW_HIDE);
  }
}

void UndoView::Place(const RECT& area) {
  const int width = static_cast<int>(area.right - area.left);
  const int height = static_cast<int>(area.bottom - area.top);
  const int listHeight = (height - headingHeight_) * 3 / 5;
  const int margin = Scaled(4, dpi_);
  MoveWindow(list_.Handle(), area.left, area.top, width, listHeight, TRUE);
  MoveWindow(heading_, area.left + margin, area.top + listHeight, width - margin, headingHeight_, TRUE);
  const int top = static_cast<int>(area.top) + listHeight + headingHeight_;
  MoveWindow(stepList_.Handle(), area.left, top, width, static_cast<int>(area.bottom) - top, TRUE);
}

void UndoView::SetDpi(int dpi, const ViewFonts& fonts) {
  dpi_ = dpi;
  SendMessageW(heading_, WM_SETFONT, reinterpret_cast<WPARAM>(fonts.heading), TRUE);
  headingHeight_ = FontHeight(heading_, fonts.heading) + Scaled(8, dpi);
  list_.SetDpi(dpi, fonts.normal);
  stepList_.SetDpi(dpi, fonts.normal);
}

bool UndoView::OnNotify(const NMHDR& header, LRESULT& result) {
  return list_.OnNotify(header, result) || stepList_.OnNotify(header, result);
}

// With a change selected the commands mean that one.
bool UndoView::CanRun(UINT command) const {
  const CheckpointRecord* const selected = Selected();
  switch (command) {
    case CMD_UNDO:
      return selected == nullptr ? CanUndoLatest() : CanBeUndone(*selected);
    case CMD_REDO:
      return selected == nullptr ? CanRedoLatest() : selected->info.state == CheckpointState::kUndone;
    case CMD_COPY:
      return !list_.Selection().empty();
    default:
      return false;
  }
}

void UndoView::Run(UINT command) {
  const CheckpointRecord* const selected = Selected();
  if (command == CMD_COPY) {
    CopyToClipboard(frame_.window, list_.SelectedText());
  } else if (command == CMD_UNDO) {
    Start(Direction::kUndo, selected == nullptr ? 0 : selected->info.id, UndoMode::kRun);
  } else if (command == CMD_REDO) {
    Start(Direction::kRedo, selected == nullptr ? LatestUndone() : selected->info.id, UndoMode::kRun);
  }
}

std::wstring UndoView::CountText() const {
  return std::to_wstring(shown_.size()) + (shown_.size() == 1 ? L" change" : L" changes");
}

}  // namespace smh
