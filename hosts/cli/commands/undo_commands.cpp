#include "hosts/cli/commands/undo_commands.h"

#include "hosts/cli/console.h"
#include "hosts/common/host_error.h"
#include "hosts/common/journal.h"
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
  std::wstring_view verb;
  std::wstring_view done;
  // Nobody has named an action.
  bool isBare = false;
  std::vector<std::uint32_t> parts = {};  // none: all
  std::function<UndoRecord(UndoMode mode)> run = {};
};

std::wstring NameOf(const UndoRecord& record) {
  return L"checkpoint " + std::to_wstring(record.checkpoint) + L" \"" + record.title + L"\"";
}

std::wstring StepLine(const UndoneStepRecord& step) {
  std::wstring line(StepOutcomeName(step.outcome));
  line.resize(std::max<std::size_t>(line.size(), 11), L' ');
  return line + L"  " + Printable(step.text);
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
  const std::wstring verb(order.verb);
  if (record.result == IJournal::kConflict) {
    return HostError(L"Cannot " + verb + L": " + NameOf(record) +
                         L" is in conflict with later changes; nothing was changed. --force " + verb +
                         L"es the rest over them.",
                     ExceptionLines(record));
  }
  if (order.isBare && IsNotFound(record.result)) {
    return HostError(L"There is nothing to " + verb + L".");
  }
  const std::wstring name = record.checkpoint == 0 ? std::wstring() : L' ' + NameOf(record);
  HostError error(L"Cannot " + verb + name + L": " + UndoFailureText(record, verb));
  if (order.isBare && StandsInTheWay(record)) {
    error.Add(L"It is the newest change to undo. \"startupctl " + verb +
              L" ID\" names another one, and \"startupctl checkpoints\" lists all.");
  }
  if (record.ownCheckpoint != 0) {
    error.Add(L"What was done until then is checkpoint " + std::to_wstring(record.ownCheckpoint) +
              L": the same command goes on, and \"startupctl undo " + std::to_wstring(record.ownCheckpoint) +
              L"\" takes it back.");
  }
  return error;
}

// What the bare command has passed over although nobody can tell what is in it.
std::vector<std::wstring> PassedOver(const Journal& journal, std::uint32_t undone) {
  std::vector<std::wstring> lines;
  for (const CheckpointRecord& each : journal.Checkpoints()) {
    if (each.info.id > undone && each.info.state == CheckpointState::kDamaged) {
      lines.push_back(L"Passed over: checkpoint " + std::to_wstring(each.info.id) + L" \"" + each.title +
                      L"\", which is damaged.");
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
    candidates.push_back(L"  " + std::to_wstring(number) + L"  " + part.title);
  }
  if (candidates.empty()) throw HostError(L"No part has the number or the entry \"" + text + L"\".");
  if (candidates.size() > 1) {
    throw HostError(L"\"" + text + L"\" means several parts; give the number of one:", candidates);
  }
  return number;
}

std::vector<std::uint32_t> OnlyParts(const Journal& journal, const Arguments& arguments) {
  if (arguments.only.empty()) return {};
  if (arguments.ids.empty()) throw UsageError(L"--only needs the ID of a checkpoint.");
  const std::vector<CheckpointRecord> parts = journal.Parts(arguments.Id());
  std::set<std::uint32_t> numbers;
  for (const std::wstring& text : arguments.only) numbers.insert(FindPart(parts, text));
  return {numbers.begin(), numbers.end()};
}

std::wstring CountOf(const std::vector<std::uint32_t>& parts) {
  if (parts.empty()) return {};
  return parts.size() == 1 ? L"one part of " : std::to_wstring(parts.size()) + L" parts of ";
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
  WriteMessage(std::wstring(order.done) + L" " + CountOf(order.parts) + NameOf(record) + L".", lines);
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
  throw HostError(L"Nothing was undone that could be made again.");
}

}  // namespace

void RunUndo(const Arguments& arguments) {
  const Journal journal;
  Order order{.verb = L"undo", .done = L"Undid", .isBare = arguments.ids.empty()};
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
  Run(journal, arguments,
      {.verb = L"redo", .done = L"Redid", .run = [&](UndoMode mode) { return journal.Redo(id, mode); }});
}

}  // namespace smh
