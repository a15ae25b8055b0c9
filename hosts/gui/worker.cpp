#include "hosts/gui/worker.h"

#include "hosts/common/host_error.h"
#include "hosts/gui/texts/action_texts.h"
#include "infra/runtime/scoped_com.h"

#include <algorithm>
#include <iterator>

namespace smh {

namespace {

constexpr DWORD kLookInterval = 1000;
// While entries are read. Every look costs the reader and a repaint of the list, so that it takes a fifth of
// the time at most, and only the end of a stage is looked for more often.
constexpr DWORD kReadingInterval = 150;
constexpr DWORD kMostReadingInterval = 1000;
constexpr DWORD kStageInterval = 20;
constexpr DWORD kStopLimit = 10'000;

// Empty when `work` went well.
template <typename Work>
std::wstring FaultOf(Work&& work) {
  try {
    work();
    return {};
  } catch (...) {
    return CurrentFaultText();
  }
}

}  // namespace

void UiQueue::Post(Work work) {
  const ScopedLock guard(lock_);
  if (closed_) return;
  waiting_.push_back(std::move(work));
  if (window_ != nullptr && waiting_.size() == 1) PostMessageW(window_, message_, 0, 0);
}

void UiQueue::Attach(HWND window, UINT message) {
  const ScopedLock guard(lock_);
  window_ = window;
  message_ = message;
  if (!waiting_.empty()) PostMessageW(window_, message_, 0, 0);
}

void UiQueue::Detach() {
  const ScopedLock guard(lock_);
  closed_ = true;
  waiting_.clear();
}

void UiQueue::RunAll() {
  std::vector<Work> work;
  {
    const ScopedLock guard(lock_);
    work.swap(waiting_);
  }
  std::size_t done = 0;
  try {
    while (done < work.size()) work[done++]();
  } catch (...) {
    // One that fails takes nothing from the others: their turn comes with the next message.
    const ScopedLock guard(lock_);
    const auto left = work.begin() + static_cast<std::ptrdiff_t>(done);
    if (!closed_ && left != work.end()) {
      waiting_.insert(waiting_.begin(), std::make_move_iterator(left), std::make_move_iterator(work.end()));
      if (window_ != nullptr) PostMessageW(window_, message_, 0, 0);
    }
    throw;
  }
}

Worker::Worker(UiQueue& queue)
    : queue_(queue),
      wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      begun_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      ended_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  if (!wake_ || !begun_ || !ended_) throw HostError(texts::kCannotMakeEvent.Get());
  thread_ = std::thread([this] { Run(); });
  WaitForSingleObject(begun_.Get(), INFINITE);
  if (beginFault_.empty()) return;
  thread_.join();
  throw HostError(beginFault_);
}

Worker::~Worker() {
  stop_ = true;
  SetEvent(wake_.Get());
  do {
    if (WaitForSingleObject(ended_.Get(), kStopLimit) == WAIT_OBJECT_0) {
      thread_.join();
      return;
    }
  } while (busy_);
  TerminateProcess(GetCurrentProcess(), 0);
}

void Worker::Post(Task task) {
  {
    const ScopedLock guard(lock_);
    tasks_.push_back(std::move(task));
  }
  SetEvent(wake_.Get());
}

void Worker::Run() noexcept {
  const ScopedCom com(COINIT_APARTMENTTHREADED);
  bool isLoaded = false;
  const std::wstring fault = FaultOf([&] {
    LibrarySession session([&] {
      isLoaded = true;
      SetEvent(begun_.Get());
    });
    Serve(session);
  });
  if (isLoaded) {
    if (!fault.empty()) queue_.Post([this, fault] { events_.onBroken(fault); });
  } else {
    beginFault_ = fault;
    SetEvent(begun_.Get());
  }
  SetEvent(ended_.Get());
}

void Worker::Serve(LibrarySession& session) {
  while (!stop_) {
    Task task;
    if (TakeTask(task)) {
      RunTask(session, task);
    } else {
      WaitForLook(session);
    }
    if (!stop_) Look(session);
  }
}

// Until a look is due, or there is work.
void Worker::WaitForLook(const LibrarySession& session) const {
  if (!lookFault_.empty() || (!session.IsReading() && !session.HasNewStage())) {
    return (void)WaitForWork(kLookInterval);
  }
  const DWORD interval = std::clamp(4 * lookTook_, kReadingInterval, kMostReadingInterval);
  const ULONGLONG begin = GetTickCount64();
  while (GetTickCount64() - begin < interval && !session.HasNewStage()) {
    if (WaitForWork(kStageInterval)) return;
  }
}

bool Worker::TakeTask(Task& task) {
  const ScopedLock guard(lock_);
  if (tasks_.empty()) return false;
  task = std::move(tasks_.front());
  tasks_.pop_front();
  return true;
}

void Worker::RunTask(LibrarySession& session, const Task& task) {
  busy_ = true;
  const std::wstring fault = FaultOf([&] { task(session); });
  busy_ = false;
  Tell(fault);
}

void Worker::Tell(const std::wstring& fault) {
  if (!fault.empty()) queue_.Post([this, fault] { events_.onFailure(fault); });
}

// A failure that stays is told once.
void Worker::Look(LibrarySession& session) {
  const ULONGLONG begin = GetTickCount64();
  const std::wstring fault = FaultOf([&] {
    if (auto news = session.Look()) {
      queue_.Post([this, shared = std::make_shared<ListNews>(std::move(*news))] { events_.onNews(*shared); });
    }
  });
  if (fault != lookFault_) Tell(fault);
  lookFault_ = fault;
  lookTook_ = static_cast<DWORD>(GetTickCount64() - begin);
}

// The shell's objects of this thread get their messages meanwhile. True when there is work.
bool Worker::WaitForWork(DWORD milliseconds) const {
  const HANDLE wake = wake_.Get();
  const DWORD why = MsgWaitForMultipleObjects(1, &wake, FALSE, milliseconds, QS_ALLINPUT);
  if (why == WAIT_OBJECT_0 + 1) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  return why == WAIT_OBJECT_0;
}

}  // namespace smh
