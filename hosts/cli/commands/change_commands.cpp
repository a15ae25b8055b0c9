#include "hosts/cli/commands/change_commands.h"

#include "hosts/cli/change_runner.h"
#include "hosts/cli/console.h"
#include "hosts/cli/item_selector.h"
#include "hosts/common/host_error.h"
#include "hosts/common/location_names.h"
#include "hosts/common/reading.h"
#include "infra/runtime/text.h"

#include <algorithm>

namespace smh {

namespace {

bool IsInFolder(const ItemRecord& item) noexcept {
  return LocationRowOf(item.location).family == LocationFamily::kStartupFolder;
}

// Whether the entry holds a command that was given to the library. Registry entries keep a command as it is
// given. A shortcut keeps the file of the program and the arguments: it holds every command line that starts
// that file with those arguments. The library is asked for those files, so this may touch the disk.
bool HoldsCommand(const Library& library, const ItemRecord& item, const std::wstring& command) {
  if (item.command == command) return true;
  if (!IsInFolder(item)) return false;
  // The library shows the file, in quotes when it has a blank, and then the arguments.
  const std::wstring file = library.ResolveCommandFile(item.command);
  const std::wstring shown = file.find(L' ') == std::wstring::npos ? file : QuoteText(file);
  if (!item.command.starts_with(shown)) return false;
  const std::wstring arguments = Trim(std::wstring_view(item.command).substr(shown.size()));
  std::wstring program = Trim(command);
  if (!program.ends_with(arguments)) return false;
  program = Trim(program.substr(0, program.size() - arguments.size()));
  return SameText(library.ResolveCommandFile(QuoteText(DequoteText(program))), file);
}

// Refuses what the library does not allow.
Verdict CheckAllowed(const ItemRecord& item, ItemAction action) {
  if (item.Can(action)) return {};
  return {Verdict::Kind::kRefused, RefusalReason(item)};
}

Verdict CheckSwitch(const ItemRecord& item, bool enable) {
  if (item.enabled == enable) {
    return {Verdict::Kind::kNothingToDo, enable ? L"is enabled already." : L"is disabled already."};
  }
  return CheckAllowed(item, enable ? kActionEnable : kActionDisable);
}

Change Switch(bool enable) {
  return {.verb = enable ? L"enable" : L"disable",
          .done = enable ? L"Enabled" : L"Disabled",
          .target = {},
          .slot = enable ? LibrarySlot::kEnable : LibrarySlot::kDisable,
          .check = [enable](const ItemRecord& item, IStartupItem&) { return CheckSwitch(item, enable); },
          .apply = [enable](IStartupItem& item) { return enable ? item.Enable() : item.Disable(); },
          // The entry may have got a number behind its name, and its command is the one that was stored just
          // then.
          .isOutcome =
              [enable](const ItemRecord& before, const ItemRecord& now) {
                return now.location == before.location && now.enabled == enable &&
                       (now.command == before.command || now.caption == before.caption);
              }};
}

Verdict CheckDeletion(const ItemRecord& item, IStartupItem&) {
  return CheckAllowed(item, kActionDelete);
}

}  // namespace

void RunEnable(const Arguments& arguments) {
  ChangeItems(arguments, Switch(true));
}

void RunDisable(const Arguments& arguments) {
  ChangeItems(arguments, Switch(false));
}

void RunDelete(const Arguments& arguments) {
  ChangeItems(arguments, {.verb = L"delete",
                          .done = L"Deleted",
                          .target = {},
                          .slot = LibrarySlot::kDelete,
                          .check = CheckDeletion,
                          .apply = [](IStartupItem& item) { return item.Delete(); },
                          .isOutcome = {}});
}

namespace {

constexpr wchar_t kNotThere[] = L": the entry is not where it should be now.";

template <typename Predicate>
const ItemRecord* FindItem(std::span<const ItemRecord> list, Predicate&& isMeant) {
  const auto found = std::find_if(list.begin(), list.end(), isMeant);
  return found == list.end() ? nullptr : &*found;
}

const ItemRecord* FindByName(std::span<const ItemRecord> list, std::int32_t location,
                             const std::wstring& name) {
  return FindItem(list,
                  [&](const ItemRecord& item) { return item.location == location && item.name == name; });
}

// The shortcut that an addition would make. A taken name in a folder is a failure for the library, even if
// nothing would change.
const ItemRecord* FindShortcut(std::span<const ItemRecord> list, std::int32_t location,
                               const Arguments& arguments) {
  return FindItem(list, [&](const ItemRecord& item) {
    return item.location == location && item.enabled && SameText(item.caption, arguments.name) &&
           EndsText(L".lnk", item.name);
  });
}

// What the library lists for the new entry: that entry, or one that had the name already.
ItemRecord AddAndRead(const Library& library, std::int32_t location, const Arguments& arguments,
                      const std::wstring& failure) {
  const std::int32_t index =
      library.Items().AddItem(location, arguments.name.c_str(), arguments.command.c_str());
  if (index < 0) throw HostError(failure + L": " + LibraryErrorText(LibrarySlot::kAddItem, std::nullopt));
  std::optional<ItemRecord> added = FindAddedEntry(library, index, location, arguments.name);
  if (!added) throw HostError(failure + kNotThere);
  return *std::move(added);
}

}  // namespace

void RunAdd(const Arguments& arguments) {
  // The command line requires one.
  const std::int32_t location = arguments.locations.front();
  const std::wstring failure =
      L"Cannot add \"" + arguments.name + L"\" to " + std::wstring(LocationName(location));
  const Library library;
  const std::vector<ItemRecord> before = ReadAllItems(library);
  if (const ItemRecord* const known = FindShortcut(before, location, arguments);
      known != nullptr && HoldsCommand(library, *known, arguments.command)) {
    return WriteMessage(Describe(*known) + L": is there already.");
  }
  const ItemRecord added = AddAndRead(library, location, arguments, failure);
  const std::vector<ItemRecord> list = ReadAllItems(library);
  const ItemRecord* const now = FindByName(list, location, added.name);
  const bool asWanted = now != nullptr && now->enabled && HoldsCommand(library, *now, arguments.command);
  if (FindByName(before, location, added.name) != nullptr || (now != nullptr && !asWanted)) {
    if (!asWanted) throw HostError(failure + L": an entry of that name exists already; it was not changed.");
    return WriteMessage(Describe(*now) + L": is there already.");
  }
  if (!asWanted) throw HostError(failure + kNotThere);
  WriteMessage(L"Added " + Describe(*now) + L".");
}

namespace {

Verdict CheckMove(const ItemRecord& item, IStartupItem& listed, std::int32_t target) {
  const std::wstring name(LocationName(target));
  if (item.location == target) return {Verdict::Kind::kNothingToDo, L"is in " + name + L" already."};
  if (!item.Can(kActionMove)) return {Verdict::Kind::kRefused, RefusalReason(item)};
  if (listed.CanMoveTo(target)) return {};
  return {Verdict::Kind::kRefused,
          name + L" does not take it: it may hold an entry of the same program, or take no entries at all" +
              (item.fileFound ? L"." : L", or none without a file.")};
}

}  // namespace

void RunMove(const Arguments& arguments) {
  const std::int32_t target = arguments.target.value_or(sulNone);
  const Library* library = nullptr;
  ChangeItems(
      arguments,
      {.verb = L"move",
       .done = L"Moved",
       .target = L" to " + std::wstring(LocationName(target)),
       .slot = LibrarySlot::kMoveTo,
       .check = [=](const ItemRecord& item, IStartupItem& listed) { return CheckMove(item, listed, target); },
       .apply = [=](IStartupItem& item) { return item.MoveTo(target); },
       // The entry gets the short name of its program, or of its shortcut, as its name in the new place.
       .isOutcome =
           [&](const ItemRecord& before, const ItemRecord& now) {
             return now.location == target && now.enabled == before.enabled &&
                    HoldsCommand(*library, now, before.command);
           },
       .prepare = [&](const Library& loaded) { library = &loaded; }});
}

namespace {

Verdict CheckNewCommand(const Library& library, const ItemRecord& item, const std::wstring& command) {
  if (HoldsCommand(library, item, command)) {
    return {Verdict::Kind::kNothingToDo, L"has that command already."};
  }
  if (!item.Can(kActionChangeCommand)) return {Verdict::Kind::kRefused, RefusalReason(item)};
  if (!SameText(item.command, command)) return {};
  return {Verdict::Kind::kRefused,
          L"the new command differs in case only, which does not count as a change."};
}

}  // namespace

void RunChange(const Arguments& arguments) {
  const std::wstring& command = arguments.command;
  const Library* library = nullptr;
  ChangeItems(arguments, {.verb = L"change",
                          .done = L"Changed",
                          .target = {},
                          .slot = LibrarySlot::kChangeCommand,
                          .check = [&](const ItemRecord& item,
                                       IStartupItem&) { return CheckNewCommand(*library, item, command); },
                          .apply = [&](IStartupItem& item) { return item.ChangeCommand(command.c_str()); },
                          .isOutcome =
                              [&](const ItemRecord& before, const ItemRecord& now) {
                                return now.location == before.location && now.name == before.name &&
                                       now.enabled == before.enabled && HoldsCommand(*library, now, command);
                              },
                          .prepare = [&](const Library& loaded) { library = &loaded; }});
}

}  // namespace smh
