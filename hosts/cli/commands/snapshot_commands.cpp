#include "hosts/cli/commands/snapshot_commands.h"

#include "hosts/cli/apply_plan.h"
#include "hosts/cli/change_runner.h"
#include "hosts/cli/console.h"
#include "hosts/cli/difference_output.h"
#include "hosts/cli/record_output.h"
#include "hosts/cli/texts/message_texts.h"
#include "hosts/common/host_error.h"
#include "hosts/common/library.h"
#include "hosts/common/reading.h"
#include "hosts/common/snapshot_compare.h"
#include "hosts/common/snapshot_file.h"
#include "hosts/common/texts/title_texts.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

Snapshot SnapshotNow() {
  const Library library;
  return SnapshotOf(ReadAllItems(library));
}

}  // namespace

void RunSnapshot(const Arguments& arguments) {
  const std::wstring& file = arguments.files.front();
  const Snapshot snapshot = SnapshotNow();
  WriteSnapshotFile(file, snapshot);
  WriteMessage(Format(texts::kWroteEntries, snapshot.entries.size(), file));
}

void RunCompare(const Arguments& arguments) {
  Snapshot before = ReadSnapshotFile(arguments.files.front());
  const Snapshot after = arguments.files.size() > 1 ? ReadSnapshotFile(arguments.files[1]) : SnapshotNow();
  AdaptTo(before, after.machine);
  const std::vector<Difference> differences = CompareEntries(before.entries, after.entries);
  const std::vector<Field<Difference>> fields = SelectFields(DifferenceFields(), arguments.columns);
  WriteRecords<Difference>(arguments, fields, differences, [&](const TableStyle& style) {
    return differences.empty() ? std::wstring() : DifferenceTable(differences).Text(style);
  });
  if (differences.empty()) return WriteMessage(texts::kNoneDiffers.Get());
  throw HostError(Say(texts::kDiffer.For(differences.size()), differences.size()), ExitCode::kDifferent);
}

void RunApply(const Arguments& arguments) {
  const std::wstring& file = arguments.files.front();
  Snapshot wanted = ReadSnapshotFile(file);
  const MachineFacts machine = ThisMachine();
  AdaptTo(wanted, machine);
  const Library library;
  ReadForChanges(library, false);
  const Listing listing = TakeListing(library);
  const auto wrapperOf = [&listing](const ItemRecord& item) {
    return listing.wrappers[static_cast<std::size_t>(&item - listing.items.data())];
  };
  const std::vector<ApplyStep> steps =
      PlanApply(wanted.entries, listing.items, machine,
                arguments.deleteOthers ? OtherEntries::kDeleted : OtherEntries::kKept);
  if (steps.empty()) WriteMessage(Format(texts::kAllAreSo, file));
  ChangeManner manner = MannerOf(arguments);
  manner.isBroad = true;
  manner.isRestDone = true;
  manner.title = FormatIn(Language::kEnglish, texts::kApplying, FileNamePart(file));
  RunChanges(library, ChangesOf(steps, wrapperOf), manner);
}

}  // namespace smh
