#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/item_selector.h"
#include "hosts/common/dialog_blocker.h"
#include "hosts/common/host_error.h"
#include "hosts/common/reading.h"
#include "infra/files/file_facts.h"

namespace smh {

void RunExecute(const Arguments& arguments) {
  const Library library;
  ItemRecord item = SelectItem(ReadAllItems(library), arguments.items.front(), arguments.Location());
  ResolveFiles(library, {&item, 1});
  const std::wstring failure = L"Cannot execute " + Describe(item);
  if (item.command.empty()) throw HostError(failure + L": it has no command.");
  if (!IsFile(item.file)) {
    throw HostError(failure + L": the file " + (item.file.empty() ? item.command : item.file) +
                    L" does not exist.");
  }
  if (!item.Can(kActionExecute)) throw HostError(failure + L": " + item.file + L" is not a program.");
  const ComPtr<IStartupItem> listed = RequireListedItem(library, item);
  {
    const DialogBlocker blocker;
    CheckResult(listed->Execute(nullptr), failure);
  }
  WriteMessage(L"Started " + item.file + L".");
}

}  // namespace smh
