#include "proofs/proof_report.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace smh::test {

namespace {

class Table : public ::testing::Environment {
 public:
  void Count(const char* row, const char* column) {
    if (!rows_.contains(row)) order_.push_back(row);
    ++rows_[row][column];
    columns_.insert(column);
  }

  void TearDown() override {
    if (order_.empty()) return;
    std::printf("\n%-32s", "injected and survived");
    for (const std::string& column : columns_) std::printf("%19s", column.c_str());
    std::map<std::string, int> sums;
    for (const std::string& row : order_) {
      std::printf("\n%-32s", row.c_str());
      for (const std::string& column : columns_) {
        std::printf("%19d", rows_[row][column]);
        sums[column] += rows_[row][column];
      }
    }
    std::printf("\n%-32s", "all");
    for (const std::string& column : columns_) std::printf("%19d", sums[column]);
    std::printf("\n\n");
  }

 private:
  std::map<std::string, std::map<std::string, int>> rows_;
  std::vector<std::string> order_;
  std::set<std::string> columns_;
};

// GoogleTest owns it.
Table& TheTable() {
  static Table& table = *static_cast<Table*>(::testing::AddGlobalTestEnvironment(new Table));
  return table;
}
const Table& g_table = TheTable();

}  // namespace

int ProofStride(int bounded) {
  return std::getenv("SMH_LONG_PROOFS") != nullptr ? 1 : bounded;
}

void ProofReport::Count(const char* row, const char* column) {
  TheTable().Count(row, column);
}

}  // namespace smh::test
