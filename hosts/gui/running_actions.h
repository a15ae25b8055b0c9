// The actions that the user has begun and that the worker has not ended yet. For the window's thread.
#pragma once

#include "hosts/gui/action_progress.h"
#include "hosts/gui/worker.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace smh {

// What an action does, for people.
struct ActionTitle {
  std::wstring doing;  // "Disabling", or as a whole: "Undoing the latest change"
  // The entries that `doing` is said of. With fewer than two nothing is counted, and it cannot be cancelled.
  std::size_t entries = 0;
};

// One of them.
struct RunningAction {
  ActionTitle title;
  ULONGLONG begun = 0;  // GetTickCount64
  std::shared_ptr<ActionProgress> progress;

  bool CanBeCancelled() const noexcept { return title.entries > 1; }
};

// "Disabling 1000 entries"; "Disabling 120 of 1000 entries".
std::wstring WholeText(const RunningAction& action);
std::wstring ProgressText(const RunningAction& action);

// They run one after the other, in the order in which they were begun.
class RunningActions {
 public:
  // `worker` outlives the object.
  explicit RunningActions(Worker& worker) : worker_(worker) {}
  // Cancels them: the worker, which has to come to an end next, ends between two entries.
  ~RunningActions();
  RunningActions(const RunningActions&) = delete;
  RunningActions& operator=(const RunningActions&) = delete;

  // Called once; `onChange` is told when one has begun or ended.
  void Listen(std::function<void()> onChange) { onChange_ = std::move(onChange); }
  // Begins an action. `question` gets the session and the action's ActionProgress, on the worker's thread;
  // `answer` and `fault` are told as by Worker::Ask, when the action has ended.
  template <typename Question, typename Answer, typename Fault>
  void Run(ActionTitle title, Question question, Answer answer, Fault fault) {
    const std::shared_ptr<ActionProgress> progress = Begin(std::move(title));
    worker_.Ask([progress, question = std::move(question)](
                    LibrarySession& session) { return question(session, *progress); },
                [this, progress, answer = std::move(answer)](const auto& result) {
                  End(progress);
                  answer(result);
                },
                [this, progress, fault = std::move(fault)](const std::wstring& text) {
                  End(progress);
                  fault(text);
                });
  }

  bool IsAny() const noexcept { return !actions_.empty(); }
  // The one at work, when the user has waited for it for half a second; null. Valid until the next change.
  const RunningAction* Long() const noexcept;
  // Why nothing else is to be begun now, as a sentence; empty without a long one. What comes before waits its
  // turn.
  std::wstring WhyNotNow() const;
  // Cancels the one at work.
  void Cancel();

 private:
  std::shared_ptr<ActionProgress> Begin(ActionTitle title);
  void End(const std::shared_ptr<ActionProgress>& progress);

  Worker& worker_;
  std::function<void()> onChange_;
  std::vector<RunningAction> actions_;
};

}  // namespace smh
