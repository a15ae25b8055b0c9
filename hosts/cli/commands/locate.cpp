#include "commands/commands.h"
#include "host_error.h"
#include "item_selector.h"
#include "reading.h"

namespace smh {

void RunLocate(const Arguments& arguments) {
  const Library library;
  const ItemRecord item = SelectItem(ReadAllItems(library), arguments.items.front(), arguments.Location());
  const ComPtr<IStartupItem> listed = FindListedItem(library, item.location, item.name);
  if (!listed) throw HostError(Describe(item) + L" has gone meanwhile.");
  CheckResult(listed->ShowLocation(), L"Cannot show the place of " + Describe(item));
}

}  // namespace smh
