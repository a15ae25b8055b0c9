// The changes that are put to the proof: every operation of every family of locations, each from its own
// beginning, in both roots and views, and under every kind of name.
#pragma once

#include "tests/proofs/proof_world.h"

#include <functional>
#include <span>

namespace smh::test {

enum class Entry { kNone, kAny, kEnabled, kDisabled };

struct Operation {
  // How the line begins that is logged when it fails.
  const wchar_t* errorLine;
  // Which of the entries of the name it changes.
  Entry entry;
  std::function<ChangeAnswer(TLocationStartup& location, const ItemRef& item)> perform;
};

struct Scenario {
  std::string name;
  Operation operation;
  std::function<void(ProofWorld& world)> arrangement;
  // All that the change touches; the first one makes it.
  std::vector<TTypeStartupLocation> locations;
  // The entry hides another of its name, which the next load lists.
  bool uncovers = false;
  std::wstring entryName = L"Foo";
  // One of a whole row: what a process of its own is started for takes it in full runs only.
  bool isVariant = false;
  // A switch of the system is changed, which is nobody's entry: of another program's, the one that stands
  // when the change begins counts.
  bool hasSwitch = false;

  // Into a cleared world.
  void Arrange(ProofWorld& world) const;
};

std::span<const Scenario> Scenarios();

// Reads the scenario's locations into an empty list and answers the entry; null for an addition. Throws
// std::runtime_error when it is not there.
ItemRef LoadEntry(const Scenario& scenario);
ChangeAnswer Perform(const Scenario& scenario, const ItemRef& item);

}  // namespace smh::test
