// Every benchmark program's main, and the rows that it prints: fields separated by tabs, "row" first.

#define CATCH_CONFIG_MAIN
#include "benchmarks/bench.h"

#include <cstdio>

namespace smh::bench {

void AddRow(const std::string& metric, const char* unit, double ours, double reference, double goal) {
  std::printf("row\t%s\t%s\t%.3f\t%.3f\t%.3f\t%.2f\n", metric.c_str(), unit, ours, reference,
              reference > 0 ? ours / reference : 0, goal);
  std::fflush(stdout);
}

void AddNote(const std::string& text) {
  std::printf("note\t%s\n", text.c_str());
  std::fflush(stdout);
}

}  // namespace smh::bench
