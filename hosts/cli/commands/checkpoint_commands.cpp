#include "hosts/cli/commands/checkpoint_commands.h"

#include "hosts/cli/consent.h"
#include "hosts/cli/record_output.h"
#include "hosts/cli/texts/journal_texts.h"
#include "hosts/cli/texts/table_texts.h"
#include "hosts/cli/texts/usage_texts.h"
#include "hosts/common/host_error.h"
#include "hosts/common/iso_time.h"
#include "hosts/common/journal.h"
#include "hosts/common/journal_words.h"
#include "hosts/common/text_encoding.h"

#include <algorithm>

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
  std::wstring title = Printable(TitleText(checkpoint.title));
  if (checkpoint.info.state != CheckpointState::kDropped) return title;
  return Format(texts::kDroppedTitle, title, IsoTimeOf(checkpoint.info.dropped).substr(0, 10));
}

std::wstring CheckpointTable(std::span<const CheckpointRecord> checkpoints, const Text& firstHeading,
                             const TableStyle& style) {
  TextTable table{.header = {firstHeading.Get(), texts::kTimeColumn.Get(), texts::kStateColumn.Get(),
                             texts::kPartsColumn.Get(), texts::kStepsColumn.Get(), texts::kTitleColumn.Get()},
                  .rows = {}};
  for (const CheckpointRecord& checkpoint : checkpoints) {
    table.rows.push_back({std::to_wstring(checkpoint.info.id), IsoTimeOf(checkpoint.info.time),
                          CheckpointStateText(checkpoint.info.state).Get(),
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
  throw HostError(Say(texts::kUnknownCheckpoint, id));
}

}  // namespace

void RunCheckpoints(const Arguments& arguments) {
  const std::vector<Field<CheckpointRecord>> fields =
      SelectFields<CheckpointRecord>(kFields, arguments.columns);
  std::vector<CheckpointRecord> checkpoints = Journal().Checkpoints();
  std::ranges::reverse(checkpoints);
  if (arguments.limit && *arguments.limit < checkpoints.size()) checkpoints.resize(*arguments.limit);
  WriteRecords<CheckpointRecord>(arguments, fields, checkpoints, [&](const TableStyle& style) {
    return CheckpointTable(checkpoints, texts::kIdColumn, style);
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
  if (!parts.empty()) WriteOutput(L"\n" + CheckpointTable(parts, texts::kPartColumn, OutputStyle()));
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
  const std::uint64_t age = arguments.days.value_or(0) * kTicksPerDay;
  // Before the beginning of all times nothing was changed.
  const std::uint64_t oldest = TicksOf(now) - std::min(age, TicksOf(now));
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

std::wstring WhyNotForgotten(const CheckpointRecord& checkpoint, HRESULT result) {
  if (result == IJournal::kWrongState) {
    return Format(texts::kUndoesOther, checkpoint.info.undoes);
  }
  UndoRecord record;
  record.result = result;
  return UndoFailureText(record, UndoVerb::kUndo);
}

}  // namespace

void RunPruneCheckpoints(const Arguments& arguments) {
  const bool isChosen = !arguments.ids.empty();
  if (!isChosen && !arguments.keep && !arguments.days) throw UsageError(texts::kPruneNeedsOne);
  const Journal journal;
  const std::vector<CheckpointRecord> unwanted = FindUnwanted(journal, arguments);
  if (unwanted.empty()) return WriteMessage(texts::kNothingToForget.Get());
  if (arguments.dryRun) return WriteOutput(CheckpointTable(unwanted, texts::kIdColumn, OutputStyle()));
  RequireConsent(Format(texts::kNothingCanUndo, unwanted.size()), isChosen || arguments.yes);
  std::vector<std::uint32_t> ids;
  ids.reserve(unwanted.size());
  for (const CheckpointRecord& each : unwanted) ids.push_back(each.info.id);
  const std::vector<HRESULT> results = journal.Forget(ids);
  std::vector<std::wstring> failures;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    if (FAILED(results[i]))
      failures.push_back(Format(texts::kNotForgotten, ids[i], WhyNotForgotten(unwanted[i], results[i])));
  }
  const std::wstring forgot = Format(texts::kForgot, unwanted.size() - failures.size(), unwanted.size());
  if (!failures.empty()) {
    throw HostError(forgot, failures,
                    failures.size() == unwanted.size() ? ExitCode::kFailed : ExitCode::kPartly);
  }
  WriteMessage(forgot);
}

}  // namespace smh
