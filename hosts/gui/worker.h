// The one thread that calls the library: it reads, watches, changes and exports, so that the window never
// waits; and the way back from it.
#pragma once

#include "hosts/common/host_error.h"
#include "hosts/gui/library_session.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/handle.h"

#include <windows.h>

#include <atomic>
#include <deque>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace smh {

// Work that other threads hand to the window's thread. Works before the window exists and after it has gone,
// so it outlives both window and workers.
class UiQueue {
 public:
  using Work = std::function<void()>;

  // Any thread; `work` runs later on the window's thread, in the order of posting. Dropped after Detach.
  void Post(Work work);
  // Window's thread. From here on `window` gets `message` when work waits; it answers with RunAll.
  void Attach(HWND window, UINT message);
  // Window's thread, before the window goes: drops what waits and whatever comes later.
  void Detach();
  // Window's thread: runs what waits by now, without the lock, so that work may post and open dialogs. An
  // exception passes, and what waited behind it runs with the next message.
  void RunAll();

 private:
  // No other lock is taken while it is held.
  CriticalSection lock_;
  std::vector<Work> waiting_ SMH_GUARDED_BY(lock_);
  HWND window_ SMH_GUARDED_BY(lock_) = nullptr;
  UINT message_ SMH_GUARDED_BY(lock_) = 0;
  bool closed_ SMH_GUARDED_BY(lock_) = false;
};

// Owns the thread and, on it, the library session. Made and destroyed by the window's thread, and outlives
// the window.
class Worker {
 public:
  // Runs on the worker's thread; the session is valid inside the call.
  using Task = std::function<void(LibrarySession& session)>;
  // They run on the window's thread: the differences that a look has found, to be moved out; why a task or
  // look has failed; and why the library could not be started, after which nothing else is told.
  struct Events {
    std::function<void(ListNews& news)> onNews;
    std::function<void(const std::wstring& text)> onFailure;
    std::function<void(const std::wstring& text)> onBroken;
  };

  // Returns when the libraries are loaded, and raises HostError with what that raised; what starting them
  // raises goes to onBroken. The queue outlives the worker.
  explicit Worker(UiQueue& queue);
  // Waits for the task at work; those behind it are dropped. A reader that hangs on a dead path is not waited
  // for longer than ten seconds: the process ends then.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // Called once by the window's thread, before that runs the queue.
  void Listen(Events events) { events_ = std::move(events); }
  // Any thread. Tasks run one after the other; what one raises goes to onFailure. A look at the list follows
  // each. A task may still run when the window has gone: it must not refer to anything of the window's.
  void Post(Task task);
  // Posts `question` as a task and hands a copy of what it answers to `answer`, which runs on the window's
  // thread as long as the window is there. When `question` raises, onFailure is told instead.
  template <typename Question, typename Answer>
  void Ask(Question question, Answer answer) {
    Post([this, question = std::move(question), answer = std::move(answer)](LibrarySession& session) {
      queue_.Post([answer, result = question(session)] { answer(result); });
    });
  }
  // The same for who waits for an end: what `question` raises goes to `fault`, as a text.
  template <typename Question, typename Answer, typename Fault>
  void Ask(Question question, Answer answer, Fault fault) {
    Post([this, question = std::move(question), answer = std::move(answer),
          fault = std::move(fault)](LibrarySession& session) {
      try {
        queue_.Post([answer, result = question(session)] { answer(result); });
      } catch (...) {
        queue_.Post([fault, text = CurrentFaultText()] { fault(text); });
      }
    });
  }

 private:
  void Run() noexcept;
  void Serve(LibrarySession& session);
  bool TakeTask(Task& task);
  void Tell(const std::wstring& fault);
  void RunTask(LibrarySession& session, const Task& task);
  void Look(LibrarySession& session);
  void WaitForLook(const LibrarySession& session) const;
  bool WaitForWork(DWORD milliseconds) const;

  UiQueue& queue_;
  Events events_;
  // No other lock is taken while it is held.
  CriticalSection lock_;
  std::deque<Task> tasks_ SMH_GUARDED_BY(lock_);
  const ScopedHandle wake_;
  const ScopedHandle begun_;
  const ScopedHandle ended_;
  std::atomic<bool> stop_{false};
  std::atomic<bool> busy_{false};
  std::wstring beginFault_;  // written before begun_ is set
  std::wstring lookFault_;   // of the worker's thread
  DWORD lookTook_ = 0;       // milliseconds; of the worker's thread
  std::thread thread_;
};

}  // namespace smh
