#include "hosts/cli/change_runner.h"

#include "hosts/cli/consent.h"
#include "hosts/cli/console.h"
#include "hosts/cli/item_selector.h"
#include "hosts/cli/outcome_output.h"
#include "hosts/cli/texts/message_texts.h"
#include "hosts/common/action_scope.h"
#include "hosts/common/host_error.h"
#include "hosts/common/journal.h"
#include "hosts/common/journal_words.h"
#include "hosts/common/operation_steps.h"
#include "hosts/common/outcome_check.h"
#include "hosts/common/reading.h"

#include <algorithm>

namespace smh {

namespace {

// The state in which a change finds work to do.
std::optional<bool> StateFor(Verb verb) {
  if (verb == Verb::kEnable) return false;
  return verb == Verb::kDisable || verb == Verb::kSwitchOff ? std::optional(true) : std::nullopt;
}

bool IsPlanned(const EntryChange& change) {
  return !change.outcome;
}
bool IsBad(const EntryChange& change) {
  return change.outcome && !change.outcome->IsGood();
}

std::wstring Entries(std::size_t count) {
  return Format(texts::kEntryCount.For(count), count);
}

// A failure is told even to those who want quiet; the only one there is ends the command.
void Tell(const EntryChange& change, bool isOnly) {
  const std::wstring text = OutcomeText(change, *change.outcome);
  if (!IsBad(change)) {
    WriteMessage(text);
  } else if (!isOnly) {
    WriteFailure(text);
  }
}

void RaiseFailures(std::span<const EntryChange> changes, bool isRestDone) {
  const auto bad = static_cast<std::size_t>(std::ranges::count_if(changes, IsBad));
  if (bad == 0) return;
  const ExitCode code = isRestDone || bad < changes.size() ? ExitCode::kPartly : ExitCode::kFailed;
  if (changes.size() == 1) throw HostError(OutcomeText(changes.front(), *changes.front().outcome), code);
  throw HostError(Say(texts::kSomeFailed, bad, Entries(changes.size())), code);
}

// What stands in the way of each, before the first change. The place of a new entry may be another's that
// goes first.
void AskAll(const Library& library, std::span<EntryChange> changes, bool isDryRun) {
  const bool isOne = changes.size() == 1;
  for (EntryChange& change : changes) {
    if (IsPlanned(change) && (isOne || isDryRun || change.verb != Verb::kAdd)) {
      change.outcome = AskFirst(library, change);
    }
  }
}

// What is kept of them may push older ones out.
void RequireRoom(const Journal& journal, std::span<const EntryChange> changes, const ChangeManner& manner) {
  if (std::ranges::none_of(changes, IsPlanned) || !UsesCheckpoints()) return;
  std::uint64_t bytes = 0;
  for (const EntryChange& change : changes) bytes += IsPlanned(change) ? RecordedBytes(change) : 0;
  const std::vector<CheckpointRecord> dropped = journal.WouldDrop(bytes);
  if (dropped.empty()) return;
  RequireConsent(Format(texts::kWouldDrop, dropped.size(), TitleText(dropped.back().title)), manner.mayGoOn);
}

// Tells of every outcome that is not there any more when all is done. What keeps it from looking is the
// answer: it must not hide the outcomes.
std::wstring CompareAtTheEnd(const Library& library, std::span<EntryChange> changes) {
  const auto isDone = [](const EntryChange& change) {
    return change.outcome && change.outcome->kind == OutcomeKind::kDone;
  };
  if (std::ranges::none_of(changes, isDone)) return {};
  try {
    ReadForChanges(library, false);
    for (const EntryChange* const change : CompareOutcomes(changes, ReadStands(library))) {
      Tell(*change, changes.size() == 1);
    }
  } catch (const HostError& error) {
    return error.Message();
  }
  return {};
}

void MakeAll(const Library& library, std::span<EntryChange> changes, const ChangeManner& manner) {
  const auto planned = static_cast<std::size_t>(std::ranges::count_if(changes, IsPlanned));
  const Journal journal;
  if (planned > 1 && manner.isBroad)
    RequireConsent(Format(texts::kThatMeans, Entries(planned)), manner.mayGoOn);
  RequireRoom(journal, changes, manner);
  const ActionScope action(journal, manner.title.empty() ? TitleOf(changes) : manner.title);
  EntryPlaces places;
  for (EntryChange& change : changes) {
    if (IsPlanned(change)) MakeChange(library, places, change);
    Tell(change, changes.size() == 1);
  }
}

}  // namespace

ChangeManner MannerOf(const Arguments& arguments) {
  return {.isDryRun = arguments.dryRun,
          .isJson = arguments.format == OutputFormat::kJson,
          .mayGoOn = arguments.yes};
}

void ChangeEntries(const Arguments& arguments, Verb verb, const ChangeOrder& order) {
  Selector selector = arguments.Selection();
  selector.preferred = StateFor(verb);
  const Library library;
  ReadForChanges(library, selector.filter.NeedsDetails());
  Listing listing = TakeListing(library);
  if (!selector.filter.match.empty()) ResolveFiles(library, listing.items);
  const Selection selection = SelectItems(listing.items, selector);
  if (selection.positions.empty()) return WriteMessage(texts::kNoSuchEntryLeft.Get());
  std::vector<EntryChange> changes;
  for (const std::size_t at : selection.positions) {
    changes.push_back({.verb = verb,
                       .order = order,
                       .before = std::move(listing.items[at]),
                       .listed = std::move(listing.wrappers[at])});
  }
  ChangeManner manner = MannerOf(arguments);
  manner.isBroad = selection.isBroad;
  RunChanges(library, std::move(changes), manner);
}

void AddEntry(const Arguments& arguments, EntryChange change) {
  const Library library;
  ReadForChanges(library, false);
  std::vector<EntryChange> changes;
  changes.push_back(std::move(change));
  RunChanges(library, std::move(changes), MannerOf(arguments));
}

void RunChanges(const Library& library, std::vector<EntryChange> changes, const ChangeManner& manner) {
  AskAll(library, changes, manner.isDryRun);
  std::wstring unseen;
  if (!manner.isDryRun) {
    MakeAll(library, changes, manner);
    unseen = CompareAtTheEnd(library, changes);
  } else if (!manner.isJson) {
    std::wstring text;
    for (const EntryChange& change : changes) text += PreviewText(change);
    WriteOutput(text);
  }
  if (manner.isJson) WriteOutput(OutcomesJson(changes));
  RaiseFailures(changes, manner.isRestDone);
  if (!unseen.empty()) throw HostError(Say(texts::kCannotSeeOutcome, unseen), ExitCode::kPartly);
}

}  // namespace smh
