#include "hosts/gui/trust_checker.h"

#include "hosts/common/file_trust.h"
#include "hosts/common/host_error.h"
#include "hosts/gui/texts/action_texts.h"
#include "infra/runtime/scoped_com.h"

#include <memory>
#include <optional>
#include <utility>

namespace smh {

namespace {

constexpr ULONGLONG kAnswerAfter = 200;
constexpr DWORD kStopLimit = 10'000;

// Asks raterkit.dll, which is loaded when it is needed first.
class Asking {
 public:
  EntryTrust Of(const ItemRecord& item) {
    try {
      if (!trust_) trust_.emplace();
      return trust_->Verify(item);
    } catch (...) {
      // Nothing is proved without an answer, but what is risky stays that.
      EntryTrust none;
      none.word = TrustWordOf(item.rating, kSignatureUnreadable, {}, {});
      return none;
    }
  }

 private:
  std::optional<FileTrust> trust_;
};

}  // namespace

TrustChecker::TrustChecker(UiQueue& queue)
    : queue_(queue),
      wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      ended_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  if (!wake_ || !ended_) throw HostError(texts::kCannotMakeEvent.Get());
  thread_ = std::thread([this] { Run(); });
}

TrustChecker::~TrustChecker() {
  stop_ = true;
  SetEvent(wake_.Get());
  if (WaitForSingleObject(ended_.Get(), kStopLimit) != WAIT_OBJECT_0) {
    TerminateProcess(GetCurrentProcess(), 0);
  }
  thread_.join();
}

void TrustChecker::Check(std::vector<ItemRecord> items, Answer answer) {
  {
    const ScopedLock guard(lock_);
    questions_.push_back({std::move(items), std::move(answer)});
  }
  SetEvent(wake_.Get());
}

void TrustChecker::CheckFirst(ItemRecord item, Answer answer) {
  {
    std::vector<ItemRecord> items;
    items.push_back(std::move(item));
    const ScopedLock guard(lock_);
    questions_.push_front({std::move(items), std::move(answer)});
  }
  SetEvent(wake_.Get());
}

bool TrustChecker::Take(Question& question) {
  const ScopedLock guard(lock_);
  if (questions_.empty()) return false;
  question = std::move(questions_.front());
  questions_.pop_front();
  return true;
}

void TrustChecker::Run() noexcept {
  {
    const ScopedCom com(COINIT_MULTITHREADED);
    Asking asking;
    Question question;
    while (!stop_) {
      if (!Take(question)) {
        WaitForSingleObject(wake_.Get(), INFINITE);
        continue;
      }
      const ULONGLONG begin = GetTickCount64();
      std::size_t done = 0;
      do {
        ItemRecord& item = question.items[done++];
        item.trust = asking.Of(item);
      } while (!stop_ && done < question.items.size() && GetTickCount64() - begin < kAnswerAfter);
      question.items.resize(done);
      auto checked = std::make_shared<const std::vector<ItemRecord>>(std::move(question.items));
      queue_.Post([answer = std::move(question.answer), checked = std::move(checked)] { answer(*checked); });
    }
  }
  SetEvent(ended_.Get());
}

}  // namespace smh
