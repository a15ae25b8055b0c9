#include "hosts/cli/commands/switch_commands.h"

#include "hosts/cli/consent.h"
#include "hosts/cli/record_output.h"
#include "hosts/common/action_scope.h"
#include "hosts/common/host_error.h"
#include "hosts/common/reading.h"
#include "hosts/common/switch_list.h"
#include "hosts/common/text_encoding.h"
#include "infra/registry/full_value_path.h"

namespace smh {

namespace {

std::wstring StateText(const SwitchRecord& record) {
  if (!record.off) return L"unknown";
  if (!*record.off) return L"on";
  const std::wstring since = IsoTimeOf(record.since);
  return since.empty() ? L"off" : L"off since " + since;
}

std::wstring SwitchTable(std::span<const SwitchRecord> records, const TableStyle& style) {
  TextTable table{.header = {L"ID", L"State", L"Name", L"Belongs to", L"Root", L"List"}, .rows = {}};
  for (const SwitchRecord& record : records) {
    table.rows.push_back({Printable(record.id), StateText(record), Printable(record.name),
                          record.isOrphan ? L"nobody: an orphan" : Printable(record.caption),
                          std::wstring(RootKeyName(record.root)), record.list});
    table.tones.push_back(record.isOrphan ? Tone::kWarning : Tone::kPlain);
  }
  return table.Text(style);
}

std::wstring CountText(std::size_t count) {
  return std::to_wstring(count) + (count == 1 ? L" switch" : L" switches");
}

void Prune(std::span<const SwitchRecord> orphans, bool isGiven) {
  const wchar_t* const belong = orphans.size() == 1 ? L" that belongs" : L" that belong";
  RequireConsent(L"That takes away " + CountText(orphans.size()) + belong + L" to no entry", isGiven);
  std::vector<std::wstring> failures;
  {
    const Journal journal;
    const bool recorded = UsesCheckpoints();
    const ActionScope action(journal, L"Taking away " + CountText(orphans.size()) + L" of no entry");
    for (const SwitchRecord& orphan : orphans) {
      const std::wstring failure = DeleteSwitch(orphan, recorded);
      if (!failure.empty()) failures.push_back(Describe(orphan) + L": " + failure);
    }
  }
  const std::wstring done = L"Took away " + CountText(orphans.size() - failures.size()) + L".";
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
  if (records.empty()) return WriteMessage(L"There is no switch without an entry.");
  Prune(records, arguments.yes);
}

}  // namespace smh
