#include "hosts/gui/undo_view.h"

#include "hosts/common/host_error.h"
#include "hosts/common/journal_words.h"
#include "hosts/common/text_encoding.h"
#include "hosts/gui/dpi.h"
#include "hosts/gui/resource.h"
#include "hosts/gui/texts/frame_texts.h"
#include "hosts/gui/texts/history_texts.h"
#include "hosts/gui/theme.h"

#include <algorithm>

namespace smh {

namespace {

constexpr std::size_t kMostSteps = 8;

struct HistoryColumn {
  Text title;
  int width;
  std::wstring (*text)(const HistoryRows& rows, std::size_t row);
};
constexpr HistoryColumn kColumns[] = {
    {texts::kHistoryChange, 380, [](const HistoryRows& rows, std::size_t row) { return rows.Title(row); }},
    {texts::kHistoryState, 230,
     [](const HistoryRows& rows, std::size_t row) { return HistoryStateText(rows.Shown()[row].Record()); }},
    {texts::kHistoryTime, 150,
     [](const HistoryRows& rows, std::size_t row) {
       std::wstring time = IsoTimeOf(rows.Shown()[row].Record().info.time);
       std::replace(time.begin(), time.end(), L'T', L' ');
       return time;
     }},
};

HistorySnapshot ReadHistory(const Journal& journal, const std::vector<std::uint32_t>& opened) {
  HistorySnapshot snapshot;
  snapshot.revision = journal.Revision();
  snapshot.actions = journal.Checkpoints();
  for (const std::uint32_t id : opened) {
    try {
      snapshot.parts.emplace(id, journal.Parts(id));
    } catch (const HostError&) {
      // It was dropped meanwhile: its row says so, or there is none.
    }
  }
  return snapshot;
}

// The parts of an undo that took those of `target` back and stand.
std::vector<std::uint32_t> PartsToRedo(const Journal& journal, std::uint32_t undo,
                                       const HistoryTarget& target) {
  std::vector<std::uint32_t> numbers;
  for (const CheckpointRecord& part : journal.Parts(undo)) {
    const bool isWanted = std::ranges::binary_search(target.parts, part.info.undoes);
    if (isWanted && part.info.state == CheckpointState::kDone) numbers.push_back(part.info.id);
  }
  return numbers;
}

UndoRecord UndoTarget(const Journal& journal, const HistoryTarget& target, UndoMode mode) {
  return target.parts.empty() ? journal.Undo(target.action, mode)
                              : journal.UndoParts(target.action, target.parts, mode);
}

// They may have been taken back by several undos: the newest first, until one is refused.
UndoRecord RedoParts(const Journal& journal, const HistoryTarget& target, UndoMode mode) {
  UndoRecord record;
  record.result = IJournal::kWrongState;
  const std::vector<CheckpointRecord> all = journal.Checkpoints();
  for (auto undo = all.rbegin(); undo != all.rend(); ++undo) {
    const CheckpointState state = undo->info.state;
    if (undo->info.undoes != target.action || state == CheckpointState::kDropped) continue;
    const std::vector<std::uint32_t> numbers = PartsToRedo(journal, undo->info.id, target);
    if (numbers.empty()) continue;
    record = journal.UndoParts(undo->info.id, numbers, mode);
    if (FAILED(record.result)) break;
  }
  return record;
}

// What is as expected needs no word.
std::wstring StepText(const UndoneStepRecord& step) {
  const bool isPlain = step.outcome == StepOutcome::kUndo;
  const std::wstring text = Printable(ShownStep(step.text));
  return isPlain ? text : Format(texts::kStepOutcome, StepOutcomeText(step.outcome), text);
}

// The steps that stand in the way.
std::wstring Conflicts(const UndoRecord& record) {
  std::wstring text;
  std::size_t count = 0;
  for (const UndoneStepRecord& step : record.steps) {
    if (step.outcome != StepOutcome::kConflict && step.outcome != StepOutcome::kBlocked) continue;
    if (++count <= kMostSteps) text += L"\n\u2022 " + Printable(ShownStep(step.text));
  }
  return count > kMostSteps ? text + L"\n\u2026" : text;
}

}  // namespace

UndoView::UndoView(HWND parent, const Frame& frame) : frame_(frame) {
  Create(parent);
}

void UndoView::Create(HWND parent) {
  ListSource source;
  source.text = [this](std::size_t row, std::size_t column) { return kColumns[column].text(rows_, row); };
  source.color = [this](std::size_t row) {
    return ColorOf(CanBeUndone(rows_.Shown()[row]) ? Role::kText : Role::kGreyText);
  };
  source.onSelect = [this] {
    ShowSteps();
    frame_.onChange();
  };
  source.onActivate = [this] { Activate(); };
  source.onFold = [this](std::size_t row, bool open) { Fold(row, open); };
  std::vector<ListColumn> columns;
  for (const HistoryColumn& column : kColumns) columns.push_back({column.title.Get(), column.width});
  list_.Create(parent, IDC_CHECKPOINTS, std::move(columns), std::move(source));
  list_.Describe(texts::kUndoHistory.Get(), texts::kShowParts.Get());
  heading_ = CreateWindowExW(0, WC_STATICW, texts::kWhatUndoMeans.Get(),
                             WS_CHILD | WS_CLIPSIBLINGS | SS_NOPREFIX | SS_CENTERIMAGE, 0, 0, 0, 0, parent,
                             nullptr, nullptr, nullptr);
  ListSource steps;
  steps.text = [this](std::size_t row, std::size_t) { return steps_[row]; };
  stepList_.Create(parent, IDC_STEPS, {{texts::kHistoryStep.Get(), 700}}, std::move(steps));
  stepList_.Describe(texts::kWhatUndoMeans.Get(), {});
}

void UndoView::Refresh() {
  frame_.worker.Ask(
      [opened = rows_.Opened()](LibrarySession& session) { return ReadHistory(session.Changes(), opened); },
      [this](const HistorySnapshot& snapshot) { Take(snapshot); });
}

void UndoView::RefreshWhenWritten() {
  frame_.worker.Ask([](LibrarySession& session) { return session.Changes().Revision(); },
                    [this](std::uint64_t revision) {
                      if (revision != revision_) Refresh();
                    });
}

void UndoView::Take(const HistorySnapshot& snapshot) {
  revision_ = snapshot.revision;
  stepsOf_ = {};
  Rearrange([&] { rows_.Take(snapshot); });
  if (rows_.HasInterrupted() && !hasTold_) frame_.say(texts::kWasInterrupted.Get());
  hasTold_ = true;
}

void UndoView::Rearrange(const std::function<void()>& change) {
  const HistoryTarget selected = Selected();
  const HistoryTarget focused = rows_.TargetOf({list_.Focused()});
  change();
  list_.SetCount(rows_.Shown().size());
  const std::vector<std::size_t> again = rows_.PositionsOf(focused);
  list_.Select(rows_.PositionsOf(selected), again.empty() ? rows_.Shown().size() : again.front());
}

// A part that is to hide what it is among leaves the selection to its action.
void UndoView::Fold(std::size_t row, bool open) {
  const std::uint32_t id = rows_.Shown()[row].action->info.id;
  if (!rows_.HasParts(row) || rows_.IsOpened(id) == open) return;
  if (!open) {
    const bool isPart = rows_.Shown()[row].part != nullptr;
    Rearrange([&] { rows_.Close(id); });
    const std::vector<std::size_t> action = rows_.PositionsOf({id});
    if (isPart && !action.empty()) list_.Select(action, action.front());
    return;
  }
  frame_.worker.Ask(
      [id](LibrarySession& session) { return session.Changes().Parts(id); },
      [this, id](const std::vector<CheckpointRecord>& parts) { Rearrange([&] { rows_.Open(id, parts); }); });
}

void UndoView::Activate() {
  const std::size_t row = list_.Focused();
  if (row >= rows_.Shown().size()) return;
  if (!rows_.HasParts(row)) return (void)SetFocus(stepList_.Handle());
  Fold(row, !rows_.IsOpened(rows_.Shown()[row].action->info.id));
}

void UndoView::ShowSteps() {
  const HistoryTarget target = Selected();
  if (target == stepsOf_ && target.action != 0) return;
  stepsOf_ = target;
  steps_.clear();
  if (const std::wstring reason = rows_.WhyNotUndone(target); !reason.empty()) steps_.push_back(reason);
  stepList_.SetCount(steps_.size());
  if (!rows_.CanUndo(target)) return;
  frame_.worker.Ask(
      [target](LibrarySession& session) { return UndoTarget(session.Changes(), target, UndoMode::kShow); },
      [this, target](const UndoRecord& record) {
        if (target != stepsOf_) return;
        const bool isRefused = FAILED(record.result) && record.result != IJournal::kConflict;
        if (isRefused)
          steps_.push_back(Format(texts::kCannotBeUndone, UndoFailureText(record, UndoVerb::kUndo)));
        for (const UndoneStepRecord& step : record.steps) steps_.push_back(StepText(step));
        stepList_.SetCount(steps_.size());
      });
}

bool UndoView::CanUndoLatest() const {
  return rows_.CanUndoLatest();
}

bool UndoView::CanRedoLatest() const {
  return rows_.LatestUndo() != nullptr;
}

void UndoView::UndoLatest() {
  Start({Direction::kUndo, {}, {}}, UndoMode::kRun);
}

void UndoView::RedoLatest() {
  const CheckpointRecord* const undo = rows_.LatestUndo();
  if (undo == nullptr) return;
  Start({Direction::kRedo, {undo->info.id}, rows_.NameOf({undo->info.undoes})}, UndoMode::kRun);
}

std::wstring UndoView::TitleOf(const Order& order) {
  const bool isUndo = order.direction == Direction::kUndo;
  if (order.name.empty()) return (isUndo ? texts::kUndoingLatest : texts::kRedoingLatest).Get();
  return Format(isUndo ? texts::kUndoingOne : texts::kRedoingOne, Printable(order.name));
}

void UndoView::Start(const Order& order, UndoMode mode) {
  if (const std::wstring reason = frame_.actions.WhyNotNow(); !reason.empty()) return frame_.say(reason);
  frame_.actions.Run(
      {TitleOf(order)},
      [order, mode](LibrarySession& session, ActionProgress&) {
        const Journal& journal = session.Changes();
        if (order.direction == Direction::kUndo) return UndoTarget(journal, order.target, mode);
        return order.target.parts.empty() ? journal.Redo(order.target.action, mode)
                                          : RedoParts(journal, order.target, mode);
      },
      [this, order, mode](const UndoRecord& record) { Finish(order, mode, record); },
      [this](const std::wstring& text) { ShowError(frame_, text); });
}

void UndoView::Finish(const Order& order, UndoMode mode, const UndoRecord& record) {
  Refresh();
  const bool isUndo = order.direction == Direction::kUndo;
  std::wstring name = order.name.empty() ? rows_.NameOf({record.checkpoint}) : order.name;
  name = Printable(name.empty() ? ShownTitle(record.title) : name);
  if (SUCCEEDED(record.result)) return frame_.say(Format(isUndo ? texts::kUndid : texts::kRedid, name));
  if (record.result == IJournal::kConflict && mode == UndoMode::kRun) {
    if (Confirm(frame_, Format(texts::kConflictQuestion, name, Conflicts(record)),
                texts::kOverwriteVerb.Get())) {
      const bool isLatest = order.target.action == 0;
      Start({order.direction, isLatest ? HistoryTarget{record.checkpoint} : order.target, order.name},
            UndoMode::kForce);
    }
    return;
  }
  const std::wstring why = UndoFailureText(record, isUndo ? UndoVerb::kUndo : UndoVerb::kRedo);
  ShowError(frame_, Format(isUndo ? texts::kCannotUndo : texts::kCannotRedo, name, why) +
                        (record.ownCheckpoint == 0 ? L"" : texts::kPartlyStays.Get()));
}

void UndoView::Search(std::wstring_view text) {
  Rearrange([&] { rows_.Search(text); });
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

// With something selected the commands mean that.
bool UndoView::CanRun(UINT command) const {
  const bool isAny = list_.Selection().empty();
  switch (command) {
    case CMD_UNDO:
      return isAny ? CanUndoLatest() : rows_.CanUndo(Selected());
    case CMD_REDO:
      return isAny ? CanRedoLatest() : rows_.CanRedo(Selected());
    case CMD_COPY:
      return !Focused().Selection().empty();
    case CMD_SELECT_ALL:
      return Focused().Count() > 0;
    case CMD_PARTS:
      return list_.Focused() < rows_.Shown().size() && rows_.HasParts(list_.Focused());
    default:
      return false;
  }
}

void UndoView::Run(UINT command) {
  if (command == CMD_COPY) return (void)CopyToClipboard(frame_.window, Focused().SelectedText());
  if (command == CMD_SELECT_ALL) return (GetFocus() == stepList_.Handle() ? stepList_ : list_).SelectAll();
  if (command == CMD_PARTS) return Activate();
  const HistoryTarget target = Selected();
  const bool isUndo = command == CMD_UNDO;
  if (target.action == 0) return isUndo ? UndoLatest() : RedoLatest();
  Start({isUndo ? Direction::kUndo : Direction::kRedo, target, rows_.NameOf(target)}, UndoMode::kRun);
}

std::wstring UndoView::CountText() const {
  const std::size_t count = rows_.ActionCount();
  return Format(texts::kChanges.For(count), count);
}

}  // namespace smh
