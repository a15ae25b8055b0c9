// The changes that are put to the proof: every operation of the three kinds of locations, each from its own
// beginning.
#pragma once

#include "tests/proofs/proof_world.h"

#include <span>

namespace smh::test {

enum class Entry { kNone, kAny, kEnabled, kDisabled };

struct Operation {
  // How the line begins that is logged when it fails.
  const wchar_t* errorLine;
  // Which of the entries called "Foo" it changes.
  Entry entry;
  ChangeAnswer (*perform)(TLocationStartup& location, const ItemRef& item);
};

struct Scenario {
  const char* name;
  const Operation& operation;
  void (*arrange)(ProofWorld& world);
  // All that the change touches; the first one makes it.
  std::vector<TTypeStartupLocation> locations;
  // The entry hides another of its name, which the next load lists.
  bool uncovers = false;
};

std::span<const Scenario> Scenarios();

// Reads the scenario's locations into an empty list and answers the entry; null for an addition. Throws
// std::runtime_error when it is not there.
ItemRef LoadEntry(const Scenario& scenario);
ChangeAnswer Perform(const Scenario& scenario, const ItemRef& item);

}  // namespace smh::test
