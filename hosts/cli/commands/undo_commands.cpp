#include "hosts/cli/commands/undo_commands.h"

#include "hosts/cli/consent.h"
#include "hosts/cli/record_output.h"
#include "hosts/common/host_error.h"
#include "hosts/common/iso_time.h"
#include "hosts/common/journal.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <functional>
#include <set>

namespace smh {

namespace {

using R = const CheckpointRecord&;

FieldValue TimeOf(const FILETIME& time) {
  const bool isKnown = time.dwLowDateTime != 0 || time.dwHighDateTime != 0;
  return isKnown ? FieldValue(IsoTime(time)) : FieldValue();
}

FieldValue NumberOf(std::uint32_t number) {
  return std::int64_t(number);
}

constexpr Field<CheckpointRecord> kFields[] = {
    {L"id", [](R each) { return NumberOf(each.info.id); }},
    {L"time", [](R each) { return TimeOf(each.info.time); }},
    {L"title", [](R each) { return FieldValue(each.title); }},
    {L"parts", [](R each) { return NumberOf(each.info.parts); }},
    {L"steps", [](R each) { return NumberOf(each.info.steps); }},
    {L"state", [](R each) { return FieldValue(std::wstring(CheckpointStateName(each.info.state))); }},
    {L"undoes", [](R each) { return each.info.undoes == 0 ? FieldValue() : NumberOf(each.info.undoes); }},
    {L"dropped", [](R each) { return TimeOf(each.info.dropped); }},
};

// Of a part, whose id is its number.
constexpr Field<CheckpointRecord> kPartFields[] = {
    {L"number", kFields[0].read}, kFields[1], kFields[2], kFields[4], kFields[5], kFields[6],
};

Tone ToneOf(const CheckpointRecord& checkpoint) noexcept {
  switch (checkpoint.info.state) {
    case CheckpointState::kDone:
    case CheckpointState::kOpen:
      return Tone::kPlain;
    case CheckpointState::kInterrupted:
    case CheckpointState::kPartlyDone:
      return Tone::kWarning;
    case CheckpointState::kDamaged:
      return Tone::kDanger;
    default:
      return Tone::kFaint;
  }
}

std::wstring TitleCell(const CheckpointRecord& checkpoint) {
  if (checkpoint.info.state != CheckpointState::kDropped) return Printable(checkpoint.title);
  const std::wstring day = IsoTimeOf(checkpoint.info.dropped).substr(0, 10);
  return Printable(checkpoint.title) + L" (dropped on " + day + L", no longer undoable)";
}

std::wstring CheckpointTable(std::span<const CheckpointRecord> checkpoints, const wchar_t* firstHeading,
                             const TableStyle& style) {
  TextTable table{.header = {firstHeading, L"Time", L"State", L"Parts", L"Steps", L"Title"}, .rows = {}};
  for (const CheckpointRecord& checkpoint : checkpoints) {
    table.rows.push_back({std::to_wstring(checkpoint.info.id), IsoTimeOf(checkpoint.info.time),
                          std::wstring(CheckpointStateName(checkpoint.info.state)),
                          std::to_wstring(checkpoint.info.parts), std::to_wstring(checkpoint.info.steps),
                          TitleCell(checkpoint)});
    table.tones.push_back(ToneOf(checkpoint));
  }
  return table.Text(style);
}

CheckpointRecord FindCheckpoint(const Journal& journal, std::uint32_t id) {
  for (CheckpointRecord& each : journal.Checkpoints()) {
    if (each.info.id == id) return std::move(each);
  }
  throw HostError(L"There is no checkpoint " + std::to_wstring(id) + L".");
}

}  // namespace

void RunCheckpoints(const Arguments& arguments) {
  const std::vector<Field<CheckpointRecord>> fields =
      SelectFields<CheckpointRecord>(kFields, arguments.columns);
  std::vector<CheckpointRecord> checkpoints = Journal().Checkpoints();
  std::ranges::reverse(checkpoints);
  if (arguments.limit && *arguments.limit < checkpoints.size()) checkpoints.resize(*arguments.limit);
  WriteRecords<CheckpointRecord>(arguments, fields, checkpoints, [&](const TableStyle& style) {
    return CheckpointTable(checkpoints, L"ID", style);
  });
}

void RunShowCheckpoint(const Arguments& arguments) {
  const Journal journal;
  const CheckpointRecord checkpoint = FindCheckpoint(journal, arguments.Id());
  const bool isDropped = checkpoint.info.state == CheckpointState::kDropped;
  const std::vector<CheckpointRecord> parts =
      isDropped ? std::vector<CheckpointRecord>() : journal.Parts(arguments.Id());
  if (arguments.format == OutputFormat::kJson) {
    std::wstring list;
    for (const CheckpointRecord& part : parts) {
      list += (list.empty() ? L"" : L",") + JsonObject<CheckpointRecord>(kPartFields, part);
    }
    std::wstring json = JsonObject<CheckpointRecord>(kFields, checkpoint);
    json.pop_back();
    return WriteOutput(json + L',' + JsonMember(L"partList", L'[' + list + L']') + L"}\n");
  }
  std::vector<std::pair<std::wstring, std::wstring>> rows;
  for (const Field<CheckpointRecord>& field : kFields) {
    rows.emplace_back(field.key, CellText(field.read(checkpoint)));
  }
  WriteOutput(KeyValueLines(rows));
  if (!parts.empty()) WriteOutput(L"\n" + CheckpointTable(parts, L"Part", OutputStyle()));
}

namespace {

constexpr std::uint64_t kTicksPerDay = 864'000'000'000;

std::uint64_t TicksOf(const FILETIME& time) noexcept {
  return static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

// Those that the IDs, or --keep and --days, mean, the newest first. An undo goes with what it undid, and what
// is at work stays.
std::vector<CheckpointRecord> FindUnwanted(const Journal& journal, const Arguments& arguments) {
  std::vector<CheckpointRecord> unwanted;
  for (const std::uint32_t id : arguments.ids) unwanted.push_back(FindCheckpoint(journal, id));
  if (!unwanted.empty()) return unwanted;
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  const std::uint64_t oldest = TicksOf(now) - arguments.days.value_or(0) * kTicksPerDay;
  std::vector<CheckpointRecord> all = journal.Checkpoints();
  std::size_t kept = 0;
  for (auto each = all.rbegin(); each != all.rend(); ++each) {
    const CheckpointInfo& info = each->info;
    if (info.undoes != 0 || info.state == CheckpointState::kOpen) continue;
    const bool isOld = !arguments.days || TicksOf(info.time) < oldest;
    if (++kept > arguments.keep.value_or(0) && isOld) unwanted.push_back(std::move(*each));
  }
  return unwanted;
}

}  // namespace

void RunPruneCheckpoints(const Arguments& arguments) {
  const bool isChosen = !arguments.ids.empty();
  if (!isChosen && !arguments.keep && !arguments.days)
    throw UsageError(L"An ID, --keep or --days is required.");
  const Journal journal;
  const std::vector<CheckpointRecord> unwanted = FindUnwanted(journal, arguments);
  if (unwanted.empty()) return WriteMessage(L"There is nothing to forget.");
  if (arguments.dryRun) return WriteOutput(CheckpointTable(unwanted, L"ID", OutputStyle()));
  const std::wstring count = std::to_wstring(unwanted.size());
  RequireConsent(L"Nothing can undo " + count + L" checkpoints then", isChosen || arguments.yes);
  std::vector<std::wstring> failures;
  for (const CheckpointRecord& each : unwanted) {
    const std::uint32_t id = each.info.id;
    UndoRecord record;
    record.result = journal.Forget(id);
    if (SUCCEEDED(record.result)) continue;
    const bool isUndo = record.result == IJournal::kWrongState;
    failures.push_back(
        L"checkpoint " + std::to_wstring(id) + L": " +
        (isUndo ? L"it undoes one that is still there; forget that one." : UndoFailureText(record, L"undo")));
  }
  const std::wstring forgot =
      L"Forgot " + std::to_wstring(unwanted.size() - failures.size()) + L" of " + count + L" checkpoints.";
  if (!failures.empty()) {
    throw HostError(forgot, failures,
                    failures.size() == unwanted.size() ? ExitCode::kFailed : ExitCode::kPartly);
  }
  WriteMessage(forgot);
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

// The entry that a part's title ends with, behind who changed what: "Startup Manager: Disabling Inkwell".
std::wstring_view CaptionIn(std::wstring_view title) noexcept {
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

UndoRecord UndoOnly(const Journal& journal, const Arguments& arguments, UndoMode mode) {
  if (arguments.ids.empty()) throw UsageError(L"--only needs the ID of a checkpoint.");
  const std::vector<CheckpointRecord> parts = journal.Parts(arguments.Id());
  std::set<std::uint32_t> numbers;
  for (const std::wstring& text : arguments.only) numbers.insert(FindPart(parts, text));
  return journal.UndoParts(arguments.Id(), {numbers.begin(), numbers.end()}, mode);
}

using Operation = std::function<UndoRecord(const Journal& journal, UndoMode mode)>;

void Run(const Arguments& arguments, const Operation& operation, std::wstring_view verb,
         std::wstring_view done) {
  const UndoMode mode = arguments.show    ? UndoMode::kShow
                        : arguments.force ? UndoMode::kForce
                                          : UndoMode::kRun;
  const UndoRecord record = operation(Journal(), mode);
  if (arguments.show && record.checkpoint != 0) ShowSteps(record);
  const bool isShown = arguments.show && record.result == IJournal::kConflict;
  if (FAILED(record.result) && !isShown) throw FailureOf(record, verb);
  if (arguments.show) return;
  WriteMessage(std::wstring(done) + L" " + NameOf(record) + L".", ExceptionLines(record));
}

// The last undo that stands. What takes an undo back is a redo, which is none.
std::uint32_t LastUndo(const Journal& journal) {
  const std::vector<CheckpointRecord> all = journal.Checkpoints();
  const auto isUndo = [&all](std::uint32_t id) {
    return std::ranges::any_of(
        all, [id](const CheckpointRecord& each) { return each.info.id == id && each.info.undoes != 0; });
  };
  const auto last = std::find_if(all.rbegin(), all.rend(), [&isUndo](const CheckpointRecord& each) {
    const bool stands =
        each.info.state == CheckpointState::kDone || each.info.state == CheckpointState::kPartlyDone;
    return each.info.undoes != 0 && stands && !isUndo(each.info.undoes);
  });
  if (last != all.rend()) return last->info.id;
  throw HostError(L"Nothing was undone that could be made again.");
}

}  // namespace

void RunUndo(const Arguments& arguments) {
  const auto undo = [&](const Journal& journal, UndoMode mode) {
    return arguments.only.empty() ? journal.Undo(arguments.Id(), mode) : UndoOnly(journal, arguments, mode);
  };
  Run(arguments, undo, L"undo", L"Undid");
}

void RunRedo(const Arguments& arguments) {
  const auto redo = [&](const Journal& journal, UndoMode mode) {
    return journal.Redo(arguments.ids.empty() ? LastUndo(journal) : arguments.Id(), mode);
  };
  Run(arguments, redo, L"redo", L"Redid");
}

}  // namespace smh
