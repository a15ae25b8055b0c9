#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/item_selector.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/json_output.h"
#include "hosts/common/reading.h"

namespace smh {

void RunShow(const Arguments& arguments) {
  const Library library;
  ItemRecord item = SelectItem(ReadAllItems(library), arguments.items.front(), arguments.Location());
  ResolveFiles(library, {&item, 1});
  WriteOutput(arguments.format == OutputFormat::kJson ? JsonObject(item) + L"\n" : ItemSheet(item));
}

}  // namespace smh
