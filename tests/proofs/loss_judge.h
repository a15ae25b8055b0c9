// Who took away what the outside program wrote.
#pragma once

#include "tests/proofs/change_trace.h"

#include <map>

namespace smh::test {

enum class Kind { kAdd, kEnable, kDisable, kChange, kMove, kDelete };

// What became of a change. One that takes a text away for good was agreed to for that text.
struct Outcome {
  Kind kind = Kind::kAdd;
  bool isDone = false;
  std::wstring agreed;
  std::wstring failure;

  // Of what is no text the list shows nothing, so that this is what is agreed to.
  bool AgreesTo(const std::wstring& content) const {
    return (kind == Kind::kDelete || kind == Kind::kChange) && (agreed.empty() || agreed == content);
  }
};

class Judge {
 public:
  // The calls of both programs; outcomes by the number of the change, which live as long.
  Judge(std::vector<TracedCall> calls, const std::vector<Outcome>& outcomes);

  // Why a text is not there any more; empty when nothing explains it.
  std::string Explain(const TracedCall& written) const;
  // Every call that had to do with the text, by lines.
  std::string StoryOf(const std::wstring& text) const;

 private:
  const Outcome& OutcomeOf(const TracedCall& call) const {
    return outcomes_[static_cast<std::size_t>(call.change)];
  }
  bool IsOwnCopy(const TracedCall& call, const std::wstring& text) const;
  bool IsFollowedOutside(const TracedCall& taker) const;
  bool IsTakenOutside(const std::wstring& text) const;
  bool IsInMoment(const TracedCall& written) const;

  std::vector<TracedCall> calls_;
  const std::vector<Outcome>& outcomes_;
  std::map<std::wstring, const TracedCall*> takenBy_;
  std::map<std::wstring, std::vector<const TracedCall*>> placesOf_;
};

}  // namespace smh::test
