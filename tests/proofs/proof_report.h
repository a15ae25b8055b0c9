// The table at the end of the suite: what was injected and survived. And how much is injected at all.
#pragma once

namespace smh::test {

// Bounded runs take one step of so many; with SMH_LONG_PROOFS in the environment it is every one.
int ProofStride(int bounded = 3);

class ProofReport {
 public:
  // One more in that row and column.
  static void Count(const char* row, const char* column);
};

}  // namespace smh::test
