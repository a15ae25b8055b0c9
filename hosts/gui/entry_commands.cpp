#include "hosts/gui/entry_commands.h"

#include "hosts/common/location_names.h"

#include <algorithm>

namespace smh {

namespace {

std::wstring NamesOf(const std::vector<ItemRecord>& items) {
  if (items.size() == 1) return L"\u201C" + CaptionText(items.front()) + L"\u201D";
  return std::to_wstring(items.size()) + L" entries";
}

// On a button.
std::wstring CountOf(const std::vector<ItemRecord>& items) {
  return items.size() == 1 ? L"this entry" : NamesOf(items);
}

// What is done to several is counted while it lasts.
ActionTitle TitleOf(std::wstring doing, const std::vector<ItemRecord>& items) {
  if (items.size() == 1) doing += L" " + NamesOf(items);
  return {std::move(doing), items.size()};
}

// None when every entry was changed, or was so already.
std::optional<std::wstring> FirstFailure(const OperationReport& report) {
  if (report.failures.empty()) return std::nullopt;
  return report.failures.front();
}

std::wstring Doing(Verb verb, const std::vector<ItemRecord>& items) {
  return std::wstring(OperationOf(verb).doing).append(L" ").append(NamesOf(items));
}

}  // namespace

bool EntryCommands::IsFree() const {
  const std::wstring reason = frame_.actions.WhyNotNow();
  if (!reason.empty()) frame_.say(reason);
  return reason.empty();
}

// Entries of this account, when somebody else is logged on, are seldom the ones that are meant.
bool EntryCommands::MayChange(const std::vector<ItemRecord>& items) const {
  const bool isUsers = std::any_of(items.begin(), items.end(),
                                   [](const ItemRecord& item) { return IsUserLocation(item.location); });
  if (!isUsers || !frame_.account.IsForeign()) return true;
  return Confirm(frame_,
                 L"These are entries of " + frame_.account.name + L", not of " + frame_.account.sessionUser +
                     L", who is logged on. Change them?",
                 L"Change them");
}

void EntryCommands::Apply(const std::vector<ItemRecord>& items, Verb verb, const ChangeOrder& order,
                          const TryEnd& end) const {
  if (items.empty()) return;
  frame_.worker.Ask(
      [items, verb, order](LibrarySession& session) { return session.Forecast(items, verb, order); },
      [this, items, verb, order, end](const UndoForecast& forecast) {
        // The key was pressed twice, or what was done before has something to tell.
        if (!end && !IsWindowEnabled(frame_.window)) {
          return frame_.say(L"Not done, since another box was open: " + Doing(verb, items) + L".");
        }
        if (MayBegin(items, verb, forecast)) return Begin(items, verb, order, end);
        if (end) end(std::wstring());
      },
      FaultOf(end));
}

// What is raised on the way is told as a refusal is.
std::function<void(const std::wstring&)> EntryCommands::FaultOf(const TryEnd& end) const {
  return [this, end](const std::wstring& text) {
    frame_.say({});
    if (!end || !end(text)) ShowError(frame_, text);
  };
}

bool EntryCommands::MayBegin(const std::vector<ItemRecord>& items, Verb verb,
                             const UndoForecast& forecast) const {
  if (verb == Verb::kDelete) {
    return Confirm(frame_,
                   L"Delete " + NamesOf(items) + L"?\n\n" + DeletionText(forecast) +
                       L" Disabling stops the program just as well.",
                   L"Delete " + CountOf(items));
  }
  const std::wstring loss = LossText(forecast);
  if (loss.empty()) return true;
  return Confirm(frame_, Doing(verb, items) + L"\n\n" + loss + L" Go on?", L"Go on");
}

void EntryCommands::Begin(std::vector<ItemRecord> items, Verb verb, ChangeOrder order, TryEnd end) const {
  if (items.size() > 1) frame_.say(Doing(verb, items) + L"\u2026");
  const auto fault = FaultOf(end);
  ActionTitle title = TitleOf(std::wstring(OperationOf(verb).doing), items);
  frame_.actions.Run(
      std::move(title),
      [items = std::move(items), verb, order = std::move(order)](LibrarySession& session,
                                                                 ActionProgress& progress) {
        return session.Change(items, verb, order, progress);
      },
      [this, verb, end = std::move(end)](const OperationReport& report) {
        const bool isTold = end && end(FirstFailure(report));
        if (isTold && !report.failures.empty()) return;
        ShowOutcome(frame_, std::wstring(OperationOf(verb).done), report);
      },
      fault);
}

void EntryCommands::Open(std::vector<ItemRecord> items, ItemAction action, const std::wstring& done) const {
  if (items.empty()) return;
  ActionTitle title = TitleOf(action == kActionExecute ? L"Starting" : L"Showing the place of", items);
  frame_.actions.Run(
      std::move(title),
      [items = std::move(items), action](LibrarySession& session, ActionProgress& progress) {
        return session.Open(items, action, progress);
      },
      [this, done](const OperationReport& report) { ShowOutcome(frame_, done, report); }, FaultOf({}));
}

void EntryCommands::Switch(bool enable, const std::vector<ItemRecord>& items) const {
  if (IsFree() && MayChange(items)) Apply(items, enable ? Verb::kEnable : Verb::kDisable);
}

void EntryCommands::SwitchInSystem(bool off, const std::vector<ItemRecord>& items) const {
  if (IsFree() && MayChange(items)) Apply(items, off ? Verb::kSwitchOff : Verb::kSwitchOn);
}

void EntryCommands::Delete(const std::vector<ItemRecord>& items) const {
  if (IsFree() && MayChange(items)) Apply(items, Verb::kDelete);
}

void EntryCommands::Add(const LocationSet& shown, const OnAdded& onAdded) const {
  if (!IsFree()) return;
  std::int32_t preset = sulRegistryUserRun;
  for (std::int32_t location = kLastLocation; location >= kFirstLocation; --location) {
    if (shown.count() <= 2 && shown[location] && TakesNewEntries(location)) preset = location;
  }
  AskNewEntry(frame_.window, preset, [&](const NewEntry& entry, const TryEnd& end) {
    ItemRecord place;
    place.location = entry.location;
    if (!MayChange({place})) return (void)end(std::wstring());
    TryToAdd(entry, onAdded, end);
  });
}

void EntryCommands::TryToAdd(const NewEntry& entry, const OnAdded& onAdded, const TryEnd& end) const {
  frame_.actions.Run(
      {L"Adding \u201C" + entry.name + L"\u201D"},
      [entry](LibrarySession& session, ActionProgress& progress) {
        return session.Add(entry.location, entry.name, entry.command, progress);
      },
      [this, name = L"\u201C" + entry.name + L"\u201D", onAdded, end](const OperationReport& report) {
        if (!report.now) {
          const std::wstring fault = L"Cannot add " + report.failures.front();
          if (!end(fault)) ShowError(frame_, fault);
          return;
        }
        end(std::nullopt);
        frame_.say(report.done > 0 ? L"Added " + name + L"." : name + L" is there already.");
        onAdded(*report.now);
      },
      FaultOf(end));
}

void EntryCommands::Move(const std::vector<ItemRecord>& items) const {
  if (items.empty() || !IsFree() || !MayChange(items)) return;
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
  if (items.size() != 1 || !IsFree() || !MayChange(items)) return;
  const std::wstring before = items.front().command;
  AskCommand(frame_.window, L"Command of " + NamesOf(items), before,
             [&](const std::wstring& command, const TryEnd& end) {
               if (command == before) return (void)end(std::nullopt);
               Apply(items, Verb::kChange, {.command = command}, end);
             });
}

void EntryCommands::Execute(std::vector<ItemRecord> items) const {
  if (IsFree() && !items.empty()) Ask(std::move(items), 0);
}

// One by one, and each as it is now: its file may be another one than that which the list was told of.
void EntryCommands::Ask(std::vector<ItemRecord> items, std::size_t next) const {
  const ItemRecord& item = items[next];
  frame_.say(L"Looking at the file of " + NamesOf({item}) + L"\u2026");
  frame_.trust.CheckFirst(item, [this, items = std::move(items), next](const auto& checked) {
    const std::wstring question = RunQuestion(checked.front(), frame_.account.elevated);
    frame_.say({});
    if (!question.empty() && (!IsWindowEnabled(frame_.window) || !Confirm(frame_, question, L"Run it")))
      return;
    if (next + 1 < items.size()) return Ask(items, next + 1);
    Open(items, kActionExecute, L"Started");
  });
}

void EntryCommands::ShowPlace(std::vector<ItemRecord> items) const {
  if (IsFree()) Open(std::move(items), kActionShowLocation, L"Showed the place of");
}

void EntryCommands::ShowFile(const std::vector<ItemRecord>& items) const {
  if (items.empty() || !IsFree()) return;
  frame_.worker.Post([item = items.front()](LibrarySession& session) { session.ShowFile(item); });
}

void EntryCommands::Export(std::vector<ItemRecord> items, bool isSelection) const {
  const std::wstring which = isSelection ? L" selected entries" : L" entries that are shown";
  const auto target = AskExportTarget(
      frame_.window, (isSelection ? L"Export " : L"Export all ") + std::to_wstring(items.size()) + which);
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
