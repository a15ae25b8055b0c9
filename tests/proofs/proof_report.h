// The table at the end of the suite: what was injected and survived. And how much is injected at all.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace smh::test {

// Bounded runs take one step of so many; with SMH_LONG_PROOFS in the environment it is every one.
inline int ProofStride(int bounded = 3) {
  return std::getenv("SMH_LONG_PROOFS") != nullptr ? 1 : bounded;
}

class ProofReport : public ::testing::Environment {
 public:
  // One more in that row and column.
  static void Count(const std::string& row, const char* column);

  void TearDown() override {
    std::map<std::string, int> sums;
    const auto print = [](const std::string& row, const std::map<std::string, int>& columns) {
      std::printf("\n%-32s", row.c_str());
      for (const auto& [column, count] : columns) std::printf("%8d %s", count, column.c_str());
    };
    for (const auto& [row, columns] : rows_) {
      print(row, columns);
      for (const auto& [column, count] : columns) sums[column] += count;
    }
    print("injected and survived", sums);
    std::printf("\n\n");
  }

 private:
  std::map<std::string, std::map<std::string, int>> rows_;
};

// GoogleTest owns it.
inline ProofReport& g_proofReport =
    *static_cast<ProofReport*>(::testing::AddGlobalTestEnvironment(new ProofReport));

inline void ProofReport::Count(const std::string& row, const char* column) {
  ++g_proofReport.rows_[row][column];
}

}  // namespace smh::test
