// The module with its real backup service, and a journal that begins empty.
#pragma once

#include "proofs/scenarios.h"
#include "siblings/journal_fixture.h"

#include <string>

namespace smh::test {

// Starts the module when it is made first; checkpoints are on.
class UndoWorld {
 public:
  static UndoWorld& Instance();

  const Guardkit& Service() const noexcept { return guardkit_; }
  void UseCheckpoints(bool use);
  // Undoes everything, the newest checkpoint first; how many there were. A refusal is a failed test.
  int UndoAll() const;

 private:
  UndoWorld();

  Guardkit guardkit_;
};

}  // namespace smh::test
