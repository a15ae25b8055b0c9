#include "hosts/cli/commands/switch_commands.h"

#include "hosts/cli/consent.h"
#include "hosts/cli/record_output.h"
#include "hosts/cli/texts/message_texts.h"
#include "hosts/cli/texts/table_texts.h"
#include "hosts/common/action_scope.h"
#include "hosts/common/host_error.h"
#include "hosts/common/reading.h"
#include "hosts/common/switch_list.h"
#include "hosts/common/text_encoding.h"
#include "hosts/common/texts/title_texts.h"
#include "infra/registry/full_value_path.h"

namespace smh {

namespace {

std::wstring StateText(const SwitchRecord& record) {
  if (!record.off) return texts::kSwitchUnknown.Get();
  if (!*record.off) return texts::kSwitchOn.Get();
  const std::wstring since = IsoTimeOf(record.since);
  return since.empty() ? texts::kSwitchOff.Get() : Format(texts::kSwitchOffSince, since);
}

std::wstring SwitchTable(std::span<const SwitchRecord> records, const TableStyle& style) {
  TextTable table{.header = {texts::kIdColumn.Get(), texts::kStateColumn.Get(), texts::kNameColumnTitle.Get(),
                             texts::kBelongsColumn.Get(), texts::kRootColumn.Get(), texts::kListColumn.Get()},
                  .rows = {}};
  for (const SwitchRecord& record : records) {
    table.rows.push_back({Printable(record.id), StateText(record), Printable(record.name),
                          record.isOrphan ? texts::kOrphan.Get() : Printable(record.caption),
                          std::wstring(RootKeyName(record.root)), record.list});
    table.tones.push_back(record.isOrphan ? Tone::kWarning : Tone::kPlain);
  }
  return table.Text(style);
}

void Prune(std::span<const SwitchRecord> orphans, bool isGiven) {
  const std::size_t count = orphans.size();
  RequireConsent(Format(texts::kThatTakesAway.For(count), count), isGiven);
  std::vector<std::wstring> failures;
  {
    const Journal journal;
    const bool recorded = UsesCheckpoints();
    const ActionScope action(journal, FormatIn(Language::kEnglish, texts::kTakingSwitches.For(count), count));
    for (const SwitchRecord& orphan : orphans) {
      const std::wstring failure = DeleteSwitch(orphan, recorded);
      if (!failure.empty()) failures.push_back(Format(texts::kSwitchFailure, Describe(orphan), failure));
    }
  }
  const std::size_t gone = count - failures.size();
  const std::wstring done = Format(texts::kTookAway.For(gone), gone);
  if (failures.empty()) return WriteMessage(done);
  throw HostError(done, failures, failures.size() == orphans.size() ? ExitCode::kFailed : ExitCode::kPartly);
}

}  // namespace

void RunSwitches(const Arguments& arguments) {
  const std::vector<Field<SwitchRecord>> fields = SelectFields(SwitchFields(), arguments.columns);
  const Library library;
  ReadForChanges(library, false);
  std::vector<ItemRecord> items = TakeSnapshot(library);
  std::vector<SwitchRecord> records = ReadSwitches(items);
  if (arguments.prune) std::erase_if(records, [](const SwitchRecord& record) { return !record.isOrphan; });
  if (!arguments.prune || arguments.dryRun || arguments.format != OutputFormat::kTable) {
    WriteRecords<SwitchRecord>(arguments, fields, records,
                               [&](const TableStyle& style) { return SwitchTable(records, style); });
  }
  if (!arguments.prune || arguments.dryRun) return;
  if (records.empty()) return WriteMessage(texts::kNoOrphan.Get());
  Prune(records, arguments.yes);
}

}  // namespace smh
