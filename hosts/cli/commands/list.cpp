#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/csv_output.h"
#include "hosts/common/json_output.h"
#include "hosts/common/reading.h"

namespace smh {

void RunList(const Arguments& arguments) {
  const Library library;
  const ItemFilter filter = arguments.Filter();
  ReadToEnd(library, filter.Scope());
  std::vector<ItemRecord> items = filter.Select(TakeSnapshot(library));
  ResolveFiles(library, items);
  switch (arguments.format) {
    case OutputFormat::kJson:
      return WriteOutput(JsonArray(items));
    case OutputFormat::kCsv:
      return WriteOutput(CsvTable(items));
    case OutputFormat::kTable:
      return WriteOutput(ItemTable(items, ConsoleWidth()));
  }
}

}  // namespace smh
