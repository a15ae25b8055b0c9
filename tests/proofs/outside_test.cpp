// Another program is at work while a change is made: at any step, the reading of the list included, it
// writes, deletes, retypes or renames what the change works on, or puts something beside it. Nothing that
// anybody wrote is missing afterwards but what lies in the one window: between a change's last look at a
// place and the system's call right behind it.
#include "tests/proofs/outside_program.h"
#include "tests/proofs/trial.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

// How the calls' places name it, but for the view.
std::wstring Lowered(std::wstring text) {
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  constexpr std::wstring_view kView = L"\\wow6432node";
  if (const std::size_t at = text.find(kView); at != text.npos) text.erase(at, kView.size());
  return text;
}

bool IsAbout(const SeenCall& call, const Place& place) {
  std::wstring seen = Lowered(call.place);
  const std::wstring key = Lowered(place.key);
  if (place.IsFile()) return seen.find(key) != seen.npos;
  const bool isNative = seen.starts_with(L"\\registry");
  const bool isPlain = seen.size() != call.place.size();
  if (isNative && HasTwoViews() && place.root == HKEY_LOCAL_MACHINE && isPlain != (place.view == 0))
    return false;
  if (seen.ends_with(key) || seen.ends_with(key + L'|' + Lowered(place.name))) return true;
  std::ranges::replace(seen, L'|', L'\\');
  return seen.ends_with(key);
}

// Of data; the names of subkeys are none.
bool IsReading(const SeenCall& call) {
  static const std::set<std::string> names = {"RegQueryValueExW", "RegEnumValueW", "ReadFile",
                                              "GetFileInformationByHandle"};
  return names.contains(call.name);
}

// Whether the first that the change did with the place, since the other program was there, was to change it,
// or one of the `others`.
bool WasInWindow(const std::vector<SeenCall>& trace, const Place& place, const RawState& others = {}) {
  for (const SeenCall& call : trace) {
    const auto isMet = [&](const auto& entry) { return IsAbout(call, entry.first); };
    const bool isChange = (call.effect & kChanges) != 0;
    if (isChange && (IsAbout(call, place) || std::ranges::any_of(others, isMet))) return true;
    if (IsReading(call) && IsAbout(call, place)) return false;
  }
  return false;
}

// What the user agreed to lose.
bool Removes(const Scenario& scenario) {
  const std::wstring line = scenario.operation.errorLine;
  return line.starts_with(L"Error delete") || line.starts_with(L"Error change");
}

std::string TraceText(const std::vector<SeenCall>& trace) {
  std::string text;
  for (const SeenCall& call : trace) text += std::string("  ") + call.name + ' ' + Narrow(call.place) + '\n';
  return text.substr(0, 6'000);
}

class OutsideTest : public TrialTest {
 protected:
  // One change, met at its `number`th call; false when it has fewer.
  bool Try(const Scenario& scenario, const Act& act, int number, bool fromLoad);
  std::vector<Act> Acts() const;
  void LearnCalls(const Scenario& scenario);

  // Of an undisturbed change, and of the load before it.
  std::vector<SeenCall> calls_;
  int changeCalls_ = 0;
  int loadCalls_ = 0;

 private:
  void JudgeOurs(const Scenario& scenario, const Outcome& outcome, const Act& act);
  void JudgeTheirs(const Scenario& scenario, const Act& act, int number, bool fromLoad,
                   const Outcome& outcome);
  void JudgeRest(const Outcome& outcome, const Act& act);
  void JudgeUndo(const Outcome& outcome, const Act& act);
  // What is in an entry's key without being shown goes with it, and a switch carries the default value only,
  // when the change has read it first.
  bool WentWithItsKey(const Act& act, int number, bool fromLoad) const;
  bool IsOurs(const std::string& content) const { return Holds(content, ours_) && !Holds(content, kTheirs); }
  int CountOurs(const RawState& state) const {
    return static_cast<int>(
        std::ranges::count_if(state, [&](const auto& entry) { return IsOurs(entry.second); }));
  }
  // Whether the other program itself has overwritten or removed the entry where it stood before the change.
  bool HasTakenOurs() const;

  // What marks the entry's content.
  std::string ours_;
  OutsideProgram outside_{world_};
  bool wasShown_ = false;
};

INSTANTIATE_TEST_SUITE_P(Checkpoints, OutsideTest, ::testing::Bool());

std::vector<Act> OutsideTest::Acts() const {
  std::vector<Act> acts;
  std::set<Place> keys;
  const auto add = [&](const RawState& from, const RawState& other, bool isTarget) {
    for (const auto& [place, content] : from) {
      const auto found = other.find(place);
      if (found != other.end() && found->second == content) continue;
      for (const Verb verb : {Verb::kSet, Verb::kRetype, Verb::kDelete, Verb::kRename, Verb::kAppear}) {
        if (!place.IsFile() || verb != Verb::kRetype) acts.push_back({place, verb});
      }
      Place key{place.root, place.view, place.key};
      if (IsKeyEntry(place)) key.key.resize(key.key.rfind(L'\\'));
      if (isTarget && !place.IsFile() && keys.insert(key).second) acts.push_back({key, Verb::kRemoveKey});
    }
  };
  add(before_.entries, after_.entries, false);
  add(after_.entries, before_.entries, true);
  if (IsRecorded()) acts.push_back({{nullptr, 0, JournalFolderPath()}, Verb::kJournal});
  return acts;
}

void OutsideTest::LearnCalls(const Scenario& scenario) {
  LearnEnds(scenario);
  Run(scenario, [&] { gate_.ArmOutside(1, [] {}); });
  calls_ = gate_.Trace();
  changeCalls_ = gate_.Count();
  Arrange(scenario);
  gate_.ArmOutside(1, [] {});
  LoadEntry(scenario);
  gate_.Disarm();
  loadCalls_ = gate_.Count();
  ours_ = "mark-x";
  for (const std::string& mark : {Narrow(kServedClass), std::string("Foo")}) {
    if (CountOurs(before_.entries) == 0) ours_ = mark;
  }
}

bool OutsideTest::WentWithItsKey(const Act& act, int number, bool fromLoad) const {
  const auto main = before_.entries.find(act.place);
  const bool isShown =
      main != before_.entries.end() && Holds(main->second, ours_) && act.verb != Verb::kAppear;
  const auto isAround = [&](const auto& entry) {
    const Place& around = entry.first;
    const std::wstring_view key = act.place.key;
    if (!IsKeyEntry(around) || !key.starts_with(around.key)) return false;
    return key.size() == around.key.size() || key[around.key.size()] == L'\\';
  };
  if (isShown || std::ranges::none_of(before_.entries, isAround)) return false;
  if (fromLoad) number -= loadCalls_;
  Place key = act.place;
  key.name.clear();
  const auto isThere = [&](const SeenCall& call) { return IsReading(call) && IsAbout(call, key); };
  const auto isElsewhere = [&](const SeenCall& call) { return IsReading(call) && !IsAbout(call, key); };
  const auto next = std::find_if(std::ranges::find_if(calls_, isThere), calls_.end(), isElsewhere);
  return next != calls_.end() && number < next->number;
}

bool OutsideTest::HasTakenOurs() const {
  bool isTaken = false;
  for (const auto& [place, content] : before_.entries) {
    const auto met = outside_.Met().find(place);
    const auto left = outside_.Left().find(place);
    if (left != outside_.Left().end() && IsOurs(left->second)) return false;
    isTaken |= met != outside_.Met().end() && IsOurs(met->second);
  }
  return isTaken || CountOurs(outside_.Left()) == 0;
}

void OutsideTest::JudgeOurs(const Scenario& scenario, const Outcome& outcome, const Act& act) {
  if (HasTakenOurs() || (Removes(scenario) && !outcome.raised)) return;
  const int count = CountOurs(outcome.entries);
  if (count == 0 && WasInWindow(gate_.Trace(), act.place, before_.entries)) {
    ProofReport::Count("written in the window", "target, then the source went");
    return;
  }
  EXPECT_GT(count, 0) << "the entry is lost";
  const int most = std::max(CountOurs(before_.entries), CountOurs(after_.entries));
  EXPECT_TRUE(count <= most || outcome.raised || act.verb == Verb::kRename) << "in two places";
}

void OutsideTest::JudgeTheirs(const Scenario& scenario, const Act& act, int number, bool fromLoad,
                              const Outcome& outcome) {
  if (act.verb == Verb::kDelete || act.verb == Verb::kRemoveKey || act.verb == Verb::kJournal) return;
  const bool isThere = act.verb == Verb::kRename
                           ? outcome.entries.contains(outside_.Written())
                           : std::ranges::any_of(outcome.entries, [](const auto& entry) {
                               return Holds(entry.second, kTheirs);
                             });
  if (isThere || (Removes(scenario) && wasShown_) || WentWithItsKey(act, number, fromLoad)) return;
  if (WasInWindow(gate_.Trace(), outside_.Written()) || WasInWindow(gate_.Trace(), act.place)) {
    ProofReport::Count("written in the window", kVerbs[static_cast<int>(act.verb)]);
  } else {
    ADD_FAILURE() << "what the other program wrote is lost: " << outside_.Written();
  }
}

void OutsideTest::JudgeRest(const Outcome& outcome, const Act& act) {
  const auto isKnown = [&](const std::string& content) {
    return content.empty() || Holds(content, kTheirs) ||
           std::ranges::any_of(
               std::initializer_list<const RawState*>{&before_.entries, &after_.entries, &outside_.Left()},
               [&](const RawState* state) {
                 return std::ranges::any_of(*state,
                                            [&](const auto& entry) { return entry.second == content; });
               });
  };
  for (const auto& [place, content] : outcome.entries) {
    EXPECT_TRUE(isKnown(content)) << "nobody wrote what stands at " << place;
  }
  for (const auto& [place, content] : before_.entries) {
    const auto stays = after_.entries.find(place);
    const auto left = outside_.Left().find(place);
    // When the other program took the own view's away, the plain view's has become the listed one.
    const bool isTwin = place.key == act.place.key && place.name == act.place.name;
    if (stays == after_.entries.end() || stays->second != content || isTwin) continue;
    if (left == outside_.Left().end() || left->second != content) continue;
    const auto found = outcome.entries.find(place);
    EXPECT_TRUE(found != outcome.entries.end() && found->second == content)
        << "another entry is lost: " << place;
  }
}

void OutsideTest::JudgeUndo(const Outcome& outcome, const Act& act) {
  if (!IsRecorded() || act.verb == Verb::kJournal) return;
  const bool hadTheirs =
      std::ranges::any_of(outcome.entries, [](const auto& entry) { return Holds(entry.second, kTheirs); });
  const bool isAll = UndoAll();
  // What is in conflict stays in the journal.
  const bool had = (isAll || CountOurs(outcome.entries) > 0) && !HasTakenOurs();
  const RawState now = world_.Entries();
  for (const auto& [place, content] : before_.entries) {
    const auto left = outside_.Left().find(place);
    const auto met = outside_.Met().find(place);
    const bool isTheirs =
        met != outside_.Met().end() && (left == outside_.Left().end() || left->second != met->second);
    const auto found = now.find(place);
    if (!isAll || isTheirs || place == outside_.Written()) continue;
    EXPECT_TRUE(found != now.end() && found->second == content)
        << "the undo does not restore " << place << '\n'
        << Difference(outcome.entries, now);
  }
  const bool hasTheirs =
      std::ranges::any_of(now, [](const auto& entry) { return Holds(entry.second, kTheirs); });
  EXPECT_TRUE(!had || CountOurs(now) > 0) << "the undo does not bring the entry back\n"
                                          << Difference(outcome.entries, now);
  EXPECT_TRUE(!hadTheirs || hasTheirs) << "the undo loses what the other program wrote";
}

bool OutsideTest::Try(const Scenario& scenario, const Act& act, int number, bool fromLoad) {
  const int failures = Failures();
  outside_.Reset();
  Arrange(scenario);
  const auto arm = [&] { gate_.ArmOutside(number, [&] { outside_.Do(act); }); };
  Outcome outcome;
  wasShown_ = false;
  if (fromLoad) arm();
  try {
    const ItemRef item = LoadEntry(scenario);
    if (item != nullptr) {
      const std::string shown = Narrow(std::wstring(item->State().details.Command));
      // What is no text is shown as an empty one.
      wasShown_ = Holds(shown, kTheirs) || (act.verb == Verb::kRetype && shown.empty());
    }
    if (!fromLoad) arm();
    outcome = Change(scenario, item);
  } catch (const std::runtime_error&) {
    gate_.Disarm();
    outcome.raised = true;
    outcome.entries = world_.Entries();
  }
  if (outside_.IsDone()) {
    JudgeOurs(scenario, outcome, act);
    JudgeTheirs(scenario, act, number, fromLoad, outcome);
    JudgeRest(outcome, act);
    JudgeUndo(outcome, act);
    ProofReport::Count(scenario.name, kVerbs[static_cast<int>(act.verb)]);
  }
  if (act.verb == Verb::kJournal) fs::remove_all(act.place.key + L" renamed");
  if (Failures() == failures) return outside_.IsDone();
  std::ostringstream where;
  where << kVerbs[static_cast<int>(act.verb)] << ' ' << act.place << " at call " << number
        << (fromLoad ? " from the load" : "");
  ADD_FAILURE() << scenario.name << ": " << where.str() << '\n'
                << outcome.text << "\nmet:\n"
                << Difference(before_.entries, outside_.Met()) << "left:\n"
                << Difference(outside_.Met(), outside_.Left()) << "now:\n"
                << Difference(outside_.Left(), outcome.entries) << TraceText(gate_.Trace());
  return outside_.IsDone();
}

TEST_P(OutsideTest, WhatOthersWriteIsLostInTheOneWindowOnly) {
  const int attempts = ProofStride() == 1 ? 400 : 8;
  std::size_t first = IsRecorded() ? 1 : 0;
  for (const Scenario& scenario : Scenarios()) {
    if (scenario.hasSwitch) continue;
    if (scenario.isVariant && ++first % static_cast<std::size_t>(ProofStride()) != 0) continue;
    LearnCalls(scenario);
    const std::vector<Act> acts = Acts();
    const std::size_t all = acts.size() * static_cast<std::size_t>(changeCalls_ + loadCalls_);
    const std::size_t stride = all / static_cast<std::size_t>(attempts) + 1;
    for (std::size_t at = first++ * 7 % stride; at < all; at += stride) {
      const int number = 1 + static_cast<int>(at / acts.size());
      // One in four meets the reading of the list.
      const bool fromLoad = number <= loadCalls_ && number % 4 == 0;
      Try(scenario, acts[at % acts.size()], fromLoad ? number : 1 + number % changeCalls_, fromLoad);
    }
  }
}

}  // namespace
}  // namespace smh::test
