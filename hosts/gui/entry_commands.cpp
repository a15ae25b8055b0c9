#include "hosts/gui/entry_commands.h"

#include "hosts/common/location_names.h"
#include "hosts/gui/texts/action_texts.h"

#include <algorithm>

namespace smh {

namespace {

std::wstring NamesOf(const std::vector<ItemRecord>& items) {
  return items.size() == 1 ? Format(texts::kOneName, CaptionText(items.front()))
                           : Format(texts::kManyNames, items.size());
}

const texts::ActionWords& WordsOf(Verb verb) noexcept {
  switch (verb) {
    case Verb::kEnable:
      return texts::kEnabling;
    case Verb::kDisable:
      return texts::kDisabling;
    case Verb::kDelete:
      return texts::kDeleting;
    case Verb::kAdd:
      return texts::kAdding;
    case Verb::kMove:
      return texts::kMoving;
    case Verb::kChange:
      return texts::kChanging;
    case Verb::kSwitchOff:
      return texts::kSwitchingOff;
    case Verb::kSwitchOn:
      break;
  }
  return texts::kSwitchingOn;
}

std::wstring Doing(const texts::ActionWords& words, const std::vector<ItemRecord>& items) {
  return items.size() == 1 ? Format(texts::kDoingOne, words.doing.Get(), CaptionText(items.front()))
                           : Format(texts::kDoingMany, words.doing.Get(), items.size());
}

// What is done to several is counted while it lasts.
ActionTitle TitleOf(const texts::ActionWords& words, const std::vector<ItemRecord>& items) {
  return {items.size() == 1 ? Doing(words, items) : words.doing.Get(), items.size()};
}

// None when every entry was changed, or was so already.
std::optional<std::wstring> FirstFailure(const OperationReport& report) {
  if (report.failures.empty()) return std::nullopt;
  return report.failures.front();
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
  return Confirm(frame_, Format(texts::kForeignQuestion, frame_.account.name, frame_.account.sessionUser),
                 texts::kForeignVerb.Get());
}

void EntryCommands::Apply(const std::vector<ItemRecord>& items, Verb verb, const ChangeOrder& order,
                          const TryEnd& end) const {
  if (items.empty()) return;
  frame_.worker.Ask(
      [items, verb, order](LibrarySession& session) { return session.Forecast(items, verb, order); },
      [this, items, verb, order, end](const UndoForecast& forecast) {
        // The key was pressed twice, or what was done before has something to tell.
        if (!end && !IsWindowEnabled(frame_.window)) {
          return frame_.say(Format(texts::kNotDoneBusy, Doing(WordsOf(verb), items)));
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
    return Confirm(
        frame_, Format(texts::kDeleteQuestion, NamesOf(items), DeletionText(forecast)),
        items.size() == 1 ? texts::kDeleteOneVerb.Get() : Format(texts::kDeleteManyVerb, items.size()));
  }
  const std::wstring loss = LossText(forecast);
  if (loss.empty()) return true;
  return Confirm(frame_, Format(texts::kLossQuestion, Doing(WordsOf(verb), items), loss),
                 texts::kLossVerb.Get());
}

void EntryCommands::Begin(std::vector<ItemRecord> items, Verb verb, ChangeOrder order, TryEnd end) const {
  if (items.size() > 1) frame_.say(Doing(WordsOf(verb), items) + L"…");
  const auto fault = FaultOf(end);
  ActionTitle title = TitleOf(WordsOf(verb), items);
  frame_.actions.Run(
      std::move(title),
      [items = std::move(items), verb, order = std::move(order)](LibrarySession& session,
                                                                 ActionProgress& progress) {
        return session.Change(items, verb, order, progress);
      },
      [this, verb, end = std::move(end)](const OperationReport& report) {
        const bool isTold = end && end(FirstFailure(report));
        if (isTold && !report.failures.empty()) return;
        ShowOutcome(frame_, WordsOf(verb).done, report);
      },
      fault);
}

void EntryCommands::Open(std::vector<ItemRecord> items, ItemAction action) const {
  if (items.empty()) return;
  const texts::ActionWords& words = action == kActionExecute ? texts::kStarting : texts::kShowingPlace;
  ActionTitle title = TitleOf(words, items);
  frame_.actions.Run(
      std::move(title),
      [items = std::move(items), action](LibrarySession& session, ActionProgress& progress) {
        return session.Open(items, action, progress);
      },
      [this, &words](const OperationReport& report) { ShowOutcome(frame_, words.done, report); },
      FaultOf({}));
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
      {Format(texts::kDoingOne, texts::kAdding.doing.Get(), entry.name)},
      [entry](LibrarySession& session, ActionProgress& progress) {
        return session.Add(entry.location, entry.name, entry.command, progress);
      },
      [this, name = entry.name, onAdded, end](const OperationReport& report) {
        if (!report.now) {
          const std::wstring fault = Format(texts::kCannotAdd, report.failures.front());
          if (!end(fault)) ShowError(frame_, fault);
          return;
        }
        end(std::nullopt);
        frame_.say(Format(report.done > 0 ? texts::kAddedOne : texts::kIsThere, name));
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
  if (targets.none()) return ShowError(frame_, Format(texts::kNoTarget, NamesOf(items)));
  const auto target = AskTarget(frame_.window, targets, Format(texts::kMovePrompt, NamesOf(items)));
  if (!target) return;
  Apply(items, Verb::kMove, {.target = *target});
}

void EntryCommands::ChangeCommand(const std::vector<ItemRecord>& items) const {
  if (items.size() != 1 || !IsFree() || !MayChange(items)) return;
  const std::wstring before = items.front().command;
  AskCommand(frame_.window, Format(texts::kCommandPrompt, NamesOf(items)), before,
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
  frame_.say(Format(texts::kLookingAtFile, CaptionText(item)));
  frame_.trust.CheckFirst(item, [this, items = std::move(items), next](const auto& checked) {
    const std::wstring question = RunQuestion(checked.front(), frame_.account.elevated);
    frame_.say({});
    if (!question.empty() &&
        (!IsWindowEnabled(frame_.window) || !Confirm(frame_, question, texts::kRunVerb.Get())))
      return;
    if (next + 1 < items.size()) return Ask(items, next + 1);
    Open(items, kActionExecute);
  });
}

void EntryCommands::ShowPlace(std::vector<ItemRecord> items) const {
  if (IsFree()) Open(std::move(items), kActionShowLocation);
}

void EntryCommands::ShowFile(const std::vector<ItemRecord>& items) const {
  if (items.empty() || !IsFree()) return;
  frame_.worker.Post([item = items.front()](LibrarySession& session) { session.ShowFile(item); });
}

void EntryCommands::Export(std::vector<ItemRecord> items, bool isSelection) const {
  const auto target = AskExportTarget(
      frame_.window, Format(isSelection ? texts::kExportSelected : texts::kExportShown, items.size()));
  if (!target) return;
  frame_.worker.Ask(
      [items = std::move(items), target = *target](LibrarySession& session) {
        session.Export(items, target.json ? ExportFormat::kJson : ExportFormat::kCsv, target.file);
        return items.size();
      },
      [this, file = target->file](std::size_t count) {
        frame_.say(Format(texts::kWrote.For(count), count, file));
      });
}

}  // namespace smh
