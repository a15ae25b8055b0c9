#include "hosts/cli/commands/undo_commands.h"

#include "hosts/cli/record_output.h"
#include "hosts/common/host_error.h"
#include "hosts/common/iso_time.h"
#include "hosts/common/journal.h"
#include "hosts/common/text_encoding.h"

#include <algorithm>

namespace smh {

namespace {

std::wstring AsTable(const std::vector<CheckpointRecord>& checkpoints) {
  TextTable table{.header = {L"ID", L"Time", L"State", L"Steps", L"Title"}, .rows = {}};
  for (const CheckpointRecord& checkpoint : checkpoints) {
    table.rows.push_back({std::to_wstring(checkpoint.info.id), IsoTimeOf(checkpoint.info.time),
                          std::wstring(CheckpointStateName(checkpoint.info.state)),
                          std::to_wstring(checkpoint.info.steps), Printable(checkpoint.title)});
  }
  return table.Text(OutputStyle());
}

std::wstring AsJson(const std::vector<CheckpointRecord>& checkpoints) {
  std::vector<std::wstring> elements;
  for (const CheckpointRecord& checkpoint : checkpoints) {
    const CheckpointInfo& info = checkpoint.info;
    elements.push_back(L"{\"id\":" + std::to_wstring(info.id) + L",\"time\":" + JsonText(IsoTime(info.time)) +
                       L",\"title\":" + JsonText(checkpoint.title) + L",\"steps\":" +
                       std::to_wstring(info.steps) + L",\"state\":" +
                       JsonText(CheckpointStateName(info.state)) + L",\"undoes\":" +
                       (info.undoes == 0 ? L"null" : std::to_wstring(info.undoes)) + L"}");
  }
  return JsonArray(elements);
}

}  // namespace

void RunCheckpoints(const Arguments& arguments) {
  std::vector<CheckpointRecord> checkpoints = Journal().Checkpoints();
  std::ranges::reverse(checkpoints);
  if (arguments.limit && *arguments.limit < checkpoints.size()) checkpoints.resize(*arguments.limit);
  WriteOutput(arguments.format == OutputFormat::kJson ? AsJson(checkpoints) : AsTable(checkpoints));
}

namespace {

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

HostError FailureOf(const UndoRecord& record, std::wstring_view verb) {
  const std::wstring failure = L"Cannot " + std::wstring(verb) + L": ";
  if (record.result == IJournal::kConflict) {
    return HostError(failure + NameOf(record) + L" is in conflict with later changes; nothing was changed. " +
                         L"--force " + std::wstring(verb) + L"es the rest over them.",
                     ExceptionLines(record));
  }
  HostError error(failure + UndoFailureText(record, verb));
  if (const std::wstring rest = PartlyDoneText(record); !rest.empty()) error.Add(rest);
  return error;
}

using Operation = UndoRecord (Journal::*)(std::uint32_t id, UndoMode mode) const;

void Run(const Arguments& arguments, std::uint32_t id, Operation operation, std::wstring_view verb,
         std::wstring_view done) {
  const UndoMode mode = arguments.show    ? UndoMode::kShow
                        : arguments.force ? UndoMode::kForce
                                          : UndoMode::kRun;
  const UndoRecord record = (Journal().*operation)(id, mode);
  if (arguments.show && (SUCCEEDED(record.result) || record.result == IJournal::kConflict))
    return ShowSteps(record);
  if (FAILED(record.result)) throw FailureOf(record, verb);
  WriteMessage(std::wstring(done) + L" " + NameOf(record) + L".", ExceptionLines(record));
}

// The last undo that stands. What takes an undo back is a redo, which is none.
std::uint32_t LastUndo() {
  const std::vector<CheckpointRecord> all = Journal().Checkpoints();
  const auto isUndo = [&all](std::uint32_t id) {
    return std::ranges::any_of(
        all, [id](const CheckpointRecord& each) { return each.info.id == id && each.info.undoes != 0; });
  };
  const auto last = std::find_if(all.rbegin(), all.rend(), [&isUndo](const CheckpointRecord& each) {
    return each.info.undoes != 0 && each.info.state == CheckpointState::kDone && !isUndo(each.info.undoes);
  });
  if (last != all.rend()) return last->info.id;
  throw HostError(L"Nothing was undone that could be made again.");
}

}  // namespace

void RunUndo(const Arguments& arguments) {
  Run(arguments, arguments.Id(), &Journal::Undo, L"undo", L"Undid");
}

void RunRedo(const Arguments& arguments) {
  Run(arguments, arguments.ids.empty() ? LastUndo() : arguments.Id(), &Journal::Redo, L"redo", L"Redid");
}

}  // namespace smh
