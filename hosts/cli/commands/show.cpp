#include "commands/commands.h"
#include "console.h"
#include "item_selector.h"
#include "json_output.h"
#include "reading.h"
#include "table_output.h"

namespace smh {

void RunShow(const Arguments& arguments) {
  const Library library;
  ItemRecord item = SelectItem(ReadAllItems(library), arguments.items.front(), arguments.Location());
  ResolveFiles(library, {&item, 1});
  WriteOutput(arguments.format == OutputFormat::json ? JsonObject(item) + L"\n" : ItemSheet(item));
}

}  // namespace smh
