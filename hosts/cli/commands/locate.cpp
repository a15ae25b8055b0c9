#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/item_selector.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/dialog_blocker.h"
#include "hosts/common/host_error.h"
#include "hosts/common/item_place.h"
#include "hosts/common/reading.h"
#include "hosts/common/text_encoding.h"

namespace smh {

namespace {

// The system's tool may show something else, or nothing at all; with this the user can go there by hand.
void WritePlace(const ItemRecord& item) {
  auto place = ItemPlace(item);
  for (auto& [name, text] : place) text = Printable(text);
  WriteOutput(KeyValueLines(place));
}

}  // namespace

void RunLocate(const Arguments& arguments) {
  const Library library;
  const ItemRecord item = SelectItem(ReadAllItems(library), arguments.items.front(), arguments.Location());
  WritePlace(item);
  const ComPtr<IStartupItem> listed = RequireListedItem(library, item);
  const std::wstring failure = L"Cannot show the place of " + Describe(item);
  {
    const DialogBlocker blocker;
    CheckResult(listed->ShowLocation(), failure);
  }
  // The library tells this failure in a message box only.
  if (DialogBlocker::HasRefused()) throw HostError(failure + L": the registry editor cannot be started.");
}

}  // namespace smh
