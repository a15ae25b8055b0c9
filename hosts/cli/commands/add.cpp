#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/item_selector.h"
#include "hosts/cli/stored_command.h"
#include "hosts/common/host_error.h"
#include "hosts/common/location_names.h"
#include "hosts/common/reading.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

const ItemRecord* FindByName(std::span<const ItemRecord> list, std::int32_t location,
                             const std::wstring& name) {
  const auto found = std::find_if(list.begin(), list.end(), [&](const ItemRecord& item) {
    return item.location == location && item.name == name;
  });
  return found == list.end() ? nullptr : &*found;
}

// The shortcut that an addition would make. A taken name in a folder is a failure for the library, even if
// nothing would change.
const ItemRecord* FindShortcut(std::span<const ItemRecord> list, const Arguments& arguments) {
  const auto found = std::find_if(list.begin(), list.end(), [&](const ItemRecord& item) {
    return item.location == *arguments.Location() && item.enabled && SameText(item.caption, arguments.name) &&
           EndsText(L".lnk", item.name);
  });
  return found == list.end() ? nullptr : &*found;
}

// What the library lists for the new entry: that entry, or one that had the name already.
ItemRecord AddAndRead(const Library& library, const Arguments& arguments, const std::wstring& failure) {
  const ListLock lock(library);
  const std::int32_t index =
      library.Items().AddItem(*arguments.Location(), arguments.name.c_str(), arguments.command.c_str());
  if (index < 0) throw HostError(failure + L": " + LibraryErrorText(E_FAIL));
  ComPtr<IStartupItem> item;
  CheckResult(library.Items().GetItem(index, item.Put()), failure);
  return ReadItemRecord(*item);
}

}  // namespace

void RunAdd(const Arguments& arguments) {
  const std::int32_t location = *arguments.Location();
  const std::wstring failure =
      L"Cannot add \"" + arguments.name + L"\" to " + std::wstring(LocationName(location));
  const Library library;
  const std::vector<ItemRecord> before = ReadAllItems(library);
  if (const ItemRecord* const known = FindShortcut(before, arguments);
      known != nullptr && HoldsCommand(library, *known, arguments.command)) {
    return WriteMessage(Describe(*known) + L": is there already.");
  }
  const ItemRecord added = AddAndRead(library, arguments, failure);
  const std::vector<ItemRecord> list = ReadAllItems(library);
  const ItemRecord* const now = FindByName(list, location, added.name);
  const bool asWanted = now != nullptr && now->enabled && HoldsCommand(library, *now, arguments.command);
  if (FindByName(before, location, added.name) != nullptr || (now != nullptr && !asWanted)) {
    if (!asWanted) throw HostError(failure + L": an entry of that name exists already; it was not changed.");
    return WriteMessage(Describe(*now) + L": is there already.");
  }
  if (!asWanted) throw HostError(failure + L": the entry is not where it should be now.");
  WriteMessage(L"Added " + Describe(*now) + L".");
}

}  // namespace smh
