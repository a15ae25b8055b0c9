#include "hosts/gui/entry_commands.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/entry_dialogs.h"

#include <algorithm>

namespace smh {

namespace {

std::wstring NamesOf(const std::vector<ItemRecord>& items) {
  if (items.size() == 1) return L"\u201C" + CaptionText(items.front()) + L"\u201D";
  return std::to_wstring(items.size()) + L" entries";
}

std::wstring Doing(Verb verb, const std::vector<ItemRecord>& items) {
  return std::wstring(OperationOf(verb).doing).append(L" ").append(NamesOf(items));
}

}  // namespace

// Entries of this account, when somebody else is logged on, are seldom the ones that are meant.
bool EntryCommands::MayChange(const std::vector<ItemRecord>& items) const {
  const bool isUsers = std::any_of(items.begin(), items.end(),
                                   [](const ItemRecord& item) { return IsUserLocation(item.location); });
  if (!isUsers || !frame_.account.IsForeign()) return true;
  return Confirm(frame_, L"These are entries of " + frame_.account.name + L", not of " +
                             frame_.account.sessionUser + L", who is logged on. Change them?");
}

void EntryCommands::Apply(const std::vector<ItemRecord>& items, Verb verb, const ChangeOrder& order) const {
  if (items.empty()) return;
  frame_.worker.Ask(
      [items, verb, order](LibrarySession& session) { return session.Forecast(items, verb, order); },
      [this, items, verb, order](const UndoForecast& forecast) {
        if (MayBegin(items, verb, forecast)) Begin(items, verb, order);
      });
}

bool EntryCommands::MayBegin(const std::vector<ItemRecord>& items, Verb verb,
                             const UndoForecast& forecast) const {
  // Another question is open: the key was pressed twice.
  if (!IsWindowEnabled(frame_.window)) return false;
  if (verb == Verb::kDelete) {
    return Confirm(frame_, L"Delete " + NamesOf(items) + L"?\n\n" + DeletionText(forecast) +
                               L" Disabling stops the program just as well.");
  }
  const std::wstring loss = LossText(forecast);
  if (loss.empty()) return true;
  return Confirm(frame_, Doing(verb, items) + L"\n\n" + loss + L" Go on?");
}

void EntryCommands::Begin(std::vector<ItemRecord> items, Verb verb, ChangeOrder order) const {
  if (items.size() > 1) frame_.say(Doing(verb, items) + L"\u2026");
  frame_.worker.Ask([items = std::move(items), verb, order = std::move(order)](
                        LibrarySession& session) { return session.Change(items, verb, order); },
                    [this, verb](const OperationReport& report) {
                      ShowOutcome(frame_, std::wstring(OperationOf(verb).done), report);
                    });
}

void EntryCommands::Open(std::vector<ItemRecord> items, ItemAction action, const std::wstring& done) const {
  if (items.empty()) return;
  frame_.worker.Ask(
      [items = std::move(items), action](LibrarySession& session) { return session.Open(items, action); },
      [this, done](const OperationReport& report) { ShowOutcome(frame_, done, report); });
}

void EntryCommands::Switch(bool enable, const std::vector<ItemRecord>& items) const {
  if (MayChange(items)) Apply(items, enable ? Verb::kEnable : Verb::kDisable);
}

void EntryCommands::SwitchInSystem(bool off, const std::vector<ItemRecord>& items) const {
  if (MayChange(items)) Apply(items, off ? Verb::kSwitchOff : Verb::kSwitchOn);
}

void EntryCommands::Delete(const std::vector<ItemRecord>& items) const {
  if (MayChange(items)) Apply(items, Verb::kDelete);
}

void EntryCommands::Add(const LocationSet& shown, std::function<void(const EntryKey& added)> onAdded) const {
  std::int32_t preset = sulRegistryUserRun;
  for (std::int32_t location = kLastLocation; location >= kFirstLocation; --location) {
    if (shown.count() <= 2 && shown[location] && TakesNewEntries(location)) preset = location;
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
      [this, name = L"\u201C" + entry->name + L"\u201D",
       onAdded = std::move(onAdded)](const OperationReport& report) {
        if (!report.now) return ShowError(frame_, L"Cannot add " + report.failures.front());
        frame_.say(report.done > 0 ? L"Added " + name + L"." : name + L" is there already.");
        onAdded(*report.now);
      });
}

void EntryCommands::Move(const std::vector<ItemRecord>& items) const {
  if (items.empty() || !MayChange(items)) return;
  frame_.worker.Ask([items](LibrarySession& session) { return session.MoveTargets(items); },
                    [this, items](const LocationSet& targets) { MoveToOneOf(targets, items); });
}

void EntryCommands::MoveToOneOf(const LocationSet& targets, const std::vector<ItemRecord>& items) const {
  if (targets.none()) return ShowError(frame_, L"No other location takes " + NamesOf(items) + L".");
  const auto target = AskTarget(frame_.window, targets, L"Move " + NamesOf(items) + L" to");
  if (!target) return;
  Apply(items, Verb::kMove, {.target = *target});
}

void EntryCommands::ChangeCommand(const std::vector<ItemRecord>& items) const {
  if (items.size() != 1 || !MayChange(items)) return;
  const std::wstring before = items.front().command;
  const auto command = AskCommand(frame_.window, L"Command of " + NamesOf(items), before);
  if (!command || *command == before) return;
  Apply(items, Verb::kChange, {.command = *command});
}

void EntryCommands::Execute(std::vector<ItemRecord> items) const {
  if (frame_.account.elevated && !items.empty()) return Ask(std::move(items), 0);
  Open(std::move(items), kActionExecute, L"Started");
}

// One by one, and each as it is now: its file may be another one than that which the list was told of.
void EntryCommands::Ask(std::vector<ItemRecord> items, std::size_t next) const {
  const ItemRecord& item = items[next];
  frame_.say(L"Looking at the file of " + NamesOf({item}) + L"\u2026");
  frame_.trust.CheckFirst(item, [this, items = std::move(items), next](const auto& checked) {
    const std::wstring question = RunQuestion(checked.front());
    frame_.say({});
    if (!question.empty() && (!IsWindowEnabled(frame_.window) || !Confirm(frame_, question))) return;
    if (next + 1 < items.size()) return Ask(items, next + 1);
    Open(items, kActionExecute, L"Started");
  });
}

void EntryCommands::ShowPlace(std::vector<ItemRecord> items) const {
  Open(std::move(items), kActionShowLocation, L"Showed the place of");
}

void EntryCommands::ShowFile(const std::vector<ItemRecord>& items) const {
  if (items.empty()) return;
  frame_.worker.Post([item = items.front()](LibrarySession& session) { session.ShowFile(item); });
}

void EntryCommands::Export(std::vector<ItemRecord> items) const {
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

}  // namespace smh
