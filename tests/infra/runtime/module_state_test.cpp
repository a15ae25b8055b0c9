// State of a module: its start and stop, and values made on first use.
#include "infra/runtime/handle.h"
#include "infra/runtime/lazy.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/module_steps.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace smh::test {

struct CountedState;
extern ModuleGlobal<CountedState> g_counted;

namespace {

// Rows may be made where the state is not complete.
constexpr ModuleStep kCountedStep = StepOf<g_counted>(L"counted");

int living = 0;
bool seenWhileDestroyed = false;

}  // namespace

struct CountedState {
  CountedState() { ++living; }
  ~CountedState() {
    --living;
    seenWhileDestroyed = g_counted.IsStarted();
  }

  std::wstring text = L"made";
};

constexpr int kDefinition = __LINE__ + 1;
constinit ModuleGlobal<CountedState> g_counted(L"uLocationStartup");

namespace {

static_assert(std::is_trivially_destructible_v<ModuleGlobal<CountedState>>,
              "the runtime has nothing to destroy at exit");

void ExpectNotStarted() {
  EXPECT_FALSE(g_counted.IsStarted());
  try {
    g_counted->text.clear();
    FAIL() << "access without a state";
  } catch (const EAssertionFailed& failure) {
    EXPECT_EQ(failure.Message(), Format(L"Assertion failure (uLocationStartup, line %d)", kDefinition));
  }
  EXPECT_THROW(*g_counted, EAssertionFailed);
}

TEST(ModuleGlobalTest, LivesFromStartToStopAndAssertsItsAccess) {
  ExpectNotStarted();
  for (int life = 0; life < 2; ++life) {
    g_counted.Start();
    EXPECT_TRUE(g_counted.IsStarted());
    EXPECT_EQ(g_counted->text, L"made") << "made anew";
    g_counted->text = L"changed";
    EXPECT_THROW(g_counted.Start(), EAssertionFailed);
    EXPECT_EQ((*g_counted).text, L"changed") << "a second start changes nothing";
    EXPECT_EQ(living, 1);
    g_counted.Stop();
    EXPECT_EQ(living, 0);
    EXPECT_FALSE(seenWhileDestroyed);
    ExpectNotStarted();
  }
  g_counted.Stop();
  EXPECT_EQ(living, 0);
}

TEST(ModuleGlobalTest, ABrokenUnloadDestroysNothing) {
  kCountedStep.start();
  StopMode mode = StopMode::kUnloadBroken;
  kCountedStep.stop(mode);
  EXPECT_TRUE(g_counted.IsStarted());
  mode = StopMode::kUnload;
  kCountedStep.stop(mode);
  EXPECT_FALSE(g_counted.IsStarted());
  EXPECT_EQ(mode, StopMode::kUnload);
}

TEST(LazyTest, IsMadeOnceHoweverManyAsk) {
  constexpr int kThreads = 8;
  for (int round = 0; round < 50; ++round) {
    CriticalSection section;
    Lazy<std::wstring> lazy(section);
    std::atomic<int> made{0};
    const ScopedHandle begin(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::vector<const std::wstring*> answers(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&, i] {
        WaitForSingleObject(begin.Get(), INFINITE);
        answers[static_cast<std::size_t>(i)] = &lazy.Get([&] {
          ++made;
          Sleep(1);
          return std::wstring(L"value");
        });
      });
    }
    SetEvent(begin.Get());
    for (std::thread& thread : threads) thread.join();
    ASSERT_EQ(made, 1) << "round " << round;
    for (const std::wstring* const answer : answers) {
      ASSERT_EQ(answer, answers[0]);
      ASSERT_EQ(*answer, L"value");
    }
  }
}

TEST(LazyTest, AMakerThatThrowsLeavesItEmptyAndTheLockFree) {
  CriticalSection section;
  Lazy<const int> lazy(section);
  const auto fail = []() -> int { throw Exception(L"not made"); };
  EXPECT_THROW(lazy.Get(fail), Exception);
  EXPECT_FALSE(section.IsHeldByCaller());
  EXPECT_EQ(lazy.Get([] { return 7; }), 7);
  EXPECT_EQ(lazy.Get(fail), 7) << "made already";
}

}  // namespace
}  // namespace smh::test
