#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/journal.h"
#include "hosts/common/json_output.h"
#include "hosts/common/text_encoding.h"

namespace smh {

namespace {

std::wstring AsTable(const std::vector<CheckpointRecord>& checkpoints) {
  TextTable table{.header = {L"ID", L"Time", L"State", L"Steps", L"Title"}, .rows = {}};
  for (const CheckpointRecord& checkpoint : checkpoints) {
    table.rows.push_back({std::to_wstring(checkpoint.info.id), IsoTimeOf(checkpoint.info.time),
                          std::wstring(CheckpointStateName(checkpoint.info.state)),
                          std::to_wstring(checkpoint.info.steps), Printable(checkpoint.title)});
  }
  return table.Text(ConsoleWidth());
}

std::wstring AsJson(const std::vector<CheckpointRecord>& checkpoints) {
  std::vector<std::wstring> elements;
  for (const CheckpointRecord& checkpoint : checkpoints) {
    const CheckpointInfo& info = checkpoint.info;
    elements.push_back(L"{\"id\":" + std::to_wstring(info.id) + L",\"time\":" +
                       JsonText(IsoTimeOf(info.time)) + L",\"title\":" + JsonText(checkpoint.title) +
                       L",\"steps\":" + std::to_wstring(info.steps) + L",\"state\":" +
                       JsonText(CheckpointStateName(info.state)) + L",\"undoes\":" +
                       (info.undoes == 0 ? L"null" : std::to_wstring(info.undoes)) + L"}");
  }
  return JsonArray(elements);
}

}  // namespace

void RunCheckpoints(const Arguments& arguments) {
  const std::vector<CheckpointRecord> checkpoints = Journal().Checkpoints();
  WriteOutput(arguments.format == OutputFormat::kJson ? AsJson(checkpoints) : AsTable(checkpoints));
}

}  // namespace smh
