#include "core/contracts/service_entry.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace smh::test {
namespace {

std::string g_calls;
bool g_fails = false;

void StartSecond() {
  if (g_fails) throw std::runtime_error("no start");
  g_calls += "+2 ";
}

void AtProcessExit() noexcept {
  g_calls += "exit ";
}

constexpr ModuleStep kSteps[] = {
    {L"first", [] { g_calls += "+1 "; },
     [](StopMode& mode) noexcept { g_calls += mode == StopMode::kUnload ? "-1 " : "broken -1 "; }},
    {L"second", StartSecond,
     [](StopMode& mode) noexcept {
       g_calls += "-2 ";
       mode = StopMode::kUnloadBroken;
     }},
};

constexpr int kMark = 0;
constexpr const void* kProcessExit = &kMark;
constexpr const void* kFreeLibrary = nullptr;

std::string Calls() {
  return std::exchange(g_calls, {});
}

TEST(ServiceEntryTest, StepsFollowTheModule) {
  EXPECT_TRUE(RunModuleEntry(DLL_PROCESS_ATTACH, nullptr, kSteps, AtProcessExit));
  EXPECT_TRUE(RunModuleEntry(DLL_THREAD_ATTACH, nullptr, kSteps, AtProcessExit));
  EXPECT_TRUE(RunModuleEntry(DLL_THREAD_DETACH, nullptr, kSteps, AtProcessExit));
  EXPECT_EQ(Calls(), "+1 +2 ");
  // Nothing is stopped where other threads were ended anywhere.
  EXPECT_TRUE(RunModuleEntry(DLL_PROCESS_DETACH, kProcessExit, kSteps));
  EXPECT_EQ(Calls(), "");
  EXPECT_TRUE(RunModuleEntry(DLL_PROCESS_DETACH, kProcessExit, kSteps, AtProcessExit));
  EXPECT_EQ(Calls(), "exit ");
  EXPECT_TRUE(RunModuleEntry(DLL_PROCESS_DETACH, kFreeLibrary, kSteps, AtProcessExit));
  EXPECT_EQ(Calls(), "-2 broken -1 ");
}

TEST(ServiceEntryTest, FailedStartRefusesTheModuleAndIsNotStoppedAgain) {
  g_fails = true;
  EXPECT_FALSE(RunModuleEntry(DLL_PROCESS_ATTACH, nullptr, kSteps, AtProcessExit));
  g_fails = false;
  EXPECT_EQ(Calls(), "+1 -1 ");
  RunModuleEntry(DLL_PROCESS_DETACH, kFreeLibrary, kSteps, AtProcessExit);
  RunModuleEntry(DLL_PROCESS_DETACH, kProcessExit, kSteps, AtProcessExit);
  EXPECT_EQ(Calls(), "");
}

}  // namespace
}  // namespace smh::test
