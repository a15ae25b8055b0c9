// Every benchmark program's main. A section's first benchmark is ours, the others are references: after each
// section it prints how much of a reference's time ours takes, both by their fastest samples, because
// whatever else the machine does only ever adds time.

#define CATCH_CONFIG_MAIN
#include "bench.h"

#include <algorithm>
#include <cstdio>

namespace {

struct Figure {
  std::string name;
  double nanoseconds;
};

class RatioListener : public Catch::TestEventListenerBase {
 public:
  using TestEventListenerBase::TestEventListenerBase;

  void benchmarkEnded(const Catch::BenchmarkStats<>& stats) override {
    figures_.push_back({stats.info.name, std::ranges::min(stats.samples).count()});
  }

  void testCaseEnded(const Catch::TestCaseStats& stats) override {
    for (std::size_t i = 1; i < figures_.size(); ++i) {
      std::printf("\n%s: %s / %s = %.0f ns / %.0f ns = %.2f\n", stats.testInfo.name.c_str(),
                  figures_[0].name.c_str(), figures_[i].name.c_str(), figures_[0].nanoseconds,
                  figures_[i].nanoseconds, figures_[0].nanoseconds / figures_[i].nanoseconds);
    }
    figures_.clear();
  }

 private:
  std::vector<Figure> figures_;
};

}  // namespace

CATCH_REGISTER_LISTENER(RatioListener)
