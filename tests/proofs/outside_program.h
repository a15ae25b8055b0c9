// Another program, which is at work while a change is made: what it does to the places of the change.
#pragma once

#include "tests/proofs/proof_world.h"

namespace smh::test {

// What it writes holds this.
inline const std::string kTheirs = "mark-o";

enum class Verb { kSet, kRetype, kDelete, kRename, kAppear, kRemoveKey, kJournal };
inline constexpr const char* kVerbs[] = {
    "set", "retype", "delete", "rename", "appear", "remove the key", "disturb the journal"};

// What the other program does.
struct Act {
  Place place;
  Verb verb;
};

inline bool IsKeyEntry(const Place& place) {
  return !place.IsFile() && place.name.empty();
}

class OutsideProgram {
 public:
  explicit OutsideProgram(const ProofWorld& world) : world_(world) {}

  // Nothing has been done yet.
  void Reset() { isDone_ = false; }
  void Do(const Act& act);

  // Whether it was there, and could do it.
  bool IsDone() const noexcept { return isDone_; }
  // Where it has written, if it has.
  const Place& Written() const noexcept { return written_; }
  // What stood there before and after.
  const RawState& Met() const noexcept { return met_; }
  const RawState& Left() const noexcept { return left_; }

 private:
  // False when there is nothing to do it to.
  bool Perform(const Act& act);
  bool Rename(const Act& act);

  const ProofWorld& world_;
  bool isDone_ = false;
  Place written_;
  RawState met_;
  RawState left_;
};

}  // namespace smh::test
