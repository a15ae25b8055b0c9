// Records in the format that the command line asks for.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/cli/console.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/csv_output.h"
#include "hosts/common/json_output.h"

#include <span>

namespace smh {

// What tables have to fit on the output as it is now.
inline TableStyle OutputStyle() {
  return {.width = ConsoleWidth(), .isColoured = WantsColours()};
}

// Writes the records as --json, --csv or a table: that of the fields with --columns, else what `table` makes
// of the style.
template <typename Record, typename Table>
void WriteRecords(const Arguments& arguments, std::span<const Field<Record>> fields,
                  std::span<const Record> records, Table&& table) {
  switch (arguments.format) {
    case OutputFormat::kJson:
      return WriteOutput(JsonArray(fields, records));
    case OutputFormat::kCsv:
      return WriteOutput(CsvTable(fields, records));
    case OutputFormat::kTable:
      break;
  }
  const TableStyle style = OutputStyle();
  WriteOutput(arguments.columns.empty() ? table(style) : FieldTable(fields, records).Text(style));
}

}  // namespace smh
