#include "hosts/cli/change_runner.h"

#include "hosts/cli/console.h"
#include "hosts/cli/item_selector.h"
#include "hosts/common/host_error.h"
#include "hosts/common/location_names.h"
#include "hosts/common/reading.h"

#include <algorithm>

namespace smh {

namespace {

std::wstring InQuotes(const std::wstring& text) {
  return L"\"" + text + L"\"";
}

// The state in which a change finds work to do.
std::optional<bool> StateFor(Verb verb) {
  if (verb == Verb::kEnable) return false;
  return verb == Verb::kDisable ? std::optional(true) : std::nullopt;
}

// The changes in the order of the arguments, each entry once.
std::vector<EntryChange> PlanChanges(const Library& library, const Arguments& arguments, Verb verb,
                                     const ChangeOrder& order) {
  Listing listing = TakeListing(library);
  std::vector<EntryChange> changes;
  std::vector<bool> isTaken(listing.items.size());
  for (const std::wstring& text : arguments.items) {
    const ItemRecord& item = SelectItem(listing.items, text, arguments.Location(), StateFor(verb));
    const auto index = static_cast<std::size_t>(&item - listing.items.data());
    if (isTaken[index]) continue;
    isTaken[index] = true;
    changes.push_back({.verb = verb, .order = order, .before = item, .listed = listing.wrappers[index]});
  }
  return changes;
}

// Tells of every outcome that is not there any more when all is done.
void CompareAtTheEnd(const Library& library, std::span<EntryChange> changes) {
  const auto isDone = [](const EntryChange& change) { return change.outcome->kind == OutcomeKind::kDone; };
  if (std::ranges::none_of(changes, isDone)) return;
  ReadForChanges(library, false);
  for (const EntryChange* const change : CompareOutcomes(changes, TakeSnapshot(library))) {
    if (changes.size() > 1) WriteFailure(OutcomeText(*change, *change->outcome));
  }
}

// How many have failed, all told.
std::size_t CountBad(std::span<const EntryChange> changes) {
  return static_cast<std::size_t>(
      std::ranges::count_if(changes, [](const EntryChange& change) { return !change.outcome->IsGood(); }));
}

// Of one entry the failure itself is the command's; of several each was told already.
void RaiseFailures(std::span<const EntryChange> changes) {
  const std::size_t bad = CountBad(changes);
  if (bad == 0) return;
  if (changes.size() == 1) throw HostError(OutcomeText(changes.front(), *changes.front().outcome));
  const std::wstring verb(OperationOf(changes.front().verb).name);
  throw HostError(
      std::to_wstring(bad) + L" of " + std::to_wstring(changes.size()) + L" entries: cannot " + verb + L".",
      bad == changes.size() ? ExitCode::kFailed : ExitCode::kPartly);
}

}  // namespace

std::wstring OutcomeText(const EntryChange& change, const Outcome& outcome) {
  const Operation& operation = OperationOf(change.verb);
  const std::wstring entry = Describe(change.before);
  if (outcome.kind == OutcomeKind::kNothingToDo) return entry + L": " + outcome.text;
  if (!outcome.IsGood()) {
    return std::wstring(L"Cannot ").append(operation.name).append(L" ").append(entry) + L": " + outcome.text;
  }
  std::wstring text = std::wstring(operation.done).append(L" ").append(entry);
  if (outcome.now && change.verb == Verb::kMove) {
    text += L" to " + std::wstring(LocationName(outcome.now->location)) + L" as " +
            InQuotes(outcome.now->caption);
  }
  if (outcome.now && outcome.now->id != change.before.id) text += L", now " + outcome.now->id;
  return text + L".";
}

void ChangeEntries(const Arguments& arguments, Verb verb, const ChangeOrder& order) {
  const Library library;
  ReadForChanges(library, false);
  RunChanges(library, PlanChanges(library, arguments, verb, order));
}

void AddEntry(EntryChange change) {
  const Library library;
  ReadForChanges(library, false);
  std::vector<EntryChange> changes;
  changes.push_back(std::move(change));
  RunChanges(library, std::move(changes));
}

void RunChanges(const Library& library, std::vector<EntryChange> changes) {
  const bool isOne = changes.size() == 1;
  for (EntryChange& change : changes) {
    const Outcome& outcome = MakeChange(library, change);
    if (outcome.IsGood()) {
      WriteMessage(OutcomeText(change, outcome));
    } else if (!isOne) {
      WriteFailure(OutcomeText(change, outcome));
    }
  }
  CompareAtTheEnd(library, changes);
  RaiseFailures(changes);
}

}  // namespace smh
