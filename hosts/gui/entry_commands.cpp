// What can be done with the selected entries.
#include "hosts/common/item_property.h"
#include "hosts/gui/entries_view.h"
#include "hosts/gui/entry_dialogs.h"
#include "hosts/gui/location_titles.h"
#include "hosts/gui/resource.h"

#include <algorithm>

namespace smh {

namespace {

std::wstring NamesOf(const std::vector<ItemRecord>& items) {
  if (items.size() == 1) return L"\u201C" + CaptionText(items.front()) + L"\u201D";
  return std::to_wstring(items.size()) + L" entries";
}

}  // namespace

std::vector<ItemRecord> EntriesView::Selected() const {
  std::vector<ItemRecord> items;
  for (const std::size_t row : list_.Selection()) {
    if (row < rows_.Shown().size()) items.push_back(rows_.Shown()[row]->item);
  }
  return items;
}

std::vector<ItemRecord> EntriesView::SelectedThatCan(ItemAction action) const {
  std::vector<ItemRecord> items = Selected();
  std::erase_if(items, [action](const ItemRecord& item) { return !item.Can(action); });
  return items;
}

const ItemRecord* EntriesView::OnlySelected() const {
  const std::vector<std::size_t> rows = list_.Selection();
  return rows.size() == 1 && rows.front() < rows_.Shown().size() ? &rows_.Shown()[rows.front()]->item
                                                                 : nullptr;
}

bool EntriesView::CanRun(UINT command) const {
  const ItemRecord* const only = OnlySelected();
  const auto anyCan = [this](ItemAction action) {
    const std::vector<std::size_t> rows = list_.Selection();
    return std::any_of(rows.begin(), rows.end(), [&](std::size_t row) {
      return row < rows_.Shown().size() && rows_.Shown()[row]->item.Can(action);
    });
  };
  switch (command) {
    case CMD_ENABLE:
      return anyCan(kActionEnable);
    case CMD_DISABLE:
      return anyCan(kActionDisable);
    case CMD_DELETE:
      return anyCan(kActionDelete);
    case CMD_MOVE:
      return anyCan(kActionMove);
    case CMD_CHANGE_COMMAND:
      return only != nullptr && only->Can(kActionChangeCommand);
    case CMD_EXECUTE:
      return only != nullptr && only->Can(kActionExecute);
    case CMD_SHOW_FILE:
      return only != nullptr && only->Can(kActionShowFileDetails);
    case CMD_SHOW_LOCATION:
      return only != nullptr && only->Can(kActionShowLocation);
    case CMD_COPY_PATH:
      return only != nullptr && !resolvedFile_.empty();
    case CMD_COPY:
      return GetFocus() == details_.Handle() || !list_.Selection().empty();
    case CMD_ADD:
      return true;
    case CMD_EXPORT:
    case CMD_SELECT_ALL:
      return !rows_.Shown().empty();
    default:
      return false;
  }
}

void EntriesView::Run(UINT command) {
  switch (command) {
    case CMD_ENABLE:
      return Switch(kActionEnable, SelectedThatCan(kActionEnable));
    case CMD_DISABLE:
      return Switch(kActionDisable, SelectedThatCan(kActionDisable));
    case CMD_DELETE:
      return Delete();
    case CMD_ADD:
      return Add();
    case CMD_MOVE:
      return Move();
    case CMD_CHANGE_COMMAND:
      return ChangeCommand();
    case CMD_EXECUTE:
      return Apply(Selected(), {kActionExecute, [](IStartupItem& item) { return item.Execute(nullptr); }},
                   L"Started");
    case CMD_SHOW_FILE:
      return ShowFile();
    case CMD_SHOW_LOCATION:
      return Apply(Selected(), {kActionShowLocation, [](IStartupItem& item) { return item.ShowLocation(); }},
                   L"Showed the place of");
    case CMD_COPY_PATH:
      CopyToClipboard(frame_.window, resolvedFile_);
      return;
    case CMD_COPY:
      return Copy();
    case CMD_SELECT_ALL:
      return list_.SelectAll();
    case CMD_EXPORT:
      return Export();
    default:
      return;
  }
}

// A click on the box of a selected row means every selected one.
void EntriesView::Toggle(std::size_t row) {
  if (row >= rows_.Shown().size()) return;
  const ItemAction action = rows_.Shown()[row]->item.enabled ? kActionDisable : kActionEnable;
  const std::vector<std::size_t> selected = list_.Selection();
  const bool meansAll = std::find(selected.begin(), selected.end(), row) != selected.end();
  std::vector<ItemRecord> items = meansAll ? SelectedThatCan(action) : std::vector{rows_.Shown()[row]->item};
  if (items.empty() || !items.front().Can(action)) {
    return frame_.say(L"This entry cannot be " +
                      std::wstring(action == kActionEnable ? L"enabled." : L"disabled."));
  }
  Switch(action, std::move(items));
}

// Entries of this account, when somebody else is logged on, are seldom the ones that are meant.
bool EntriesView::MayChange(const std::vector<ItemRecord>& items) const {
  const bool isUsers = std::any_of(items.begin(), items.end(),
                                   [](const ItemRecord& item) { return IsUserLocation(item.location); });
  if (!isUsers || !frame_.account.IsForeign()) return true;
  return Confirm(frame_, L"These are entries of " + frame_.account.name + L", not of " +
                             frame_.account.sessionUser + L", who is logged on. Change them?");
}

void EntriesView::Apply(std::vector<ItemRecord> items, EntryOperation operation, const std::wstring& done) {
  if (items.empty()) return;
  frame_.worker.Ask([items = std::move(items), operation = std::move(operation)](
                        LibrarySession& session) { return session.Apply(items, operation); },
                    [this, done](const OperationReport& report) { ShowOutcome(frame_, done, report); });
}

void EntriesView::Switch(ItemAction action, std::vector<ItemRecord> items) {
  if (!MayChange(items)) return;
  const bool enable = action == kActionEnable;
  Apply(std::move(items),
        {action, [enable](IStartupItem& item) { return enable ? item.Enable() : item.Disable(); },
         [enable](IStartupItem& item) {
           return item.GetIndex() < 0 || FlagProperty(item, kPropertyEnabled) == enable;
         }},
        enable ? L"Enabled" : L"Disabled");
}

void EntriesView::Delete() {
  std::vector<ItemRecord> items = SelectedThatCan(kActionDelete);
  if (!MayChange(items)) return;
  if (!Confirm(frame_, L"Delete " + NamesOf(items) +
                           L"?\n\nUndo brings back what was deleted. Disabling stops the "
                           L"program just as well.")) {
    return;
  }
  Apply(std::move(items),
        {kActionDelete, [](IStartupItem& item) { return item.Delete(); },
         [](IStartupItem& item) { return item.GetIndex() < 0; }},
        L"Deleted");
}

void EntriesView::Add() {
  std::int32_t preset = sulRegistryUserRun;
  for (std::int32_t location = kLastLocation; location >= kFirstLocation; --location) {
    if (locations_.count() <= 2 && locations_[location] && TakesNewEntries(location)) preset = location;
  }
  const auto entry = AskNewEntry(frame_.window, preset);
  if (!entry) return;
  ItemRecord place;
  place.location = entry->location;
  if (!MayChange({place})) return;
  frame_.worker.Ask(
      [entry = *entry](LibrarySession& session) {
        return session.Add(entry.location, entry.name, entry.command);
      },
      [this, entry = *entry](const std::wstring& fault) {
        if (!fault.empty()) return ShowError(frame_, L"Cannot add \u201C" + entry.name + L"\u201D: " + fault);
        frame_.say(L"Added \u201C" + entry.name + L"\u201D.");
        added_ = EntryKey{entry.location, entry.name};
        SelectAdded();
      });
}

void EntriesView::Move() {
  const std::vector<ItemRecord> items = SelectedThatCan(kActionMove);
  if (items.empty() || !MayChange(items)) return;
  frame_.worker.Ask([items](LibrarySession& session) { return session.MoveTargets(items); },
                    [this, items](const LocationSet& targets) { MoveToOneOf(targets, items); });
}

void EntriesView::MoveToOneOf(const LocationSet& targets, const std::vector<ItemRecord>& items) {
  if (targets.none()) return ShowError(frame_, L"No other location takes " + NamesOf(items) + L".");
  const auto target = AskTarget(frame_.window, targets, L"Move " + NamesOf(items) + L" to");
  if (!target) return;
  Apply(items,
        {kActionMove, [target = *target](IStartupItem& item) { return item.MoveTo(target); },
         [target = *target](IStartupItem& item) {
           return item.GetIndex() < 0 || item.GetLocation() == target;
         }},
        L"Moved");
}

void EntriesView::ChangeCommand() {
  std::vector<ItemRecord> items = SelectedThatCan(kActionChangeCommand);
  if (items.size() != 1 || !MayChange(items)) return;
  const std::wstring before = items.front().command;
  const auto command = AskCommand(frame_.window, L"Command of " + NamesOf(items), before);
  if (!command || *command == before) return;
  Apply(std::move(items),
        {kActionChangeCommand,
         [command = *command](IStartupItem& item) { return item.ChangeCommand(command.c_str()); },
         [before](IStartupItem& item) {
           return item.GetIndex() < 0 || TextProperty(item, kPropertyCommand) != before;
         }},
        L"Changed");
}

void EntriesView::ShowFile() {
  const std::vector<ItemRecord> items = SelectedThatCan(kActionShowFileDetails);
  if (items.empty()) return;
  frame_.worker.Post([item = items.front()](LibrarySession& session) { session.ShowFile(item); });
}

// The selected entries, or all that are shown when there are fewer than two.
void EntriesView::Export() {
  std::vector<ItemRecord> items = Selected();
  if (items.size() < 2) {
    items.clear();
    for (const EntryRow* row : rows_.Shown()) items.push_back(row->item);
  }
  const auto target = AskExportTarget(frame_.window);
  if (!target) return;
  frame_.worker.Ask(
      [items = std::move(items), target = *target](LibrarySession& session) {
        session.Export(items, target.json ? ExportFormat::kJson : ExportFormat::kCsv, target.file);
        return items.size();
      },
      [this, file = target->file](std::size_t count) {
        frame_.say(L"Wrote " + std::to_wstring(count) + (count == 1 ? L" entry to " : L" entries to ") +
                   file);
      });
}

void EntriesView::Copy() const {
  const bool fromDetails = GetFocus() == details_.Handle();
  CopyToClipboard(frame_.window, fromDetails ? details_.TextToCopy() : list_.SelectedText());
}

}  // namespace smh
