#include "hosts/common/operations.h"

#include "hosts/common/held_command.h"
#include "hosts/common/host_error.h"
#include "hosts/common/item_property.h"
#include "hosts/common/location_names.h"
#include "hosts/common/reading.h"
#include "hosts/common/start_words.h"
#include "hosts/common/texts/operation_texts.h"
#include "hosts/common/texts/refusal_texts.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

using Ask = std::optional<Outcome>;
using Seen = std::optional<ItemRecord>;

Outcome Nothing(Phrase text, const ItemRecord& now) {
  return {OutcomeKind::kNothingToDo, std::move(text), now};
}

Outcome Refused(Phrase text) {
  return {OutcomeKind::kRefused, std::move(text)};
}

bool IsInFolder(const ItemRecord& item) noexcept {
  return LocationRowOf(item.location).family == LocationFamily::kStartupFolder;
}

// What the account and the location allow, asked of the entry as it is now.
Ask AskAbility(const EntryChange& change) {
  const ItemAction ability = *OperationOf(change.verb).ability;
  if (!change.listed || change.listed->GetIndex() < 0) return Refused(texts::kNoMoreListed);
  if (change.listed->CanDo(ability)) return std::nullopt;
  return Refused(Say(texts::kLocationForbids, LocationName(change.before.location)));
}

void RequireStanding(EntryPlaces& places, const ItemRecord& now) {
  if (places.LookAt(now) != Standing::kSame) throw HostError(texts::kNotThere);
}

// Another entry may have taken the place over: that has another text.
void RequireGone(EntryPlaces& places, const ItemRecord& before) {
  if (places.LookAt(before) == Standing::kSame) throw HostError(texts::kStillThere);
}

// The listed entry for which `isIt` holds: the one at `position`, where a change puts what replaces an entry,
// else any of that location; others may have changed the list since.
template <typename IsIt>
Seen FindListed(const Library& library, std::int32_t location, std::int32_t position, IsIt&& isIt) {
  const auto fits = [&](IStartupItem& item) { return item.GetLocation() == location && isIt(item); };
  if (position >= 0) {
    const ComPtr<IStartupItem> first = library.ItemAt(position);
    if (fits(*first)) return ReadItemRecord(*first);
  }
  for (const ComPtr<IStartupItem>& item : ListedIn(library, location)) {
    if (fits(*item)) return ReadItemRecord(*item);
  }
  return std::nullopt;
}

std::wstring NameIn(IStartupItem& item) {
  return TakeText([&](BoundaryText* name) { return item.GetName(name); });
}

template <bool enable>
Ask AskState(const Library&, const EntryChange& change) {
  const ItemRecord& before = change.before;
  if (before.enabled != enable) return AskAbility(change);
  if (!enable) return Nothing(texts::kIsDisabled, before);
  const Phrase reasons = ReasonsText(before);
  if (reasons.IsEmpty() || before.starts == kStartsYes) return Nothing(texts::kIsEnabled, before);
  const bool isNot = before.starts == kStartsNo;
  return Nothing(Say(isNot ? texts::kIsEnabledNotStarted : texts::kIsEnabledUncertain, reasons), before);
}

// The system's own switch.
template <bool off>
Ask AskSwitch(const Library&, const EntryChange& change) {
  const ItemRecord& before = change.before;
  if (!change.listed || change.listed->GetIndex() < 0) return Refused(texts::kNoMoreListed);
  if (!before.enabled) return Refused(texts::kNoSwitchWhenDisabled);
  if (!NeedsSwitch(before, off)) {
    return Nothing(off ? texts::kIsSwitchedOff : texts::kIsNotSwitchedOff, before);
  }
  if (FactReader(*change.listed).Flag(kFactCanSwitch)) return std::nullopt;
  return Refused(Say(texts::kNoSwitch, LocationName(before.location)));
}

template <bool off>
HRESULT ApplySwitch(const Library&, const EntryChange& change, std::int32_t&) {
  ComPtr<IStartupItemFacts> facts;
  const HRESULT result =
      change.listed->QueryInterface(IStartupItemFacts::iid, reinterpret_cast<void**>(facts.Put()));
  return FAILED(result) ? result : facts->SetSwitchedOff(off ? TRUE : FALSE);
}

// The entry under its name and in its state, as it is now.
Seen RequireStill(const Library& library, EntryPlaces& places, const ItemRecord& before,
                  std::int32_t position) {
  Seen now = FindListed(library, before.location, position,
                        [&](IStartupItem& item) { return NameIn(item) == before.name; });
  if (!now || now->enabled != before.enabled) throw HostError(texts::kNotThere);
  RequireStanding(places, *now);
  return now;
}

template <bool off>
Seen SeeSwitch(const Library& library, EntryPlaces& places, const EntryChange& change,
               std::int32_t position) {
  const ItemRecord& before = change.before;
  Seen now = RequireStill(library, places, before, position);
  if (NeedsSwitch(*now, off)) throw HostError(texts::kSwitchIsOther);
  return now;
}

// The wrapper goes with its entry, unless the very same entry stood in the new place already.
template <bool enable>
Seen SeeState(const Library& library, EntryPlaces& places, const EntryChange& change, std::int32_t position) {
  const ItemRecord& before = change.before;
  RequireGone(places, before);
  Seen now;
  if (change.listed->GetIndex() >= 0) {
    now = ReadItemRecord(*change.listed);
  } else {
    ReadAgain(library);
    now = FindListed(library, before.location, position, [&](IStartupItem& item) {
      return FlagProperty(item, kPropertyEnabled) == enable &&
             TextProperty(item, kPropertyCaption) == before.caption;
    });
  }
  if (!now || now->enabled != enable || now->location != before.location) throw HostError(texts::kNotThere);
  RequireStanding(places, *now);
  return now;
}

Ask AskDeletion(const Library&, const EntryChange& change) {
  return AskAbility(change);
}

Seen SeeDeletion(const Library&, EntryPlaces& places, const EntryChange& change, std::int32_t) {
  if (change.listed->GetIndex() >= 0) throw HostError(texts::kStillThere);
  RequireGone(places, change.before);
  return std::nullopt;
}

Ask AskMove(const Library&, const EntryChange& change) {
  const std::wstring_view target = LocationName(change.order.target);
  if (change.before.location == change.order.target) {
    return Nothing(Say(texts::kIsInTarget, target), change.before);
  }
  if (Ask refusal = AskAbility(change)) return refusal;
  if (change.listed->CanMoveTo(change.order.target)) return std::nullopt;
  const Text& why = change.before.fileFound ? texts::kTargetRefusesAll : texts::kTargetRefusesWithoutFile;
  return Refused(Say(why, target));
}

// Within the folders a file keeps its name, but for a number behind it; elsewhere an entry keeps its command.
bool MayBeMoved(const Library& library, const ItemRecord& before, const ItemRecord& now) {
  if (!IsInFolder(before) || !IsInFolder(now)) return HoldsCommand(library, now, before.command);
  const std::wstring_view name = FileNamePart(before.name);
  const std::wstring_view stem = name.substr(0, name.size() - ExtensionPart(name).size());
  return StartsText(stem, FileNamePart(now.name));
}

// The new entry has the list position of the old one.
Seen SeeMove(const Library& library, EntryPlaces& places, const EntryChange& change, std::int32_t position) {
  RequireGone(places, change.before);
  Seen now = FindListed(library, change.order.target, position, [&](IStartupItem& item) {
    const ItemRecord record = ReadItemRecord(item);
    return record.enabled == change.before.enabled && MayBeMoved(library, change.before, record);
  });
  if (!now) throw HostError(texts::kNotThere);
  RequireStanding(places, *now);
  return now;
}

Ask AskCommand(const Library& library, const EntryChange& change) {
  const std::wstring& command = change.order.command;
  if (HoldsCommand(library, change.before, command)) {
    return Nothing(texts::kHasThatCommand, change.before);
  }
  if (Ask refusal = AskAbility(change)) return refusal;
  if (!SameText(change.before.command, command)) return std::nullopt;
  return Refused(texts::kCaseOnly);
}

// A value's new item stands at the old one's position; a shortcut keeps its item, and may spell the command
// in another way.
Seen SeeCommand(const Library& library, EntryPlaces& places, const EntryChange& change,
                std::int32_t position) {
  const ItemRecord& before = change.before;
  Seen now = RequireStill(library, places, before, position);
  const bool isNew = now->command != before.command || HoldsCommand(library, *now, change.order.command);
  if (!isNew) throw HostError(texts::kStillThere);
  return now;
}

// The enabled entry of the wanted one's name, wherever it comes from. The extension of a new file is another.
Seen FindNamed(const Library& library, const ItemRecord& wanted, std::int32_t position) {
  const std::wstring_view name = wanted.caption;
  const std::wstring file = std::wstring(name.substr(0, name.size() - ExtensionPart(name).size())) + L".lnk";
  return FindListed(library, wanted.location, position, [&](IStartupItem& item) {
    if (!FlagProperty(item, kPropertyEnabled)) return false;
    if (IsInFolder(wanted)) return SameText(FileNamePart(NameIn(item)), file);
    return SameText(FactReader(item).Text(kFactValueName).value_or(L""), name);
  });
}

// The library takes a value of that name for the new one, whatever it holds; a file it refuses to touch.
Ask AskAddition(const Library& library, const EntryChange& change) {
  const ItemRecord& wanted = change.before;
  if (!FamilyOf(LocationRowOf(wanted.location)).canModify) {
    return Refused(Say(texts::kTakesNoNew, LocationName(wanted.location)));
  }
  Seen known = FindNamed(library, wanted, -1);
  if (!IsInFolder(wanted)) {
    ItemRecord place = PlaceOfNewValue(wanted.location, wanted.caption);
    place.command = wanted.command;
    const Standing standing = EntryPlaces().LookAt(place);
    if (standing == Standing::kNothing) return std::nullopt;
    if (standing == Standing::kOther) return Refused(texts::kNameTaken);
    return Nothing(texts::kIsThereAlready, known ? *known : place);
  }
  if (known && HoldsCommand(library, *known, wanted.command)) return Nothing(texts::kIsThereAlready, *known);
  return std::nullopt;
}

Seen SeeAddition(const Library& library, EntryPlaces& places, const EntryChange& change,
                 std::int32_t position) {
  Seen now = FindNamed(library, change.before, position);
  if (!now) throw HostError(texts::kNotThere);
  if (!IsInFolder(change.before) && now->command != change.before.command) throw HostError(texts::kNameTaken);
  RequireStanding(places, *now);
  return now;
}

HRESULT ApplyAddition(const Library& library, const EntryChange& change, std::int32_t& position) {
  const ItemRecord& wanted = change.before;
  position = library.Items().AddItem(wanted.location, wanted.caption.c_str(), wanted.command.c_str());
  return position < 0 ? E_FAIL : S_OK;
}

constexpr Operation kOperations[] = {
    {Verb::kEnable, L"enable", texts::kEnableTexts, kActionEnable, LibrarySlot::kEnable, AskState<true>,
     [](const Library&, const EntryChange& change, std::int32_t&) { return change.listed->Enable(); },
     SeeState<true>},
    {Verb::kDisable, L"disable", texts::kDisableTexts, kActionDisable, LibrarySlot::kDisable, AskState<false>,
     [](const Library&, const EntryChange& change, std::int32_t&) { return change.listed->Disable(); },
     SeeState<false>},
    {Verb::kDelete, L"delete", texts::kDeleteTexts, kActionDelete, LibrarySlot::kDelete, AskDeletion,
     [](const Library&, const EntryChange& change, std::int32_t&) { return change.listed->Delete(); },
     SeeDeletion},
    {Verb::kAdd, L"add", texts::kAddTexts, std::nullopt, LibrarySlot::kAddItem, AskAddition, ApplyAddition,
     SeeAddition},
    {Verb::kMove, L"move", texts::kMoveTexts, kActionMove, LibrarySlot::kMoveTo, AskMove,
     [](const Library&, const EntryChange& change, std::int32_t&) {
       return change.listed->MoveTo(change.order.target);
     },
     SeeMove},
    {Verb::kChange, L"change", texts::kChangeTexts, kActionChangeCommand, LibrarySlot::kChangeCommand,
     AskCommand,
     [](const Library&, const EntryChange& change, std::int32_t&) {
       return change.listed->ChangeCommand(change.order.command.c_str());
     },
     SeeCommand},
    {Verb::kSwitchOff, L"switch off", texts::kSwitchOffTexts, std::nullopt, LibrarySlot::kSetSwitchedOff,
     AskSwitch<true>, ApplySwitch<true>, SeeSwitch<true>},
    {Verb::kSwitchOn, L"switch on", texts::kSwitchOnTexts, std::nullopt, LibrarySlot::kSetSwitchedOff,
     AskSwitch<false>, ApplySwitch<false>, SeeSwitch<false>},
};

Outcome OutcomeOf(const Library& library, EntryPlaces& places, const EntryChange& change) {
  const Operation& operation = OperationOf(change.verb);
  if (Ask answer = operation.ask(library, change)) return *std::move(answer);
  std::int32_t position = change.listed ? change.listed->GetIndex() : -1;
  const HRESULT result = operation.apply(library, change, position);
  if (result == S_OK) return {.now = operation.see(library, places, change, position)};
  // An addition answers a position instead.
  const bool hasResult = change.verb != Verb::kAdd;
  const LibraryFault fault =
      TakeLibraryFault(operation.slot, hasResult ? std::optional(result) : std::nullopt);
  return {fault.isRefusal ? OutcomeKind::kRefused : OutcomeKind::kFailed, fault.text};
}

// What an entry that is so already, or now, has to go through besides.
std::optional<Verb> NextStep(const EntryChange& change, const Outcome& outcome) {
  if (!outcome.IsGood() || !outcome.now) return std::nullopt;
  const ItemRecord& now = *outcome.now;
  const std::optional<bool>& enabled = change.order.enabled;
  if (enabled && now.enabled != *enabled) return *enabled ? Verb::kEnable : Verb::kDisable;
  std::optional<bool> off = change.order.switchedOff;
  if (!off && change.verb == Verb::kEnable) off = false;
  if (!off || !now.enabled || !NeedsSwitch(now, *off)) return std::nullopt;
  return *off ? Verb::kSwitchOff : Verb::kSwitchOn;
}

// What is raised is the outcome.
template <typename Work>
Ask Guarded(Work&& work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return Outcome{OutcomeKind::kFailed, CurrentFault()};
  }
}

Outcome OutcomeOfNext(const Library& library, EntryPlaces& places, Verb verb, const ItemRecord& entry) {
  EntryChange next;
  next.verb = verb;
  next.before = entry;
  next.listed = FindListedItem(library, entry.location, entry.name);
  return *Guarded([&] { return Ask(OutcomeOf(library, places, next)); });
}

// The entry behind its change, brought into the state that is ordered: first enabled or disabled, then
// switched.
Outcome Switched(const Library& library, EntryPlaces& places, const EntryChange& change, Outcome made) {
  const std::optional<Verb> next = NextStep(change, made);
  if (!next) return made;
  Outcome outcome = OutcomeOfNext(library, places, *next, *made.now);
  const bool isState = *next == Verb::kEnable || *next == Verb::kDisable;
  if (outcome.IsGood() && isState) return Switched(library, places, change, std::move(outcome));
  if (outcome.IsGood() || made.kind == OutcomeKind::kNothingToDo) return outcome;
  outcome.kind = OutcomeKind::kFailed;
  outcome.now = made.now;
  if (change.verb == Verb::kEnable) outcome.text.Append(L" ", texts::kEnabledButSwitchedOff);
  if (change.verb == Verb::kAdd && OutcomeOfNext(library, places, Verb::kDelete, *made.now).IsGood()) {
    outcome.now.reset();
    outcome.text.Append(L" ", texts::kNotLeftThere);
  }
  return outcome;
}

}  // namespace

const Operation& OperationOf(Verb verb) noexcept {
  return kOperations[static_cast<std::size_t>(verb)];
}

std::optional<Outcome> AskFirst(const Library& library, const EntryChange& change) {
  Ask answer = Guarded([&] { return OperationOf(change.verb).ask(library, change); });
  const std::optional<Verb> next = answer ? NextStep(change, *answer) : std::nullopt;
  if (!next) return answer;
  if (!change.listed) return std::nullopt;
  EntryChange step = change;
  step.verb = *next;
  step.order = {};
  return Guarded([&] { return OperationOf(step.verb).ask(library, step); });
}

const Outcome& MakeChange(const Library& library, EntryPlaces& places, EntryChange& change) {
  change.outcome =
      Guarded([&] { return Ask(Switched(library, places, change, OutcomeOf(library, places, change))); });
  return *change.outcome;
}

std::wstring TitleOf(std::span<const EntryChange> changes) {
  std::size_t count = 0;
  std::optional<Verb> verb;
  for (const EntryChange& change : changes) {
    if (change.outcome) continue;
    verb = ++count == 1 || verb == change.verb ? change.verb : Verb::kChange;
  }
  if (count < 2) return {};
  return FormatIn(Language::kEnglish, OperationOf(*verb).texts.many, count);
}

std::wstring Describe(const ItemRecord& item) {
  return Format(texts::kEntryIn, item.caption, LocationName(item.location));
}

}  // namespace smh
