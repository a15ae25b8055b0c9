#include "infra/runtime/patient_lock.h"
#include "infra/runtime/scoped_com.h"
#include "tests/support/probe_window.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <optional>
#include <thread>

namespace smh::test {

namespace {

// A thread that has the lock until it is told to leave.
class Holder {
 public:
  explicit Holder(PatientLock& lock)
      : thread_([this, &lock] {
          const ScopedPatientLock held(lock);
          inside_.set_value();
          leave_.get_future().wait();
        }) {
    inside_.get_future().wait();
  }
  ~Holder() {
    Leave();
    thread_.join();
  }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

  // From any thread, once or more often.
  void Leave() {
    if (!told_.exchange(true)) leave_.set_value();
  }

 private:
  std::promise<void> inside_;
  std::promise<void> leave_;
  std::atomic<bool> told_{false};
  std::thread thread_;
};

// Runs `body` on a thread of its own, in an apartment of that kind or, without one, without COM.
void RunOnThread(std::optional<DWORD> model, const std::function<void()>& body) {
  std::thread([&] {
    std::optional<ScopedCom> com;
    if (model) com.emplace(*model);
    body();
  }).join();
}

class PatientLockTest : public ::testing::Test {
 protected:
  PatientLockTest() { g_patientThreads.Start(); }
  ~PatientLockTest() override { g_patientThreads.Stop(); }

  PatientLock lock_;
};

}  // namespace

TEST_F(PatientLockTest, GivesUpInTimeAndMayBeAskedForAgain) {
  for (const std::optional<DWORD> model :
       {std::optional<DWORD>(), std::optional<DWORD>(COINIT_APARTMENTTHREADED)}) {
    RunOnThread(model, [this] {
      // A queue that is never empty is no reason to wait longer.
      ProbeWindow window([&] { window.Post(); });
      window.Post();
      Holder holder(lock_);
      EXPECT_FALSE(lock_.EnterWithin(0));
      const ULONGLONG begin = GetTickCount64();
      EXPECT_FALSE(lock_.EnterWithin(200));
      const ULONGLONG took = GetTickCount64() - begin;
      EXPECT_GE(took, 180u);
      EXPECT_LT(took, 2000u);
      EXPECT_FALSE(lock_.IsHeldByCaller());
      holder.Leave();
      ASSERT_TRUE(lock_.EnterWithin(10'000)) << "the try that failed left no mark on the thread";
      EXPECT_TRUE(lock_.IsHeldByCaller());
      lock_.Leave();
    });
  }
}

TEST_F(PatientLockTest, DispatchesMessagesOnApartmentThreadsOnly) {
  struct Row {
    std::optional<DWORD> model;
    bool dispatches;
  };
  for (const Row& row :
       {Row{COINIT_APARTMENTTHREADED, true}, Row{COINIT_MULTITHREADED, false}, Row{std::nullopt, false}}) {
    SCOPED_TRACE(row.dispatches);
    RunOnThread(row.model, [&] {
      std::atomic<bool> probed{false};
      const ProbeWindow window([&] { probed = true; });
      Holder holder(lock_);
      window.Post();
      EXPECT_FALSE(lock_.EnterWithin(300));
      EXPECT_EQ(probed, row.dispatches);
    });
  }
}

TEST_F(PatientLockTest, KeepsARequestToQuitForTheHost) {
  RunOnThread(COINIT_APARTMENTTHREADED, [this] {
    bool probed = false;
    const ProbeWindow window([&] { probed = true; });
    {
      Holder holder(lock_);
      PostQuitMessage(42);
      std::thread sender([&] {
        // Behind the request: an empty queue is where that is handed out.
        Sleep(100);
        window.Send();
        holder.Leave();
      });
      lock_.Enter();
      lock_.Leave();
      sender.join();
    }
    EXPECT_TRUE(probed) << "the wait goes on dispatching";
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 42u);
  });
}

TEST_F(PatientLockTest, AThreadThatEndedInsideLeavesItToTheNextButNotToATry) {
  const auto endInside = [this] { std::thread([this] { lock_.Enter(); }).join(); };
  endInside();
  EXPECT_FALSE(lock_.TryEnter()) << "what its owner was about is unknown";
  endInside();
  ASSERT_TRUE(lock_.EnterWithin(5'000));
  EXPECT_FALSE(lock_.TryEnter()) << "the caller's own";
  lock_.Leave();
  {
    Holder holder(lock_);
    EXPECT_FALSE(lock_.TryEnter());
  }
  ASSERT_TRUE(lock_.TryEnter());
  EXPECT_TRUE(lock_.IsHeldByCaller());
  lock_.Leave();
}

}  // namespace smh::test
