#include "hosts/cli/commands/undo_commands.h"

#include "hosts/cli/console.h"
#include "hosts/cli/texts/journal_texts.h"
#include "hosts/cli/texts/usage_texts.h"
#include "hosts/common/host_error.h"
#include "hosts/common/journal.h"
#include "hosts/common/journal_words.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>

namespace smh {

namespace {

// What is to be done, and its words.
struct Order {
  UndoVerb verb;
  const texts::UndoTexts& texts;
  // Nobody has named an action.
  bool isBare = false;
  std::vector<std::uint32_t> parts = {};  // none: all
  std::function<UndoRecord(UndoMode mode)> run = {};
};

std::wstring NameOf(const UndoRecord& record) {
  return Format(texts::kCheckpointName, record.checkpoint, TitleText(record.title));
}

std::wstring StepLine(const UndoneStepRecord& step) {
  std::wstring line = StepOutcomeText(step.outcome).Get();
  line.resize(std::max<std::size_t>(line.size(), 11), L' ');
  return line + L"  " + Printable(ShownStep(step.text));
}

bool IsWorthTelling(const UndoneStepRecord& step) noexcept {
  return step.outcome != StepOutcome::kUndo && step.outcome != StepOutcome::kNothing;
}

// The steps that did not go, or will not go, as a user would expect.
std::vector<std::wstring> ExceptionLines(const UndoRecord& record) {
  std::vector<std::wstring> lines;
  for (const UndoneStepRecord& step : record.steps) {
    if (IsWorthTelling(step)) lines.push_back(StepLine(step));
  }
  return lines;
}

void ShowSteps(const UndoRecord& record) {
  std::wstring text = Printable(NameOf(record)) + L"\n";
  for (const UndoneStepRecord& step : record.steps) text += StepLine(step) + L"\n";
  WriteOutput(text);
}

bool IsNotFound(HRESULT result) noexcept {
  return result == HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
}

// Nobody named what the bare command has met.
bool StandsInTheWay(const UndoRecord& record) noexcept {
  return record.result == IJournal::kDamaged || record.result == HRESULT_FROM_WIN32(ERROR_BUSY) ||
         record.result == IJournal::kOutOfReach;
}

HostError FailureOf(const UndoRecord& record, const Order& order) {
  const texts::UndoTexts& texts = order.texts;
  if (record.result == IJournal::kConflict) {
    return HostError(Format(texts.conflict, NameOf(record)), ExceptionLines(record));
  }
  if (order.isBare && IsNotFound(record.result)) return HostError(texts::kNothingToUndo);
  const std::wstring why = UndoFailureText(record, order.verb);
  HostError error(record.checkpoint == 0 ? Format(texts.failedBare, why)
                                         : Format(texts.failed, NameOf(record), why));
  if (order.isBare && StandsInTheWay(record)) error.Add(texts::kNewestToUndo);
  if (record.ownCheckpoint != 0) error.Add(Say(texts::kGoesOn, record.ownCheckpoint));
  return error;
}

// What the bare command has passed over although nobody can tell what is in it.
std::vector<std::wstring> PassedOver(const Journal& journal, std::uint32_t undone) {
  std::vector<std::wstring> lines;
  for (const CheckpointRecord& each : journal.Checkpoints()) {
    if (each.info.id > undone && each.info.state == CheckpointState::kDamaged) {
      lines.push_back(
          Format(texts::kPassedOver, Format(texts::kCheckpointName, each.info.id, TitleText(each.title))));
    }
  }
  return lines;
}

// The entry that a part's title ends with, behind who changed what: "Startup Manager: Disabling Inkwell".
std::wstring_view CaptionIn(std::wstring_view title) noexcept {
  for (const std::wstring_view prefix : {L"Undo: ", L"Redo: "}) {
    if (title.starts_with(prefix)) title.remove_prefix(prefix.size());
  }
  const std::size_t colon = title.find(L": ");
  if (colon != std::wstring_view::npos) title.remove_prefix(colon + 2);
  const std::size_t blank = title.find(L' ');
  return blank == std::wstring_view::npos ? title : title.substr(blank + 1);
}

std::uint32_t FindPart(const std::vector<CheckpointRecord>& parts, const std::wstring& text) {
  std::vector<std::wstring> candidates;
  std::uint32_t number = 0;
  for (const CheckpointRecord& part : parts) {
    if (std::to_wstring(part.info.id) == text) return part.info.id;
    if (!SameText(CaptionIn(part.title), text)) continue;
    number = part.info.id;
    candidates.push_back(L"  " + std::to_wstring(number) + L"  " + TitleText(part.title));
  }
  if (candidates.empty()) throw HostError(Say(texts::kNoPart, text));
  if (candidates.size() > 1) {
    throw HostError(Say(texts::kSeveralParts, text), candidates);
  }
  return number;
}

std::vector<std::uint32_t> OnlyParts(const Journal& journal, const Arguments& arguments) {
  if (arguments.only.empty()) return {};
  if (arguments.ids.empty()) throw UsageError(texts::kOnlyNeedsId);
  const std::vector<CheckpointRecord> parts = journal.Parts(arguments.Id());
  std::set<std::uint32_t> numbers;
  for (const std::wstring& text : arguments.only) numbers.insert(FindPart(parts, text));
  return {numbers.begin(), numbers.end()};
}

std::wstring DoneText(const Order& order, const UndoRecord& record) {
  const std::size_t count = order.parts.size();
  const Text& text = count == 0 ? order.texts.done : count == 1 ? order.texts.oneDone : order.texts.manyDone;
  return Format(text, NameOf(record), count);
}

void Run(const Journal& journal, const Arguments& arguments, const Order& order) {
  const UndoMode mode = arguments.show    ? UndoMode::kShow
                        : arguments.force ? UndoMode::kForce
                                          : UndoMode::kRun;
  const UndoRecord record = order.run(mode);
  if (arguments.show && record.checkpoint != 0) ShowSteps(record);
  const bool isShown = arguments.show && record.result == IJournal::kConflict;
  if (FAILED(record.result) && !isShown) throw FailureOf(record, order);
  if (arguments.show) return;
  std::vector<std::wstring> lines = ExceptionLines(record);
  if (order.isBare) std::ranges::move(PassedOver(journal, record.checkpoint), std::back_inserter(lines));
  WriteMessage(DoneText(order, record), lines);
}

// The last undo that stands. What takes an undo back is a redo, which is none.
std::uint32_t LastUndo(const Journal& journal) {
  const std::vector<CheckpointRecord> all = journal.Checkpoints();
  const auto isUndo = [&all](std::uint32_t id) {
    return std::ranges::any_of(
        all, [id](const CheckpointRecord& each) { return each.info.id == id && each.info.undoes != 0; });
  };
  const auto last = std::find_if(all.rbegin(), all.rend(), [&isUndo](const CheckpointRecord& each) {
    const bool stands = each.info.state == CheckpointState::kDone ||
                        each.info.state == CheckpointState::kPartlyDone ||
                        each.info.state == CheckpointState::kInterrupted;
    return each.info.undoes != 0 && stands && !isUndo(each.info.undoes);
  });
  if (last != all.rend()) return last->info.id;
  throw HostError(texts::kNothingToRedo);
}

}  // namespace

void RunUndo(const Arguments& arguments) {
  const Journal journal;
  Order order{.verb = UndoVerb::kUndo, .texts = texts::kUndoTexts, .isBare = arguments.ids.empty()};
  order.parts = OnlyParts(journal, arguments);
  order.run = [&](UndoMode mode) {
    return order.parts.empty() ? journal.Undo(arguments.Id(), mode)
                               : journal.UndoParts(arguments.Id(), order.parts, mode);
  };
  Run(journal, arguments, order);
}

void RunRedo(const Arguments& arguments) {
  const Journal journal;
  const std::uint32_t id = arguments.ids.empty() ? LastUndo(journal) : arguments.Id();
  Run(journal, arguments, {.verb = UndoVerb::kRedo, .texts = texts::kRedoTexts, .run = [&](UndoMode mode) {
                             return journal.Redo(id, mode);
                           }});
}

}  // namespace smh
