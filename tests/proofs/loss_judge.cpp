#include "tests/proofs/loss_judge.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace smh::test {

namespace {

bool IsOutside(const TracedCall& call) {
  return call.change == TracedCall::kOutside;
}

}  // namespace

Judge::Judge(std::vector<TracedCall> calls, const std::vector<Outcome>& outcomes)
    : calls_(std::move(calls)), outcomes_(outcomes) {
  std::ranges::sort(calls_, {}, &TracedCall::Middle);
  std::map<std::wstring, std::wstring> state;
  for (const TracedCall& call : calls_) {
    const std::wstring gone = IsOutside(call) ? state[call.place] : call.stood;
    if (!gone.empty() && gone != call.written && !IsOwnCopy(call, gone)) takenBy_[gone] = &call;
    state[call.place] = call.written;
    if (!call.written.empty()) placesOf_[call.written].push_back(&call);
  }
}

std::string Judge::Explain(const TracedCall& written) const {
  const auto found = takenBy_.find(written.written);
  const TracedCall* const taker = found == takenBy_.end() ? nullptr : found->second;
  if (taker != nullptr && IsOutside(*taker)) return "outside";
  if (taker != nullptr) {
    const Outcome& outcome = OutcomeOf(*taker);
    if (outcome.isDone && outcome.AgreesTo(written.written)) return "agreed";
    // Not put back where the outside program had put something meanwhile: that is what it would be without
    // the change, too.
    if (!outcome.isDone && IsFollowedOutside(*taker)) return "outside";
    if (taker->seen != written.written) return "window";
  }
  // Carried, and taken away at its new place after that had been confirmed.
  if (IsTakenOutside(written.written)) return "outside";
  return IsInMoment(written) ? "window" : "";
}

std::string Judge::StoryOf(const std::wstring& text) const {
  std::wostringstream story;
  for (const TracedCall& call : calls_) {
    if (call.written != text && call.stood != text && call.seen != text) continue;
    story << call.begin << L" to " << call.end << L" in " << call.place.substr(call.place.rfind(L"run"))
          << L": " << call.stood << L" -> " << call.written << L", seen " << call.seen << L", change "
          << call.change;
    if (!IsOutside(call)) {
      const Outcome& outcome = OutcomeOf(call);
      story << L" of kind " << static_cast<int>(outcome.kind) << L": " << outcome.failure << L", agreed "
            << outcome.agreed;
    }
    story << L'\n';
  }
  return std::filesystem::path(story.str()).string();
}

// What a change takes away at the place where it has put it is not the entry itself.
bool Judge::IsOwnCopy(const TracedCall& call, const std::wstring& text) const {
  const auto places = placesOf_.find(text);
  return !IsOutside(call) && places != placesOf_.end() &&
         std::ranges::any_of(places->second, [&](const TracedCall* put) {
           return put->change == call.change && put->place == call.place;
         });
}

// The outside program has put something in its place before this process came there again.
bool Judge::IsFollowedOutside(const TracedCall& taker) const {
  for (const TracedCall& call : calls_) {
    if (call.place != taker.place || &call == &taker || call.end < taker.begin) continue;
    if (!IsOutside(call)) return false;
    if (!call.written.empty()) return true;
  }
  return false;
}

bool Judge::IsTakenOutside(const std::wstring& text) const {
  const auto places = placesOf_.find(text);
  if (places == placesOf_.end()) return false;
  return std::ranges::any_of(places->second, [&](const TracedCall* put) {
    return !IsOutside(*put) && std::ranges::any_of(calls_, [&](const TracedCall& call) {
      return IsOutside(call) && call.place == put->place && call.end >= put->begin;
    });
  });
}

// Written while the system was at work at the same place for this process.
bool Judge::IsInMoment(const TracedCall& written) const {
  return std::ranges::any_of(calls_, [&](const TracedCall& call) {
    return !IsOutside(call) && call.place == written.place && call.Overlaps(written);
  });
}

}  // namespace smh::test
